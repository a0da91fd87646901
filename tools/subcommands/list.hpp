/// @file list.hpp
/// @brief `orvane list`: shows the loggers of a domain.
#pragma once

#include <cstdint>

namespace orvane::tools {

struct ListOptions {
    std::int32_t domain_id = 0;
    bool json = false;
    bool watch = false;  ///< until SIGINT or SIGTERM
    bool wide = false;   ///< all columns, whatever the width of the terminal
    bool no_color = false;
    double timeout_seconds = 5;
};

/// @return the process's exit status
int list(const ListOptions& options);

}  // namespace orvane::tools
