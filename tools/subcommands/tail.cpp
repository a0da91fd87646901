#include "tools/subcommands/tail.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "tools/domain/log_subscription.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/subcommands/stop_signal.hpp"

namespace orvane::tools {
namespace {

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds time_left(const TailOptions& options, Clock::time_point start) {
    if (!options.seconds) {
        return longest_wait;
    }
    const std::chrono::duration<double> left =
        std::chrono::duration<double>{*options.seconds} - (Clock::now() - start);
    if (left > longest_wait) {
        return longest_wait;
    }
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(left),
                    std::chrono::milliseconds{0});
}

/// Goes on until the display is complete, the time is over or a signal came. @return the exit
/// status
int follow(LogSubscription& subscription, const StopSignal& stop, const TailOptions& options,
           Display& display, Clock::time_point start) {
    while (true) {
        const std::chrono::milliseconds left = time_left(options, start);
        subscription.wait(left);
        const bool is_last = stop.requested() || left.count() == 0;
        const Result<std::vector<Event>> events = subscription.take();
        if (!events) {
            fmt::print(stderr, "orvane: a reader failed\n");
            return exit_failure;
        }
        switch (display.show(*events)) {
            case Display::Progress::write_failed:
                return exit_failure;
            case Display::Progress::complete:
                return exit_success;
            case Display::Progress::goes_on:
                break;
        }
        if (is_last) {
            return exit_success;
        }
    }
}

}  // namespace

int tail(const TailOptions& options) {
    const Clock::time_point start = Clock::now();
    StopSignal stop;
    const std::unique_ptr<LogSubscription> subscription = LogSubscription::open(options.domain_id);
    if (!subscription) {
        fmt::print(stderr, "orvane: could not join domain {}\n", options.domain_id);
        return exit_failure;
    }
    const auto interruption = stop.interrupt([&] { subscription->interrupt(); });

    Display display{options.display};
    const int status = follow(*subscription, stop, options, display, start);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    std::fputs(display.summary(elapsed.count(), subscription->earlier()).c_str(), stderr);
    return stop.conclude(status);
}

}  // namespace orvane::tools
