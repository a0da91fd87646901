/// @file credential_check.hpp
/// @brief What is wrong with the credentials of a folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

struct CredentialFinding {
    bool fatal = true;   ///< nobody joins a domain with this
    std::string cause;   ///< what is wrong, and with which file
    std::string remedy;  ///< what to do about it
};

/// Looks at everything that the engine or another participant would refuse. It needs nothing but
/// the folder and this machine's plug-ins.
/// @param domain_id the domain to join; none leaves out whether that is allowed
/// @param now seconds since 1970-01-01 UTC
std::vector<CredentialFinding> check_credentials(const std::string& folder,
                                                 std::optional<std::int32_t> domain_id,
                                                 std::int64_t now);

}  // namespace orvane::tools
