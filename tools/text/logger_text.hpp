/// @file logger_text.hpp
/// @brief Loggers, their changes and the outcomes of commands, for people. No text can disturb a
/// terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/records/command.hpp"
#include "tools/records/command_outcome.hpp"
#include "tools/records/event.hpp"
#include "tools/records/logger_entry.hpp"

namespace orvane::tools {

/// The look of a table.
struct TableStyle {
    bool color = false;     ///< paint the states
    bool wide = false;      ///< all columns, and the network addresses, whatever the width
    std::size_t width = 0;  ///< cells of the terminal, 0 for any number
};

/// A line of headings and a line for each logger, in columns. Where the terminal is too narrow,
/// long names are cut and the last columns are left out; a line below says so. Another one tells of
/// loggers that share HOST:APP, which have a mark.
std::string logger_table(const std::vector<LoggerEntry>& loggers, const TableStyle& style);

/// "appeared", "present", "changed" or "gone".
std::string_view event_name(LoggerChange::Kind kind);

/// "filter level INFO -> DEBUG", "lost": what has become of a logger.
std::string change_text(const LoggerEvent& event);

/// "2026-01-31 12:00:00.123456 changed  0a141e28:0000c350 pump  filter level INFO -> DEBUG".
std::string change_line(const LoggerEvent& event);

/// "0a141e28:0000c350 pump  filter level INFO -> DEBUG", or the reason why there is no effect.
/// @param logger whose outcome it is
/// @param waited the time that the tool has waited for the answer
std::string outcome_line(const CommandOutcome& outcome, const Logger& logger,
                         const Command& command, std::chrono::milliseconds waited);

}  // namespace orvane::tools
