#include "tools/text/time_text.hpp"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <limits>

#include "tools/text/named_numbers.hpp"
#include "tools/text/scaled_number.hpp"

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
    const std::int64_t borrowed = rest < 0 ? 1 : 0;
    return {nanoseconds / nanoseconds_per_second - borrowed,
            rest + borrowed * nanoseconds_per_second};
}

/// @return nothing for a time that 64 bits of nanoseconds cannot hold
std::optional<std::int64_t> join(const Time& time) {
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max() / nanoseconds_per_second;
    if (time.seconds > last || time.seconds < -last - 1) {
        return std::nullopt;
    }
    // The first second begins before the first nanosecond, so a negative time counts from its end.
    const std::int64_t borrowed = time.seconds < 0 ? 1 : 0;
    std::int64_t nanoseconds = 0;
    const bool overflows =
        __builtin_add_overflow((time.seconds + borrowed) * nanoseconds_per_second,
                               time.nanoseconds - borrowed * nanoseconds_per_second, &nanoseconds);
    return overflows ? std::nullopt : std::optional{nanoseconds};
}

std::tm calendar_time(std::time_t time, bool utc) {
    std::tm calendar{};
    if (utc) {
        gmtime_r(&time, &calendar);
    } else {
        localtime_r(&time, &calendar);
    }
    return calendar;
}

/// "2026-01-31T12:00:00".
/// @return valid until the next call by this thread
std::string_view second_text(std::int64_t seconds, char separator, bool utc) {
    // Of the last call, because many lines are of the same second.
    struct Known {
        std::int64_t seconds = 0;
        char separator = '\0';
        bool utc = false;
        std::string text{};
    };
    thread_local Known known;
    if (seconds != known.seconds || separator != known.separator || utc != known.utc) {
        const std::tm calendar = calendar_time(static_cast<std::time_t>(seconds), utc);
        known = {seconds, separator, utc,
                 fmt::format("{:04}-{:02}-{:02}{}{:02}:{:02}:{:02}", calendar.tm_year + 1900,
                             calendar.tm_mon + 1, calendar.tm_mday, separator, calendar.tm_hour,
                             calendar.tm_min, calendar.tm_sec)};
    }
    return known.text;
}

/// Reads the parts of a time from its text. After a part that is not there it reads zeros.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    std::int64_t number(std::size_t digits, int smallest, int largest) {
        const std::string_view part = rest_.substr(0, digits);
        const bool is_number =
            part.size() == digits && part.find_first_not_of("0123456789") == std::string_view::npos;
        const auto number = is_number ? parse_number<std::int64_t>(part, 10) : std::nullopt;
        if (!number || *number < smallest || *number > largest) {
            return fail();
        }
        rest_.remove_prefix(digits);
        return *number;
    }

    bool take(std::string_view any_of) {
        const bool found = !rest_.empty() && any_of.find(rest_.front()) != std::string_view::npos;
        rest_.remove_prefix(found ? 1 : 0);
        return found;
    }

    void demand(std::string_view any_of) {
        if (!take(any_of)) {
            fail();
        }
    }

    /// @return nanoseconds
    std::int64_t fraction() {
        const std::size_t digits = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
        if (digits < 1 || digits > 9) {
            return fail();
        }
        std::int64_t value = number(digits, 0, 999'999'999);
        for (std::size_t i = digits; i < 9; ++i) {
            value *= 10;
        }
        return value;
    }

    bool is_complete() const { return !failed_ && rest_.empty(); }

private:
    std::int64_t fail() {
        failed_ = true;
        rest_ = {};
        return 0;
    }

    std::string_view rest_;
    bool failed_ = false;
};

/// Seconds that a time zone is ahead of universal time.
std::int64_t scan_offset(Scanner& scanner) {
    if (scanner.take("Z")) {
        return 0;
    }
    const bool behind = scanner.take("-");
    if (!behind) {
        scanner.demand("+");
    }
    const std::int64_t hours = scanner.number(2, 0, 23);
    scanner.demand(":");
    const std::int64_t seconds = (hours * 60 + scanner.number(2, 0, 59)) * 60;
    return behind ? -seconds : seconds;
}

/// Date and time of day, without a zone. @return nothing for a date that is not in the calendar
std::optional<Time> scan_calendar_time(Scanner& scanner) {
    const auto year = static_cast<int>(scanner.number(4, 0, 9999));
    scanner.demand("-");
    const auto month = static_cast<unsigned>(scanner.number(2, 1, 12));
    scanner.demand("-");
    const auto day = static_cast<unsigned>(scanner.number(2, 1, 31));
    scanner.demand("T ");
    const std::int64_t hour = scanner.number(2, 0, 23);
    scanner.demand(":");
    const std::int64_t minute = scanner.number(2, 0, 59);
    scanner.demand(":");
    const std::int64_t second = scanner.number(2, 0, 59);
    const std::int64_t nanoseconds = scanner.take(".") ? scanner.fraction() : 0;
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month},
                                           std::chrono::day{day}};
    if (!date.ok()) {
        return std::nullopt;
    }
    const std::int64_t days = std::chrono::sys_days{date}.time_since_epoch().count();
    return Time{((days * 24 + hour) * 60 + minute) * 60 + second, nanoseconds};
}

/// @param local seconds that a calendar of local time shows, since it showed 1970
std::int64_t universal_seconds(std::int64_t local) {
    const std::time_t shown = local;
    std::tm calendar{};
    gmtime_r(&shown, &calendar);
    calendar.tm_isdst = -1;
    return std::mktime(&calendar);
}

}  // namespace

std::string display_time(std::int64_t nanoseconds, bool utc) {
    const Time time = split(nanoseconds);
    return fmt::format(FMT_COMPILE("{}.{:06}{}"), second_text(time.seconds, ' ', utc),
                       time.nanoseconds / 1000, utc ? "Z" : "");
}

std::string json_time(std::int64_t nanoseconds) {
    const Time time = split(nanoseconds);
    constexpr bool utc = true;
    return fmt::format(FMT_COMPILE("{}.{:09}Z"), second_text(time.seconds, 'T', utc),
                       time.nanoseconds);
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

std::optional<std::int64_t> parse_time(std::string_view text) {
    Scanner scanner{text};
    const std::optional<Time> time = scan_calendar_time(scanner);
    const std::int64_t offset = scan_offset(scanner);
    return time && scanner.is_complete() ? join({time->seconds - offset, time->nanoseconds})
                                         : std::nullopt;
}

std::optional<Moment> parse_moment(std::string_view text) {
    if (text.starts_with('+')) {
        const auto seconds = parse_duration(text.substr(1));
        return seconds ? std::optional{Moment{
                             static_cast<std::int64_t>(*seconds) * nanoseconds_per_second, true}}
                       : std::nullopt;
    }
    auto time = parse_time(text);
    Scanner scanner{text};
    const std::optional<Time> local = scan_calendar_time(scanner);
    if (!time && local && scanner.is_complete()) {
        time = join({universal_seconds(local->seconds), local->nanoseconds});
    }
    return time ? std::optional{Moment{*time, false}} : std::nullopt;
}

std::int64_t wall_clock() {
    const auto since_epoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(since_epoch).count();
}

}  // namespace orvane::tools
