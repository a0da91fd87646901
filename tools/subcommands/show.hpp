/// @file show.hpp
/// @brief `orvane show`: prints recordings.
#pragma once

#include <string>
#include <vector>

#include "tools/records/time_span.hpp"
#include "tools/subcommands/display.hpp"

namespace orvane::tools {

struct ShowOptions {
    std::vector<std::string> files;
    DisplayOptions display;
    TimeSpan span;
    bool follow = false;  ///< until SIGINT or SIGTERM
};

/// @return the process's exit status
int show(const ShowOptions& options);

}  // namespace orvane::tools
