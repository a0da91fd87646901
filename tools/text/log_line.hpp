/// @file log_line.hpp
/// @brief A log message as a line of text for people.
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

}  // namespace orvane::tools
