/// @file utc_text.hpp
/// @brief Seconds since 1970-01-01 UTC as text.
#pragma once

#include <cstdint>
#include <string>

#include "tools/text/time_text.hpp"

namespace orvane::tools {

/// "2026-01-31T12:00:00Z".
inline std::string utc_text(std::int64_t seconds) {
    constexpr std::int64_t nanoseconds_per_second = 1'000'000'000;
    constexpr std::size_t length = 19;
    return json_time(seconds * nanoseconds_per_second).substr(0, length) + 'Z';
}

}  // namespace orvane::tools
