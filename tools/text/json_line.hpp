/// @file json_line.hpp
/// @brief Log messages, loggers and their changes for programs: one JSON object (RFC 8259) and a
/// newline each.
///
/// A line is ASCII, so that it cannot disturb a terminal. Bytes that are not UTF-8 become U+FFFD. A
/// time is in RFC 3339, UTC, with nanoseconds.
#pragma once

#include <cstdint>
#include <string>

#include "tools/records/log_record.hpp"
#include "tools/records/logger_change.hpp"

namespace orvane::tools {

/// Members: "time", "level", "level_name", "app", "host_id", "app_id", "category", "message".
std::string json_line(const LogRecord& record);

/// Members: "app", "host_id", "app_id", "kind", "state", "filter_level", "filter_level_name",
/// "domain", "verbosities" (an object with a member for each category, in lower case),
/// "print_format".
std::string json_line(const LoggerState& logger);

/// As for the logger, with "event" ("appeared", "changed" or "gone") and "time" before the others.
/// @param nanoseconds when it was seen, since 1970-01-01 UTC
std::string json_line(const LoggerChange& change, std::int64_t nanoseconds);

}  // namespace orvane::tools
