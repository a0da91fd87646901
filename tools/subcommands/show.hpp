/// @file show.hpp
/// @brief `orvane show`: prints recordings.
#pragma once

#include <string>
#include <vector>

#include "tools/subcommands/display.hpp"

namespace orvane::tools {

struct ShowOptions {
    std::vector<std::string> files;
    DisplayOptions display;
    bool follow = false;  ///< until SIGINT or SIGTERM
};

/// @return the process's exit status
int show(const ShowOptions& options);

}  // namespace orvane::tools
