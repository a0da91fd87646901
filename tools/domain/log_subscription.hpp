/// @file log_subscription.hpp
/// @brief Receives the log messages of a domain.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/records/log_record.hpp"

namespace orvane::tools {

/// A reliable, transient-local, keep-all reader of a domain's log topic: it gets what running
/// applications still keep, and everything from then on.
class LogSubscription {
public:
    /// @return NULL when the domain cannot be joined; the middleware has said why.
    static std::unique_ptr<LogSubscription> open(std::int32_t domain_id);
    virtual ~LogSubscription() = default;

    /// Waits until there are messages, the time is over, or @ref interrupt was called.
    virtual void wait(std::chrono::milliseconds longest) = 0;

    /// Ends a wait, the running one or the next. May be called from any thread.
    virtual void interrupt() = 0;

    /// Appends all messages that have arrived, in the order in which they were logged.
    /// @return false when the reader failed
    [[nodiscard]] virtual bool take(std::vector<LogRecord>& records) = 0;

    /// Messages that the network lost for good.
    virtual std::int32_t lost() = 0;
};

}  // namespace orvane::tools
