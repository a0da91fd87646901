/// @file command_round.hpp
/// @brief One command to several loggers, and what became of it.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/domain/view.hpp"
#include "tools/records/command.hpp"

namespace orvane::tools {

struct CommandOutcome {
    LoggerState before;
    LoggerState now;
    bool alive = true;
    /// Nothing: no answer has come.
    std::optional<QEL_KX_ADMIN_CommandResult> result;
    std::string message;             ///< the logger's own words
    bool receives_commands = false;  ///< whether it was ever known to
};

/// Sends @p command to each target and waits, @p longest at most, until all have answered and show
/// it in their States.
///
/// A request is sent when its logger is known to receive commands, and again every second until it
/// is answered: a logger may execute a request before it knows where to answer. A repetition says
/// the same under the same number, so that executing it twice changes nothing. Interrupting ends it
/// early.
/// @return as many outcomes as targets, nothing when a reader or the writer failed
[[nodiscard]] std::optional<std::vector<CommandOutcome>> run_command(
    DomainView& view, const std::vector<LoggerState>& targets, const Command& command,
    std::chrono::milliseconds longest);

}  // namespace orvane::tools
