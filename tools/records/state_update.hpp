/// @file state_update.hpp
/// @brief News of a logger's State.
#pragma once

#include <optional>

#include "tools/records/logger_state.hpp"

namespace orvane::tools {

/// A sample of a State, or the end of its writer.
struct StateUpdate {
    Application application;
    std::optional<LoggerState> state;  ///< none: only the liveness has changed
    bool alive = true;
    /// Who has published it: the application itself, or another one in its name. {} is not known.
    Application writer{};
};

}  // namespace orvane::tools
