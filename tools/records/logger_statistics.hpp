/// @file logger_statistics.hpp
/// @brief What became of a logger's messages, as the logger says.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/records/application.hpp"
#include "tools/records/endpoint.hpp"

namespace orvane::tools {

/// Numbers of messages since the logger's start.
struct MessageCounts {
    std::uint64_t published = 0;  ///< the RTPS sequence number of the last message, too
    std::uint64_t queue_full = 0;
    std::uint64_t no_memory = 0;
    std::uint64_t discarded = 0;

    /// Those that the logger did not publish.
    std::uint64_t lost() const { return queue_full + no_memory + discarded; }

    friend bool operator==(const MessageCounts&, const MessageCounts&) = default;
};

struct LoggerStatistics {
    std::int64_t nanoseconds = 0;  ///< when they were sent, since 1970-01-01 UTC
    Application application;
    Endpoint writer;  ///< of its messages
    MessageCounts now;
    std::uint64_t accepted = 0;
    std::int32_t queued = 0;
    std::int32_t most_queued = 0;
    std::int32_t queue_size = 0;
    bool is_last = false;
    /// When the logger began to send to this viewer. Nothing when it did not know the viewer yet,
    /// or has forgotten it.
    std::optional<MessageCounts> at_match;
    bool has_forgotten_viewers = false;  ///< or may have

    std::uint64_t logged() const { return accepted + now.queue_full + now.no_memory; }
};

}  // namespace orvane::tools
