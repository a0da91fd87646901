/// @file command_round.hpp
/// @brief One command to several loggers, until they have executed it.
#pragma once

#include <chrono>
#include <vector>

#include "tools/domain/view.hpp"
#include "tools/records/command.hpp"
#include "tools/records/command_outcome.hpp"

namespace orvane::tools {

/// Sends @p command to each target and waits, @p longest at most, until all have answered and their
/// States show the settings of the command. Interrupting ends it early.
///
/// A request names HOST:APP, so it reaches all loggers that share it. One is sent to all of them,
/// and those that are no targets are waited for like targets.
///
/// A request is sent as soon as the target's reader of requests is matched, and again every second
/// until it is answered, because a logger may execute a request before it has matched the reader of
/// responses. A repetition has the same invocation and sets the same values, so that executing it
/// twice changes nothing.
/// @return an outcome for each target, and behind them for the others that obey; nothing when a
/// reader or the writer failed
Result<std::vector<CommandOutcome>> run_command(DomainView& view,
                                                const std::vector<LoggerState>& targets,
                                                const Command& command,
                                                std::chrono::milliseconds longest);

}  // namespace orvane::tools
