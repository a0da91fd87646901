#include "tools/log_line.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>

#include "orvane/core.h"
#include "tools/display_text.hpp"
#include "tools/log_query.hpp"

namespace orvane::tools {
namespace {

constexpr std::int64_t nanoseconds_per_second = 1'000'000'000;

struct Time {
    std::int64_t seconds;
    std::int64_t nanoseconds;  ///< 0 … 999999999, also before 1970
};

Time split(std::int64_t nanoseconds) {
    const std::int64_t rest = nanoseconds % nanoseconds_per_second;
    const std::int64_t fraction = rest < 0 ? rest + nanoseconds_per_second : rest;
    return {(nanoseconds - fraction) / nanoseconds_per_second, fraction};
}

std::tm calendar_time(const Time& moment, bool utc) {
    const auto time = static_cast<std::time_t>(moment.seconds);
    std::tm calendar{};
    if (utc) {
        gmtime_r(&time, &calendar);
    } else {
        localtime_r(&time, &calendar);
    }
    return calendar;
}

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

std::string displayed_level(std::int32_t level) {
    const std::string_view name = level_name(level);
    return name.empty() ? fmt::format("{}", level) : std::string{name};
}

}  // namespace

std::string text_line(const LogRecord& record, const LineStyle& style) {
    const Time time = split(record.nanoseconds);
    const std::string_view color = style.color ? color_of(record.level) : std::string_view{};

    std::string line{color};
    fmt::format_to(std::back_inserter(line), "{:%Y-%m-%d %H:%M:%S}.{:06}{} {:<7} {} ",
                   calendar_time(time, style.utc), time.nanoseconds / 1000, style.utc ? "Z" : "",
                   displayed_level(record.level), format_application(record.application));
    if (!record.category.empty()) {
        line += '[';
        append_displayable(line, record.category);
        line += "] ";
    }
    append_displayable(line, record.message);
    if (!color.empty()) {
        line += "\x1b[0m";
    }
    line += '\n';
    return line;
}

std::string json_line(const LogRecord& record) {
    const Time time = split(record.nanoseconds);
    nlohmann::ordered_json object;
    object["time"] =
        fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:09}Z", calendar_time(time, true), time.nanoseconds);
    object["level"] = record.level;
    object["level_name"] = displayed_level(record.level);
    object["app"] = format_application(record.application);
    object["host_id"] = record.application.host_id;
    object["app_id"] = record.application.app_id;
    object["category"] = record.category;
    object["message"] = record.message;
    constexpr bool escape_beyond_ascii = true;
    return object.dump(-1, ' ', escape_beyond_ascii,
                       nlohmann::ordered_json::error_handler_t::replace) +
           '\n';
}

}  // namespace orvane::tools
