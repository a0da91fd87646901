/// @file wanted_rights.hpp
/// @brief The rules of new permissions, from a role and what is added to it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/records/result.hpp"
#include "tools/security/certificates.hpp"
#include "tools/security/permissions.hpp"
#include "tools/security/roles.hpp"

namespace orvane::tools {

struct WantedRights {
    std::optional<Role> role{};
    std::optional<std::string> topics{};   ///< shell pattern: of the role's topics, these only
    std::vector<std::string> publish{};    ///< further topics; shell patterns
    std::vector<std::string> subscribe{};  ///< further topics; shell patterns
    std::vector<std::int32_t> domains{};   ///< where all that holds; none stands for all
    /// XML in the form of DDS Security's permissions, whose rules are added.
    std::optional<std::string> document{};
};

/// How the grant is called: the role, "own" without one, and "application+own" for both.
std::string grant_name_of(const WantedRights& wanted);

/// The rules. Those of the role stand first, so that a rule of the document that denies cannot
/// take something from the role; the rules of the document keep their order.
///
/// The document's grants for CN=@p name and those without a subject are taken. A grant that allows
/// by default, or that is not valid for as long as @p validity is refused, because its rules would
/// mean something else in the grant that they are put into.
/// @param error which of the wanted rights is refused, and why
Result<std::vector<PermissionRule>> rules_of(const WantedRights& wanted, const std::string& name,
                                             const Validity& validity, std::string& error);

/// Whether a pattern of topics can be told to the engine.
bool is_topic_pattern(std::string_view pattern);

}  // namespace orvane::tools
