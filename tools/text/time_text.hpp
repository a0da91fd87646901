/// @file time_text.hpp
/// @brief Points in time as text; all are nanoseconds since 1970-01-01 UTC.
#pragma once

#include <cstdint>
#include <string>

namespace orvane::tools {

/// "2026-01-31 12:00:00.123456", with a "Z" behind universal time.
std::string display_time(std::int64_t nanoseconds, bool utc);

/// RFC 3339, UTC: "2026-01-31T12:00:00.123456789Z".
std::string json_time(std::int64_t nanoseconds);

/// The present.
std::int64_t wall_clock();

}  // namespace orvane::tools
