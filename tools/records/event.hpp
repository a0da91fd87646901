/// @file event.hpp
/// @brief What a viewer sees of a domain, in the order in which it is told.
#pragma once

#include <cstdint>
#include <memory>
#include <variant>

#include "tools/records/log_record.hpp"
#include "tools/records/logger.hpp"
#include "tools/records/logger_change.hpp"

namespace orvane::tools {

/// Who has published a message or a State in another's name.
struct Publisher {
    Logger logger;
    bool is_authenticated = false;  ///< a certificate says that it is this one
};

/// A message and who has logged it.
struct MessageEvent {
    LogRecord record;
    Logger logger;                                 ///< the one that the message names
    std::shared_ptr<const Publisher> publisher{};  ///< NULL: the logger itself
};

/// Messages that nobody will see any more, by cause.
struct LossEvent {
    std::int64_t nanoseconds = 0;  ///< when it was noticed, since 1970-01-01 UTC
    Logger logger;
    std::uint64_t queue_full = 0;  ///< refused by the logger, for want of room
    std::uint64_t no_memory = 0;   ///< refused by the logger, for want of memory
    std::uint64_t discarded = 0;   ///< accepted by the logger and never published
    std::uint64_t on_the_way = 0;  ///< published, and not received

    std::uint64_t lost() const { return queue_full + no_memory + discarded + on_the_way; }
};

/// The appearance, the change or the end of a logger.
struct LoggerEvent {
    std::int64_t nanoseconds = 0;  ///< when it was seen, since 1970-01-01 UTC
    LoggerChange change;
    Logger logger;
    std::shared_ptr<const Publisher> publisher{};  ///< NULL: the logger itself
};

using Event = std::variant<MessageEvent, LossEvent, LoggerEvent>;

}  // namespace orvane::tools
