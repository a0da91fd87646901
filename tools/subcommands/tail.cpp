#include "tools/subcommands/tail.hpp"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "tools/domain/log_subscription.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/subcommands/stop_signal.hpp"
#include "tools/text/json_line.hpp"
#include "tools/text/log_line.hpp"

namespace orvane::tools {
namespace {

using Clock = std::chrono::steady_clock;

enum class [[nodiscard]] Progress{goes_on, complete, reader_failed, write_failed};

/// Prints messages, and counts them.
class Display {
public:
    explicit Display(const TailOptions& options)
        : options_(options),
          style_{.color = !options.json && !options.no_color && isatty(STDOUT_FILENO) != 0,
                 .utc = options.utc} {}

    /// Prints the messages that were asked for, up to the count.
    Progress show(const std::vector<LogRecord>& records) {
        std::string lines;
        for (const LogRecord& record : records) {
            if (is_complete()) {
                break;
            }
            if (!options_.query.matches(record)) {
                ++hidden_;
                continue;
            }
            lines += options_.json ? json_line(record) : text_line(record, style_);
            applications_.insert(record.application);
            ++shown_;
        }
        if (std::fwrite(lines.data(), 1, lines.size(), stdout) != lines.size() ||
            std::fflush(stdout) != 0) {
            write_error_ = errno;
            return Progress::write_failed;
        }
        return is_complete() ? Progress::complete : Progress::goes_on;
    }

    std::string summary(std::int32_t lost, double seconds) const {
        std::string text = fmt::format("{} message{} of {} application{} in {:.1f} s", shown_,
                                       shown_ == 1 ? "" : "s", applications_.size(),
                                       applications_.size() == 1 ? "" : "s", seconds);
        if (hidden_ > 0) {
            text += fmt::format(", {} not asked for", hidden_);
        }
        if (lost > 0) {
            text += fmt::format(", {} lost", lost);
        }
        return text;
    }

    /// The errno of @ref Progress::write_failed.
    int write_error() const { return write_error_; }

private:
    bool is_complete() const { return options_.count && shown_ >= *options_.count; }

    const TailOptions& options_;
    LineStyle style_;
    std::set<Application> applications_;
    std::uint64_t shown_ = 0;
    std::uint64_t hidden_ = 0;
    int write_error_ = 0;
};

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

/// @return how it ended; it still goes on when the time is over or a signal came
Progress follow(LogSubscription& subscription, const StopSignal& stop, const TailOptions& options,
                Display& display, Clock::time_point start) {
    while (true) {
        const std::chrono::milliseconds left = time_left(options, start);
        subscription.wait(left);
        const bool is_last = stop.requested() || left.count() == 0;
        const Result<std::vector<LogRecord>> records = subscription.take();
        if (!records) {
            return Progress::reader_failed;
        }
        const Progress progress = display.show(*records);
        if (progress != Progress::goes_on || is_last) {
            return progress;
        }
    }
}

/// Prints on the standard error why it could not go on. @return the exit status
int print_ending(Progress progress, const Display& display) {
    switch (progress) {
        case Progress::goes_on:
        case Progress::complete:
            return exit_success;
        case Progress::reader_failed:
            fmt::print(stderr, "orvane: the reader failed\n");
            break;
        case Progress::write_failed:
            print_write_failure(display.write_error());
            break;
    }
    return exit_failure;
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

    Display display{options};
    const Progress progress = follow(*subscription, stop, options, display, start);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    fmt::print(stderr, "orvane: {}\n", display.summary(subscription->lost(), elapsed.count()));
    return stop.conclude(print_ending(progress, display));
}

}  // namespace orvane::tools
