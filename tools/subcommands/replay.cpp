#include "tools/subcommands/replay.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <set>
#include <variant>

#include "tools/domain/log_publication.hpp"
#include "tools/recording/recording_merge.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/progress_line.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/text/logger_name.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using Written = LogPublication::Written;

/// When an event is to be published that happened at another time.
class Schedule {
public:
    Schedule(double speed, std::optional<double> longest_pause)
        : speed_(speed), longest_pause_(longest_pause.value_or(longest_wait.count())) {}

    bool has_begun() const { return has_begun_; }

    /// The first call begins.
    /// @param nanoseconds since 1970-01-01 UTC
    Clock::time_point due(std::int64_t nanoseconds, Clock::time_point now) {
        if (!has_begun_) {
            begin(nanoseconds, now);
        }
        const double elapsed = static_cast<double>(nanoseconds) - static_cast<double>(first_);
        const Seconds wait = begin_ - now + Seconds{elapsed * 1e-9 / speed_};
        if (wait <= longest_pause_) {
            return now + std::chrono::duration_cast<Clock::duration>(std::max(wait, Seconds{0}));
        }
        // All later events come earlier by as much.
        begin(nanoseconds, now + std::chrono::duration_cast<Clock::duration>(longest_pause_));
        return begin_;
    }

private:
    static constexpr Seconds longest_wait = std::chrono::hours{24 * 365};

    void begin(std::int64_t nanoseconds, Clock::time_point due) {
        has_begun_ = true;
        first_ = nanoseconds;
        begin_ = due;
    }

    double speed_;
    Seconds longest_pause_;
    bool has_begun_ = false;
    std::int64_t first_ = 0;  ///< an event, which is due at @ref begin_
    Clock::time_point begin_;
};

std::unique_ptr<RecordingMerge> open_recordings(const ReplayOptions& options,
                                                RecordingMerge::Report report) {
    auto recordings = std::make_unique<RecordingMerge>(std::move(report), options.span);
    for (const std::string& file : options.files) {
        // Each that cannot be opened is told.
        static_cast<void>(recordings->open(file, false));
    }
    return recordings;
}

/// The names of the loggers that are alive in the domain.
class LiveNames {
public:
    explicit LiveNames(DomainView& view) : view_(view) {}

    std::vector<std::string> all() {
        return take([](const Application&) { return true; });
    }

    /// Those that have not been told before. A logger without a kind may just not have sent it yet.
    std::vector<std::string> newcomers() {
        constexpr std::chrono::milliseconds patience{500};
        const auto now = Clock::now();
        return take([&](const Application& application) {
            const auto since = seen_since_.try_emplace(application, now).first->second;
            return !view_.directory().logger(application).kind.empty() || now - since > patience;
        });
    }

    /// Leaves one out.
    void ignore(const Application& application) { told_.insert(application); }

private:
    template <typename Condition>
    std::vector<std::string> take(const Condition& condition) {
        std::vector<std::string> names;
        for (const Application& application : view_.administration().state_writers()) {
            if (!told_.contains(application) && condition(application)) {
                told_.insert(application);
                names.push_back(name_of(view_.directory().logger(application)));
            }
        }
        return names;
    }

    DomainView& view_;
    std::set<Application> told_;
    std::map<Application, Clock::time_point> seen_since_;
};

class Replay {
public:
    Replay(DomainView& view, LiveNames& live, LogPublication& publication,
           const ReplayOptions& options, ProgressLine& line)
        : view_(view), live_(live), publication_(publication), options_(options), line_(line) {}

    /// Waits for a viewer, for a while or as long as was asked for. @return failed when the domain
    /// failed
    Status wait_for_viewer() {
        const auto deadline = Clock::now() + DomainView::settling_time;
        if (options_.waits_for_viewer) {
            line_.print(fmt::format("waiting for a viewer in domain {}", options_.domain_id));
        }
        Status status = Status::ok;
        while (status == Status::ok && !interrupted() && !publication_.has_viewer() &&
               (options_.waits_for_viewer || Clock::now() < deadline)) {
            status = look_around(std::chrono::milliseconds{50});
        }
        return status;
    }

