#include "tools/text/log_line.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "orvane/core.h"
#include "tools/text/application_text.hpp"
#include "tools/text/cells.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/logger_name.hpp"

namespace orvane::tools {
namespace {

constexpr std::string_view no_paint = "\x1b[0m";

/// The escape sequence (ECMA-48 SGR) for a level; levels between two names look like the less
/// severe one.
std::string_view color_of(std::int32_t level) {
    if (level <= QEL_KX_LEVEL_SEVERE) {
        return "\x1b[1;31m";
    }
    if (level <= QEL_KX_LEVEL_ERROR) {
        return "\x1b[31m";
    }
    if (level <= QEL_KX_LEVEL_WARNING) {
        return "\x1b[33m";
    }
    if (level <= QEL_KX_LEVEL_NOTICE) {
        return "\x1b[36m";
    }
    return level <= QEL_KX_LEVEL_INFO ? "" : "\x1b[2m";
}

/// The escape sequence for a name, the same one in every run. Each of these colors of the palette
/// of 256 has a contrast of 4 or more to black and to white.
std::string color_of(std::string_view name) {
    constexpr int colors[] = {28, 30, 31, 63, 97, 130, 133, 161};
    // FNV-1a, whose lower bits know too little of the name, and a step that mixes all into the
    // upper.
    std::uint32_t hash = 2166136261U;
    for (const char byte : name) {
        hash = (hash ^ static_cast<std::uint8_t>(byte)) * 16777619U;
    }
    hash *= 0x9E3779B9U;
    return fmt::format("\x1b[38;5;{}m", colors[std::uint64_t{hash} * std::size(colors) >> 32U]);
}

}  // namespace

std::string LogLines::time(std::int64_t nanoseconds) {
    if (!first_) {
        first_ = nanoseconds;
        last_ = nanoseconds;
    }
    const std::int64_t since_last = nanoseconds - last_;
    last_ = nanoseconds;
    switch (style_.time) {
        case TimeFormat::clock:
            break;
        case TimeFormat::relative:
            return seconds_text(nanoseconds - *first_);
        case TimeFormat::delta:
            return seconds_text(since_last);
        case TimeFormat::iso:
            return json_time(nanoseconds);
    }
    return display_time(nanoseconds, style_.utc);
}

/// What is before the category: "2026-01-31 12:00:00.123456 INFO    pump ".
std::string LogLines::heading(const MessageEvent& event) {
    // A column for longer names would leave the others too little room for their messages.
    constexpr std::size_t widest_column = 24;
    const Logger& logger = event.logger;
    const bool is_named = !logger.kind.empty();
    std::string name = style_.ids && !is_named ? "-" : name_of(logger);
    name += via_text(event.publisher);
    if (is_named) {
        name_width_ = std::max(name_width_, std::min(width_of(name), widest_column));
    }
    name = padded(std::move(name), name_width_);
    if (style_.ids) {
        name += ' ' + format_application(logger.application);
    }
    return fmt::format("{} {:<7} {} ", time(event.record.nanoseconds),
                       level_text(event.record.level), name);
}

/// @param paint of the line, which goes on behind the category
std::string LogLines::painted_category(const MessageEvent& event, const std::string& paint) const {
    std::string category = displayable(event.record.category);
    if (!style_.color) {
        return category;
    }
    const std::size_t last_part = category.rfind('.') + 1;
    return fmt::format("{}{}{}{}{}{}", category.substr(0, last_part),
                       paint.empty() ? std::string_view{} : no_paint,
                       color_of(name_of(event.logger)), category.substr(last_part), no_paint,
                       paint);
}

std::string LogLines::line(const MessageEvent& event, std::size_t width) {
    const std::string paint{style_.color ? color_of(event.record.level) : std::string_view{}};
    const std::string before = heading(event);
    std::string line = paint + before;
    if (!event.record.category.empty()) {
        line += '[' + painted_category(event, paint) + "] ";
    }
    append_displayable(line, event.record.message);
    if (!paint.empty()) {
        line += no_paint;
    }
    return wrapped(line, width, width_of(before)) + '\n';
}

}  // namespace orvane::tools
