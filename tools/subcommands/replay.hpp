/// @file replay.hpp
/// @brief `orvane replay`: publishes recordings anew.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/records/domain_options.hpp"
#include "tools/records/log_query.hpp"
#include "tools/records/time_span.hpp"

namespace orvane::tools {

struct ReplayOptions {
    /// Away from the default of the applications. It is the last one whose ports are below those
    /// that Linux gives to anybody.
    DomainOptions domain{.id = 100};
    std::vector<std::string> files;
    LogQuery query;
    TimeSpan span;
    double speed = 1;                     ///< above 0; infinity publishes without pauses
    std::optional<double> longest_pause;  ///< seconds; nothing for no limit
    bool loop = false;                    ///< until SIGINT or SIGTERM
    bool waits_for_viewer = false;
    bool among_live = false;  ///< also where loggers are alive
};

/// @return the process's exit status
int replay(const ReplayOptions& options);

}  // namespace orvane::tools
