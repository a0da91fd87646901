/// @file recorded_event.hpp
/// @brief What a recording holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>

#include "tools/records/event.hpp"

namespace orvane::tools {

/// Events that are not in the recording, because its disk was full or too slow; of an export, those
/// that the receiver did not take.
struct RecordingGap {
    std::int64_t nanoseconds = 0;  ///< when it went on, since 1970-01-01 UTC
    std::uint64_t events = 0;
};

using RecordedEvent = std::variant<MessageEvent, LossEvent, LoggerEvent, RecordingGap>;

/// When it happened: nanoseconds since 1970-01-01 UTC.
inline std::int64_t time_of(const RecordedEvent& event) {
    return std::visit(
        [](const auto& each) {
            if constexpr (requires { each.record; }) {
                return each.record.nanoseconds;
            } else {
                return each.nanoseconds;
            }
        },
        event);
}

/// Bytes that an event takes while it waits.
std::size_t memory_of(const RecordedEvent& event);

}  // namespace orvane::tools
