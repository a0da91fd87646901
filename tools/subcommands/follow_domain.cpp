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

/// Says once, after a while, who is in the domain and is not heard.
class Silence {
public:
    Silence(const DomainOptions& domain, const LogSubscription& subscription,
            Clock::time_point start)
        : domain_(domain), subscription_(subscription), until_(start + patience) {}

    void note(const std::vector<Event>& events) { is_heard_ = is_heard_ || !events.empty(); }

    /// How long to wait for news, no longer than @p longest.
    std::chrono::milliseconds wait(std::chrono::milliseconds longest) const {
        return is_told_
                   ? longest
                   : std::clamp(std::chrono::ceil<std::chrono::milliseconds>(until_ - Clock::now()),
                                std::chrono::milliseconds{0}, longest);
    }

    /// @param is_over the time that the user gave is over
    /// @return whether nobody has been heard, and somebody should have been
    bool tell(bool is_over) {
        const Clock::time_point now = Clock::now();
        if (!is_told_ && (now >= until_ || (is_over && now >= until_ - patience + shortest))) {
            is_told_ = true;
            are_others_silent_ = tell_of_silent(domain_, subscription_.census(), is_heard_);
        }
        return are_others_silent_ && !is_heard_;
    }

private:
    static constexpr std::chrono::seconds patience{3};
    /// Before that nobody need have been heard.
    static constexpr std::chrono::seconds shortest{1};

    const DomainOptions& domain_;
    const LogSubscription& subscription_;
    Clock::time_point until_;
    bool is_heard_ = false;
    bool is_told_ = false;
    bool are_others_silent_ = false;
};

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
        silence.note(*events);
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
    Silence silence{domain, *subscription, start};
    const int status = hand_over(*subscription, stop, follower, seconds, silence, start);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    const std::uint64_t earlier =
        subscription->earlier([&](const Logger& logger) { return follower.wants(logger); });
    const int result = stop.conclude(follower.finish(status, elapsed.count(), earlier));
    follower.let_go();
    return result;
}

}  // namespace orvane::tools
