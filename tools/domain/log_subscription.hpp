/// @file log_subscription.hpp
/// @brief Receives the log messages of a domain, and finds out what is missing.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "tools/domain/participant_census.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/event.hpp"
#include "tools/records/result.hpp"

namespace orvane::tools {

/// A reliable, transient-local, keep-all reader of a domain's log topic: it gets the
/// history of running applications and every message from then on. Beside it are readers of what
/// names the loggers and of their statistics.
class LogSubscription {
public:
    /// @param is_authenticated the domain is one of DDS Security, where certificates say who has
    /// published a message
    /// @return NULL when the domain cannot be joined; the middleware has said why.
    static std::unique_ptr<LogSubscription> open(const DomainOptions& domain,
                                                 bool is_authenticated = false);
    virtual ~LogSubscription() = default;

    /// Waits until there may be events, the time is over, or @ref interrupt was called.
    virtual void wait(std::chrono::milliseconds longest) = 0;

    /// Ends a wait, the running one or the next. May be called from any thread.
    virtual void interrupt() = 0;

    /// What is to be told now: loggers that have appeared or changed, then messages and losses,
    /// then loggers that have gone. Messages that have arrived together are in the order in which
    /// they were logged.
    /// @param is_last nothing waits for its name any more
    /// @return nothing when a reader failed
    virtual Result<std::vector<Event>> take(bool is_last) = 0;

    /// Who else is in the domain.
    virtual ParticipantCensus census() const = 0;

    /// Messages of these loggers that were logged before there was this viewer, and that did not
    /// come.
    virtual std::uint64_t earlier(
        const std::function<bool(const Logger& logger)>& is_wanted) const = 0;
};

}  // namespace orvane::tools
