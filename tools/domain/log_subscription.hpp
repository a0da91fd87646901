/// @file log_subscription.hpp
/// @brief Receives the log messages of a domain.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/records/event.hpp"
#include "tools/records/result.hpp"

namespace orvane::tools {

/// A reliable, transient-local, keep-all reader of a domain's log topic: it gets the
/// history of running applications and every message from then on.
class LogSubscription {
public:
    /// @return NULL when the domain cannot be joined; the middleware has said why.
    static std::unique_ptr<LogSubscription> open(std::int32_t domain_id);
    virtual ~LogSubscription() = default;

    /// Waits until there are messages, the time is over, or @ref interrupt was called.
    virtual void wait(std::chrono::milliseconds longest) = 0;

    /// Ends a wait, the running one or the next. May be called from any thread.
    virtual void interrupt() = 0;

    /// All messages that have arrived, in the order in which they were logged. A logger has no kind
    /// as long as its State has not arrived.
    /// @return nothing when the reader failed
    virtual Result<std::vector<MessageEvent>> take() = 0;

    /// Messages that the network lost for good.
    virtual std::int32_t lost() = 0;
};

}  // namespace orvane::tools
