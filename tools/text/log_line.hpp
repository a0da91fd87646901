/// @file log_line.hpp
/// @brief Log messages as lines of text for people.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "tools/records/event.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {

/// The look of lines for people.
struct LineStyle {
    bool color = false;  ///< paint the line by its severity, and the category by its logger
    bool utc = false;    ///< universal instead of local time
    bool ids = false;    ///< HOST:APP behind the name of the logger
    TimeFormat time = TimeFormat::clock;
};

/// Writes a line for each message, in columns. The column of names grows with the names.
class LogLines {
public:
    explicit LogLines(const LineStyle& style) : style_(style) {}

    /// "2026-01-31 12:00:00.123456 INFO    pump [category] message" with a newline. Neither a name
    /// nor the category nor the message can disturb a terminal.
    /// @param width cells of the terminal; a longer line is broken. 0 means that none is
    std::string line(const MessageEvent& event, std::size_t width);

private:
    std::string time(std::int64_t nanoseconds);
    std::string heading(const MessageEvent& event);
    std::string painted_category(const MessageEvent& event, const std::string& paint) const;

    LineStyle style_;
    std::size_t name_width_ = 0;
    std::optional<std::int64_t> first_;  ///< time of the first line
    std::int64_t last_ = 0;              ///< time of the last line
};

}  // namespace orvane::tools
