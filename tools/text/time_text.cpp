#include "tools/text/time_text.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <ctime>

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

constexpr std::int64_t nanoseconds_per_second = 1'000'000'000;

constexpr NamedNumber time_formats[] = {
    {"clock", static_cast<int>(TimeFormat::clock)},
    {"relative", static_cast<int>(TimeFormat::relative)},
    {"delta", static_cast<int>(TimeFormat::delta)},
    {"iso", static_cast<int>(TimeFormat::iso)},
};

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

}  // namespace

std::string display_time(std::int64_t nanoseconds, bool utc) {
    const Time time = split(nanoseconds);
    return fmt::format("{:%Y-%m-%d %H:%M:%S}.{:06}{}", calendar_time(time, utc),
                       time.nanoseconds / 1000, utc ? "Z" : "");
}

std::string json_time(std::int64_t nanoseconds) {
    const Time time = split(nanoseconds);
    return fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:09}Z", calendar_time(time, true), time.nanoseconds);
}

std::optional<TimeFormat> parse_time_format(std::string_view text) {
    const auto number = number_of_name(time_formats, text);
    return number ? std::optional{static_cast<TimeFormat>(*number)} : std::nullopt;
}

std::string time_format_names() {
    return names_of(time_formats);
}

std::string seconds_text(std::int64_t nanoseconds) {
    return fmt::format("{:12.6f}", static_cast<double>(nanoseconds) / nanoseconds_per_second);
}

std::int64_t wall_clock() {
    const auto since_epoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(since_epoch).count();
}

}  // namespace orvane::tools
