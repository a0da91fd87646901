/// @file roles.hpp
/// @brief What applications, viewers and operators do on the topics of the logger.
#pragma once

#include <string>
#include <vector>

#include "tools/security/permissions.hpp"

namespace orvane::tools {

enum class Role { application, viewer, operator_ };

/// The roles in the order of their numbers.
inline constexpr const char* role_names[] = {"application", "viewer", "operator"};

std::string name_of(Role role);

/// What a role may do with those of its topics that match a shell pattern; nothing when none does.
std::vector<TopicRight> rights_of(Role role, const std::string& topics = "*");

}  // namespace orvane::tools
