#include "tools/subcommands/follow_domain.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>
#include <variant>

#include "tools/domain/log_subscription.hpp"
#include "tools/subcommands/domain_access.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/subcommands/silence.hpp"
#include "tools/subcommands/stop_signal.hpp"
#include "tools/text/shared_ids.hpp"

namespace orvane::tools {
namespace {

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds time_left(std::optional<double> seconds, Clock::time_point start) {
    if (!seconds) {
        return longest_wait;
    }
    const std::chrono::duration<double> left =
        std::chrono::duration<double>{*seconds} - (Clock::now() - start);
    if (left > longest_wait) {
        return longest_wait;
    }
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(left),
                    std::chrono::milliseconds{0});
}

void warn_of_shared_ids(const std::vector<Event>& events, SharedIds& ids,
                        DomainFollower& follower) {
    for (const Event& event : events) {
        if (const auto* logger = std::get_if<LoggerEvent>(&event)) {
            for (const std::string& text : ids.note(*logger)) {
                follower.warn(text);
            }
        }
    }
}

/// @return the exit status
int hand_over(LogSubscription& subscription, const StopSignal& stop, DomainFollower& follower,
              std::optional<double> seconds, Silence& silence, Clock::time_point start) {
    SharedIds ids;
    while (true) {
        const std::chrono::milliseconds left = time_left(seconds, start);
        subscription.wait(silence.wait(left));
        const bool is_last = stop.requested() || left.count() == 0;
        Result<std::vector<Event>> events = subscription.take(is_last);
        if (!events) {
            fmt::print(stderr, "orvane: a reader failed\n");
            return exit_failure;
        }
        silence.note(!events->empty());
        warn_of_shared_ids(*events, ids, follower);
        if (const std::optional<int> status = follower.take(*std::move(events))) {
            return *status;
        }
        const bool are_others_silent = silence.tell(left.count() == 0);
        if (is_last) {
            return are_others_silent && !stop.requested() ? exit_failure : exit_success;
        }
    }
}

}  // namespace

int follow_domain(const DomainOptions& domain, std::optional<double> seconds,
                  DomainFollower& follower) {
    DomainOptions allowed = domain;
    if (check_access(allowed, DomainUse::read_messages) == Status::failed) {
        return exit_failure;
    }
    const Clock::time_point start = Clock::now();
    StopSignal stop;
    stop_at_expiry(allowed, stop);
    const std::unique_ptr<LogSubscription> subscription =
        LogSubscription::open(allowed, !domain.security.empty());
    if (!subscription) {
        fmt::print(stderr, "orvane: could not join domain {}\n", domain.id);
        return exit_failure;
    }
    const auto interruption = stop.interrupt([&] { subscription->interrupt(); });
    if (const std::optional<int> failure = follower.begin()) {
        return stop.conclude(*failure);
    }
    Silence silence{domain, [&] { return subscription->census(); }};
    const int status = hand_over(*subscription, stop, follower, seconds, silence, start);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    const std::uint64_t earlier =
        subscription->earlier([&](const Logger& logger) { return follower.wants(logger); });
    const int result = stop.conclude(follower.finish(status, elapsed.count(), earlier));
    follower.let_go();
    return result;
}

}  // namespace orvane::tools
