/// @file peer_protocol.hpp
/// @brief What the peer programs and the tests have agreed upon.
#pragma once

#include <cstdint>
#include <ctime>
#include <string_view>

namespace orvane::tests {

/// How the lines of a peer begin that are not the library's.
inline constexpr std::string_view answer_mark = "> ";
inline constexpr std::string_view record_mark = "logged ";

/// Category of the messages that the command "log" logs.
inline constexpr const char* numbered_category = "numbered";
/// Category of the messages that only show whether the viewer receives.
inline constexpr const char* probe_category = "probe";
/// Category of the message of the command "mark".
inline constexpr const char* mark_category = "mark";

/// Nanoseconds since 1970-01-01 UTC.
inline std::int64_t wall_clock() {
    std::timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * std::int64_t{1'000'000'000} + now.tv_nsec;
}

}  // namespace orvane::tests
