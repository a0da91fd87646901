// Names that the program test_peer and the tests share.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace orvane::tests {

/// The lines of the peer begin so; other lines are the library's.
inline constexpr std::string_view answer_mark = "> ";
inline constexpr std::string_view record_mark = "logged ";

/// Category of the messages that the command "log" logs.
inline constexpr const char* numbered_category = "numbered";

/// Nanoseconds since 1970-01-01 UTC.
inline std::int64_t wall_clock() {
    return std::chrono::nanoseconds{std::chrono::system_clock::now().time_since_epoch()}.count();
}

}  // namespace orvane::tests
