/// @file time_text.hpp
/// @brief Points in time as text; all are nanoseconds since 1970-01-01 UTC.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/records/time_span.hpp"

namespace orvane::tools {

/// "2026-01-31 12:00:00.123456", with a "Z" behind universal time.
std::string display_time(std::int64_t nanoseconds, bool utc);

/// RFC 3339, UTC: "2026-01-31T12:00:00.123456789Z".
std::string json_time(std::int64_t nanoseconds);

/// How the time of a line is written.
enum class TimeFormat {
    clock,     ///< date and time of day
    relative,  ///< seconds since the first line
    delta,     ///< seconds since the line before
    iso,       ///< RFC 3339
};
/// @param text a name in any case
std::optional<TimeFormat> parse_time_format(std::string_view text);
/// All names, for messages to the user: "clock, relative, …".
std::string time_format_names();

/// A duration in a column, in seconds: "    0.000123".
std::string seconds_text(std::int64_t nanoseconds);

/// Reads RFC 3339 with a fraction of at most nine digits: "2026-01-31T12:00:00Z",
/// "2026-01-31 14:00:00.5+02:00". @return nothing for any other text
std::optional<std::int64_t> parse_time(std::string_view text);

/// Reads a point in time as a user writes it: RFC 3339, with local time where the zone is missing,
/// or "+90", "+10m", "+2h" behind the begin of a recording. @return nothing for any other text
std::optional<Moment> parse_moment(std::string_view text);

/// The present.
std::int64_t wall_clock();

}  // namespace orvane::tools
