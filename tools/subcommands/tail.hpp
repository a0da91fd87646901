/// @file tail.hpp
/// @brief `orvane tail`: prints the log messages of a domain while they are published.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/subcommands/display.hpp"

namespace orvane::tools {

struct TailOptions {
    std::int32_t domain_id = 0;
    DisplayOptions display;
    std::optional<double> seconds;  ///< end after so long
};

/// Runs the command until its limits, SIGINT or SIGTERM end it. @return the process's exit status.
int tail(const TailOptions& options);

}  // namespace orvane::tools