    /// Publishes what is asked for, once. @return failed when the domain failed
    Status play(RecordingMerge& recordings) {
        Schedule schedule{options_.speed, options_.longest_pause};
        Status status = Status::ok;
        while (status == Status::ok && !interrupted()) {
            const std::optional<RecordedEvent> event = recordings.next();
            if (!event) {
                break;
            }
            const bool is_message = std::holds_alternative<MessageEvent>(*event);
            if (!std::visit([&](const auto& each) { return is_wanted(each); }, *event)) {
                continue;
            }
            // The loggers that were there at the begin come before the first message, whenever
            // they were seen.
            if (is_message || schedule.has_begun()) {
                status = wait_until(schedule.due(time_of(*event), Clock::now()), time_of(*event),
                                    recordings);
            }
            if (status == Status::ok && !interrupted()) {
                status = std::visit([&](const auto& each) { return publish(each); }, *event);
            }
        }
        deliver();
        const Status ended = publication_.end_all();
        return status == Status::ok ? ended : status;
    }

    bool interrupted() const { return view_.administration().interrupted(); }
    std::uint64_t messages() const { return messages_; }

    std::string summary(Seconds elapsed) const {
        std::string text = fmt::format("{} message{} of {} application{} in {:.1f} s", messages_,
                                       messages_ == 1 ? "" : "s", applications_.size(),
                                       applications_.size() == 1 ? "" : "s", elapsed.count());
        if (lost_ > 0) {
            text += fmt::format(", {} lost when they were recorded", lost_);
        }
        if (missing_ > 0) {
            text += fmt::format(", {} event{} not in the recording", missing_,
                                missing_ == 1 ? " is" : "s are");
        }
        if (unfit_ > 0) {
            text += fmt::format(
                ", {} cannot be published: a text is too long, or a time not in "
                "1970 to 2038",
                unfit_);
        }
        return text;
    }

    bool has_unfit() const { return unfit_ > 0; }

private:
    bool is_wanted(const MessageEvent& event) const { return options_.query.matches(event); }
    bool is_wanted(const RecordingGap& /*gap*/) const { return true; }
    template <typename OfLogger>
    bool is_wanted(const OfLogger& event) const {
        return options_.query.matches(event.logger);
    }

    Status publish(const MessageEvent& event) {
        Written written = publication_.write(event.record);
        while (written == Written::not_yet && !interrupted()) {
            if (look_around(std::chrono::milliseconds{0}) == Status::failed) {
                return Status::failed;
            }
            written = publication_.write(event.record);
        }
        if (written == Written::yes) {
            ++messages_;
            applications_.insert(event.record.application);
        }
        return count_unfit(written);
    }
    Status publish(const LoggerEvent& event) {
        return event.change.kind == LoggerChange::Kind::gone
                   ? publication_.end(event.change.now.application)
                   : count_unfit(publication_.write(event.change.now));
    }
    Status publish(const LossEvent& event) {
        lost_ += event.lost();
        return Status::ok;
    }
    Status publish(const RecordingGap& event) {
        missing_ += event.events;
        return Status::ok;
    }

    Status count_unfit(Written written) {
        unfit_ += written == Written::never ? 1 : 0;
        return written == Written::failed ? Status::failed : Status::ok;
    }

    Status wait_until(Clock::time_point due, std::int64_t time, const RecordingMerge& recordings) {
        constexpr std::chrono::milliseconds longest_look{200};
        while (!interrupted()) {
            const auto now = Clock::now();
            const auto left = std::chrono::floor<std::chrono::milliseconds>(due - now);
            if (line_.is_due()) {
                line_.show(progress(time, left, recordings));
            }
            if (left.count() <= 0 && now < next_look_) {
                break;
            }
            if (left.count() > 0) {
                publication_.flush();
            }
            if (look_around(std::clamp(left, std::chrono::milliseconds{0}, longest_look)) ==
                Status::failed) {
                return Status::failed;
            }
        }
        return Status::ok;
    }

