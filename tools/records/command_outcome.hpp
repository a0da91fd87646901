/// @file command_outcome.hpp
/// @brief The result of a command at one logger.
#pragma once

#include <optional>
#include <string>

#include "tools/records/logger_state.hpp"

namespace orvane::tools {

struct CommandOutcome {
    LoggerState before;
    LoggerState now;
    bool alive = true;
    /// Nothing until the logger answers.
    std::optional<QEL_KX_ADMIN_CommandResult> result;
    std::string message;             ///< of the logger
    bool receives_commands = false;  ///< its reader of requests has been matched
};

}  // namespace orvane::tools
