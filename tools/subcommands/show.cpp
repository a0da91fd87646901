#include "tools/subcommands/show.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <mutex>
#include <variant>

#include "tools/recording/recording_merge.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/subcommands/stop_signal.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/json_line.hpp"
#include "tools/text/logger_name.hpp"

namespace orvane::tools {
namespace {

using Progress = Display::Progress;

/// Prints what the recordings have.
class Show {
public:
    Show(RecordingMerge& recordings, const ShowOptions& options)
        : recordings_(recordings), options_(options), display_(options.display) {}

    /// Prints up to the present end of the files.
    Progress print_all(const StopSignal& stop) {
        // Enough for the terminal, and few enough for a signal.
        constexpr std::size_t largest_batch = 256;
        Progress progress = Progress::goes_on;
        std::optional<RecordedEvent> event;
        do {
            std::vector<Event> batch;
            while (batch.size() < largest_batch && (event = recordings_.next()) &&
                   is_for_display(*event)) {
                if (recordings_.is_asked_for(*event)) {
                    batch.push_back(event_of(*event));
                }
            }
            progress = display_.show(batch);
            if (event && !is_for_display(*event) && recordings_.is_asked_for(*event) &&
                progress == Progress::goes_on) {
                progress = print_other(*event);
            }
        } while (event && progress == Progress::goes_on && !stop.requested());
        return progress;
    }

    std::string summary() const {
        constexpr double seconds_per_nanosecond = 1e-9;
        const double nanoseconds =
            last_ < first_ ? 0 : static_cast<double>(last_) - static_cast<double>(first_);
        constexpr std::uint64_t none = 0;
        return display_.summary(nanoseconds * seconds_per_nanosecond, none);
    }

private:
    static bool is_for_display(const RecordedEvent& event) {
        return std::holds_alternative<MessageEvent>(event) ||
               std::holds_alternative<LossEvent>(event);
    }

    Event event_of(const RecordedEvent& event) {
        const auto* message = std::get_if<MessageEvent>(&event);
        if (message == nullptr) {
            return std::get<LossEvent>(event);
        }
        first_ = std::min(first_, message->record.nanoseconds);
        last_ = std::max(last_, message->record.nanoseconds);
        return *message;
    }

    /// Prints a gap, and for programs what happened to a logger.
    Progress print_other(const RecordedEvent& event) const {
        std::string text;
        const auto* gap = std::get_if<RecordingGap>(&event);
        if (gap != nullptr) {
            text = options_.display.json ? json_line(*gap) : gap_line(*gap);
        } else if (options_.display.json &&
                   options_.display.query.matches(std::get<LoggerEvent>(event).logger)) {
            text = json_line(event);
        }
        return write_out(text) == Status::ok ? Progress::goes_on : Progress::write_failed;
    }

    RecordingMerge& recordings_;
    const ShowOptions& options_;
    Display display_;
    // Of the messages.
    std::int64_t first_ = std::numeric_limits<std::int64_t>::max();
    std::int64_t last_ = std::numeric_limits<std::int64_t>::min();
};

Progress follow(Show& show, RecordingMerge& recordings, StopSignal& stop) {
    constexpr std::chrono::milliseconds period{200};
    std::mutex mutex;
    std::condition_variable stopped;
    const auto interruption = stop.interrupt([&] { stopped.notify_all(); });
    Progress progress = Progress::goes_on;
    while (progress == Progress::goes_on && !stop.requested()) {
        if (!recordings.go_on()) {
            std::unique_lock lock(mutex);
            stopped.wait_for(lock, period, [&] { return stop.requested(); });
        }
        progress = show.print_all(stop);
    }
    return progress;
}

}  // namespace

int show(const ShowOptions& options) {
    StopSignal stop;
    RecordingMerge recordings{[](const std::string& problem) {
                                  fmt::print(stderr, "orvane: {}\n", displayable(problem));
                              },
                              options.span};
    for (const std::string& file : options.files) {
        // Each that cannot be opened is told.
        static_cast<void>(recordings.open(file, options.follow));
    }
    if (recordings.has_problems()) {
        return exit_failure;
    }
    Show shown{recordings, options};
    Progress progress = shown.print_all(stop);
    if (options.follow && progress == Progress::goes_on) {
        progress = follow(shown, recordings, stop);
    }
    std::fputs(shown.summary().c_str(), stderr);
    return stop.conclude(progress == Progress::write_failed || recordings.has_problems()
                             ? exit_failure
                             : exit_success);
}

}  // namespace orvane::tools
