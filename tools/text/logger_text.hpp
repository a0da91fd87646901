/// @file logger_text.hpp
/// @brief Loggers, their changes and the outcomes of commands, for people. No text can disturb a
/// terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/records/command.hpp"
#include "tools/records/command_outcome.hpp"
#include "tools/records/logger_change.hpp"

namespace orvane::tools {

/// The look of a table.
struct TableStyle {
    bool color = false;  ///< paint the states
};

/// A line of headings and a line for each logger, in columns.
std::string logger_table(const std::vector<LoggerState>& loggers, const TableStyle& style);

/// "appeared", "changed" or "gone".
std::string_view event_name(LoggerChange::Kind kind);

/// "2026-01-31 12:00:00.123456 changed  0a141e28:0000c350 pump  filter level INFO -> DEBUG".
/// @param nanoseconds when it was seen, since 1970-01-01 UTC
std::string change_line(const LoggerChange& change, std::int64_t nanoseconds);

/// "0a141e28:0000c350 pump  filter level INFO -> DEBUG", or the reason why there is no effect.
/// @param waited the time that the tool has waited for the answer
std::string outcome_line(const CommandOutcome& outcome, const Command& command,
                         std::chrono::milliseconds waited);

}  // namespace orvane::tools
