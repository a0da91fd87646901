/// @file log_line.hpp
/// @brief A log message as a line of text for people or of JSON for programs.
#pragma once

#include <string>

#include "tools/records/log_record.hpp"

namespace orvane::tools {

/// The look of lines for people.
struct LineStyle {
    bool color = false;  ///< paint the line by its severity
    bool utc = false;    ///< universal instead of local time
};

/// "2026-01-31 12:00:00.123456 INFO    0a141e28:0000c350 [category] message" with a newline.
/// Neither the category nor the message can disturb a terminal.
std::string text_line(const LogRecord& record, const LineStyle& style);

/// One JSON object (RFC 8259) and a newline. It is ASCII, so that it cannot disturb a terminal
/// either; bytes that are not UTF-8 become U+FFFD. Members: "time" (RFC 3339, UTC, nanoseconds),
/// "level", "level_name", "app", "host_id", "app_id", "category", "message".
std::string json_line(const LogRecord& record);

}  // namespace orvane::tools
