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
    bool shares_id = false;          ///< another logger that obeys has its HOST:APP
    bool is_bystander = false;       ///< not a target, but it shares HOST:APP with one
};

}  // namespace orvane::tools