    std::string progress(std::int64_t time, std::chrono::milliseconds left,
                         const RecordingMerge& recordings) const {
        std::string text = fmt::format("{}  {} messages", display_time(time, false), messages_);
        const double done = recordings.progress();
        // A small file is read at once.
        if (done < 1) {
            text += fmt::format("  {:.0f} %", 100 * done);
        }
        if (left >= std::chrono::seconds{2}) {
            text += fmt::format("  next in {} s", left.count() / 1000);
        }
        return text;
    }

    /// Lets the domain's news come for a while, and tells who else logs there.
    Status look_around(std::chrono::milliseconds longest) {
        constexpr std::chrono::milliseconds period{100};
        if (!view_.next(longest)) {
            print_lost_domain();
            return Status::failed;
        }
        for (const std::string& name : live_.newcomers()) {
            line_.print(fmt::format("{} logs in domain {}, too, among what is replayed", name,
                                    options_.domain_id));
        }
        next_look_ = Clock::now() + period;
        return Status::ok;
    }

    /// Waits until the viewers have everything. Those that do not go on are left after a while.
    void deliver() {
        constexpr std::chrono::seconds longest{10};
        constexpr std::chrono::milliseconds step{100};
        const auto deadline = Clock::now() + longest;
        while (!publication_.wait_for_viewers(step) && !interrupted()) {
            if (Clock::now() >= deadline) {
                line_.print("a viewer has not received everything");
                return;
            }
        }
    }

    DomainView& view_;
    LiveNames& live_;
    LogPublication& publication_;
    const ReplayOptions& options_;
    ProgressLine& line_;
    Clock::time_point next_look_ = Clock::time_point::min();
    std::set<Application> applications_;  ///< with messages that were published
    std::uint64_t messages_ = 0;
    std::uint64_t lost_ = 0;
    std::uint64_t missing_ = 0;
    std::uint64_t unfit_ = 0;
};

/// @return the exit status
int play(Replay& replay, RecordingMerge& recordings, const ReplayOptions& options,
         ProgressLine& line) {
    Status status = replay.wait_for_viewer();
    line.print(fmt::format("replaying in domain {0}; to see it: orvane tail --domain {0}",
                           options.domain_id));
    const auto begin = Clock::now();
    if (status == Status::ok) {
        status = replay.play(recordings);
    }
    const bool finds_nothing = replay.messages() == 0 && !replay.interrupted();
    while (options.loop && status == Status::ok && !finds_nothing && !replay.interrupted()) {
        // What cannot be read has been told.
        status = replay.play(*open_recordings(options, [](const std::string&) {}));
    }
    line.print(replay.summary(Clock::now() - begin));
    if (finds_nothing && !recordings.has_problems()) {
        line.print("expected a message that the options do not leave out");
    }
    const bool is_whole = !recordings.has_problems() && !replay.has_unfit() && !finds_nothing;
    return status == Status::ok && is_whole ? exit_success : exit_failure;
}

int replay_in(DomainView& view, RecordingMerge& recordings, const ReplayOptions& options,
              ProgressLine& line) {
    if (view.discover(nullptr, DomainView::settling_time) == Status::failed) {
        return print_lost_domain();
    }
    LiveNames live{view};
    const std::vector<std::string> names = live.all();
    if (!names.empty() && !options.among_live) {
        line.print(fmt::format(
            "loggers are alive in domain {}: {}; expected a domain without, or --among-live",
            options.domain_id, fmt::join(names, ", ")));
        return exit_failure;
    }
    const auto publication = LogPublication::open(options.domain_id);
    if (!publication) {
        line.print(fmt::format("could not join domain {} to publish", options.domain_id));
        return exit_failure;
    }
    live.ignore(publication->identity());
    Replay replay{view, live, *publication, options, line};
    return play(replay, recordings, options, line);
}

}  // namespace

int replay(const ReplayOptions& options) {
    ProgressLine line;
    const auto recordings =
        open_recordings(options, [&](const std::string& problem) { line.print(problem); });
    if (recordings->has_problems()) {
        return exit_failure;
    }
    return with_domain(options.domain_id, Administration::Access::read, [&](DomainView& view) {
        return replay_in(view, *recordings, options, line);
    });
}

}  // namespace orvane::tools
