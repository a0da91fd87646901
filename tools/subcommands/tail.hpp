/// @file tail.hpp
/// @brief `orvane tail`: prints the log messages of a domain while they are published.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/records/domain_options.hpp"
#include "tools/subcommands/display.hpp"

namespace orvane::tools {

struct TailOptions {
    DomainOptions domain;
    DisplayOptions display;
    std::optional<double> seconds;  ///< end after so long
};

/// Runs the command until its limits, SIGINT or SIGTERM end it. @return the process's exit status.
int tail(const TailOptions& options);

}  // namespace orvane::tools
