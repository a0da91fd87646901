/// @file live_loggers.hpp
/// @brief The loggers of a domain that are alive.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "tools/records/logger_change.hpp"
#include "tools/records/state_update.hpp"

namespace orvane::tools {

/// Keeps the last State of every logger that is alive.
class LiveLoggers {
public:
    /// Takes over what is new. @return what it changes
    std::vector<LoggerChange> apply(const StateUpdate& update);

    const std::map<Application, LoggerState>& states() const { return states_; }
    /// Who publishes the State of a logger in its name. @return nothing for the logger itself
    std::optional<Application> publisher(const Application& application) const;

private:
    std::map<Application, LoggerState> states_;
    std::map<Application, Application>
        publishers_;  ///< of those that are not published by themselves
};

}  // namespace orvane::tools
