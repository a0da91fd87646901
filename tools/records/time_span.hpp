/// @file time_span.hpp
/// @brief A part of the time that recordings tell of.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace orvane::tools {

struct Moment {
    std::int64_t nanoseconds = 0;  ///< since 1970-01-01 UTC; 0 or more since the begin
    bool since_begin = false;      ///< of the recording

    /// @param begin of the recording, since 1970-01-01 UTC @return since then, too
    std::int64_t at(std::int64_t begin) const {
        constexpr std::int64_t latest = std::numeric_limits<std::int64_t>::max();
        if (!since_begin) {
            return nanoseconds;
        }
        return begin > latest - nanoseconds ? latest : begin + nanoseconds;
    }
};

/// Both ends belong to it. An end that is not set is no limit.
struct TimeSpan {
    std::optional<Moment> from;
    std::optional<Moment> to;

    /// Whether a time is earlier than the span.
    bool is_before(std::int64_t time, std::int64_t begin) const {
        return from && time < from->at(begin);
    }
    /// Whether a time is later than the span.
    bool is_behind(std::int64_t time, std::int64_t begin) const {
        return to && time > to->at(begin);
    }
};

}  // namespace orvane::tools
