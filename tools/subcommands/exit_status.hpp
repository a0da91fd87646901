/// @file exit_status.hpp
/// @brief The exit statuses of the tool.
#pragma once

namespace orvane::tools {

inline constexpr int exit_success = 0;
inline constexpr int exit_failure = 1;
inline constexpr int exit_usage = 2;

}  // namespace orvane::tools
