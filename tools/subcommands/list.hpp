/// @file list.hpp
/// @brief `orvane list`: shows the loggers of a domain.
#pragma once

#include "tools/records/domain_options.hpp"

namespace orvane::tools {

struct ListOptions {
    DomainOptions domain;
    bool json = false;
    bool watch = false;  ///< until SIGINT or SIGTERM
    bool wide = false;   ///< all columns, whatever the width of the terminal
    bool no_color = false;
    double timeout_seconds = 5;
};

/// @return the process's exit status
int list(const ListOptions& options);

}  // namespace orvane::tools
