/// @file peer_protocol.hpp
/// @brief Names that the program test_peer and the tests share.
#pragma once

#include <cstdint>
#include <ctime>
#include <string_view>

namespace orvane::tests {

/// The lines of the peer begin so; other lines are the library's.
inline constexpr std::string_view answer_mark = "> ";
inline constexpr std::string_view record_mark = "logged ";

/// MiddlewareCategory of the messages that the command "log" logs.
inline constexpr const char* numbered_category = "numbered";

/// Nanoseconds since 1970-01-01 UTC.
inline std::int64_t wall_clock() {
    std::timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * std::int64_t{1'000'000'000} + now.tv_nsec;
}

}  // namespace orvane::tests
