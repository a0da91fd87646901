#include "tools/subcommands/follow_domain.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>

#include "tools/domain/log_subscription.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/subcommands/stop_signal.hpp"

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

/// @return the exit status
int hand_over(LogSubscription& subscription, const StopSignal& stop, DomainFollower& follower,
              std::optional<double> seconds, Clock::time_point start) {
    while (true) {
        const std::chrono::milliseconds left = time_left(seconds, start);
        subscription.wait(left);
        const bool is_last = stop.requested() || left.count() == 0;
        Result<std::vector<Event>> events = subscription.take(is_last);
        if (!events) {
            fmt::print(stderr, "orvane: a reader failed\n");
            return exit_failure;
        }
        if (const std::optional<int> status = follower.take(*std::move(events))) {
            return *status;
        }
        if (is_last) {
            return exit_success;
        }
    }
}

}  // namespace

int follow_domain(std::int32_t domain_id, std::optional<double> seconds, DomainFollower& follower) {
    const Clock::time_point start = Clock::now();
    StopSignal stop;
    const std::unique_ptr<LogSubscription> subscription = LogSubscription::open(domain_id);
    if (!subscription) {
        fmt::print(stderr, "orvane: could not join domain {}\n", domain_id);
        return exit_failure;
    }
    const auto interruption = stop.interrupt([&] { subscription->interrupt(); });
    if (const std::optional<int> failure = follower.begin()) {
        return stop.conclude(*failure);
    }
    const int status = hand_over(*subscription, stop, follower, seconds, start);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    const std::uint64_t earlier =
        subscription->earlier([&](const Logger& logger) { return follower.wants(logger); });
    const int result = stop.conclude(follower.finish(status, elapsed.count(), earlier));
    follower.let_go();
    return result;
}

}  // namespace orvane::tools
