/// @file logger_text.hpp
/// @brief Loggers, their changes and the outcomes of commands, for people and for programs.
///
/// A text for people cannot disturb a terminal; a text for programs is ASCII.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
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

/// One JSON object and a newline. Members: "app", "host_id", "app_id", "kind", "state",
/// "filter_level", "filter_level_name", "domain", "verbosities" (an object with a member for each
/// category, in lower case), "print_format".
std::string logger_json_line(const LoggerState& logger);

/// "2026-01-31 12:00:00.123456 changed  0a141e28:0000c350 pump  filter level INFO -> DEBUG".
/// @param nanoseconds when it was seen, since 1970-01-01 UTC
std::string change_line(const LoggerChange& change, std::int64_t nanoseconds);

/// As @ref logger_json_line, with "event" ("appeared", "changed" or "gone") and "time" before the
/// others.
std::string change_json_line(const LoggerChange& change, std::int64_t nanoseconds);

/// "0a141e28:0000c350 pump  filter level INFO -> DEBUG", or the reason why there is no effect.
/// @param waited the time that the tool has waited for the answer
std::string outcome_line(const CommandOutcome& outcome, const Command& command,
                         std::chrono::milliseconds waited);

}  // namespace orvane::tools
