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
///
/// Each application has a clock, and the recorder has one. They differ, and they are set. So an
/// event is due as long after the last one of its clock as it happened after that one, or as long
/// after the last one of all, whichever is sooner. It is never due before the last one.
class Schedule {
public:
    Schedule(double speed, std::optional<double> longest_pause)
        : speed_(speed),
          longest_pause_(
              std::min(longest_pause.value_or(longest_wait.count()), longest_wait.count())) {}

    bool has_begun() const { return last_.has_value(); }

    /// The first event is due now.
    /// @param clock whose time it is
    /// @param time nanoseconds since 1970-01-01 UTC
    Clock::time_point due(const Application& clock, std::int64_t time, Clock::time_point now) {
        Clock::time_point due = now;
        if (last_) {
            const auto known = last_of_clock_.find(clock);
            const bool is_known = known != last_of_clock_.end();
            Seconds wait = time >= last_->time ? wait_behind(*last_, time, now)
                           : is_known          ? longest_wait
                                               : Seconds{0};
            if (is_known) {
                wait = std::min(wait, wait_behind(known->second, time, now));
            }
            wait = std::max(std::min(wait, longest_pause_), Seconds{last_->due - now});
            due += std::chrono::duration_cast<Clock::duration>(wait);
        }
        last_ = Event{time, due};
        last_of_clock_.insert_or_assign(clock, *last_);
        return due;
    }

private:
    struct Event {
        std::int64_t time;
        Clock::time_point due;
    };

    static constexpr Seconds longest_wait = std::chrono::hours{24 * 365};

    Seconds wait_behind(const Event& event, std::int64_t time, Clock::time_point now) const {
        const double elapsed = static_cast<double>(time) - static_cast<double>(event.time);
        return std::min(Seconds{event.due - now} + Seconds{elapsed * 1e-9 / speed_}, longest_wait);
    }

    double speed_;
    Seconds longest_pause_;
    std::optional<Event> last_;
    std::map<Application, Event> last_of_clock_;
};

/// The clock of an event's time. That of the recorder has no application.
struct ClockOfEvent {
    Application operator()(const MessageEvent& event) const { return event.record.application; }
    template <typename Other>
    Application operator()(const Other& /*event*/) const {
        return {};
    }
};

/// @return NULL when a file could not be opened; each of them is reported
std::unique_ptr<RecordingMerge> open_recordings(const ReplayOptions& options,
                                                RecordingMerge::Report report) {
    auto recordings = std::make_unique<RecordingMerge>(std::move(report), options.span);
    for (const std::string& file : options.files) {
        static_cast<void>(recordings->open(file, false));
    }
    return recordings->has_problems() ? nullptr : std::move(recordings);
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
            line_.print(fmt::format("waiting for a viewer in domain {}", options_.domain.id));
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
            if (Clock::now() >= next_look_) {
                publication_.flush();
                show_progress(*event, std::chrono::milliseconds{0}, recordings);
                status = look_around(std::chrono::milliseconds{0});
            }
            if (status == Status::ok && recordings.is_asked_for(*event) &&
                std::visit([&](const auto& each) { return is_wanted(each); }, *event)) {
                status = publish_in_time(*event, schedule, recordings);
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

    /// Whether everything could be published, and all viewers have got it.
    bool is_whole() const { return unfit_ == 0 && is_delivered_; }

private:
    bool is_wanted(const MessageEvent& event) const { return options_.query.matches(event); }
    bool is_wanted(const RecordingGap& /*gap*/) const { return true; }
    template <typename OfLogger>
    bool is_wanted(const OfLogger& event) const {
        return options_.query.matches(event.logger);
    }

    static bool is_publishable(const MessageEvent& event) {
        return LogPublication::is_publishable(event.record);
    }
    static bool is_publishable(const LoggerEvent& event) {
        return LogPublication::is_publishable(event.change.now);
    }
    template <typename Other>
    static bool is_publishable(const Other& /*event*/) {
        return true;
    }

    Status publish_in_time(const RecordedEvent& event, Schedule& schedule,
                           const RecordingMerge& recordings) {
        if (!std::visit([](const auto& each) { return is_publishable(each); }, event)) {
            ++unfit_;
            return Status::ok;
        }
        // The loggers that were there at the begin come before the first message, whenever they
        // were seen.
        if (std::holds_alternative<MessageEvent>(event) || schedule.has_begun()) {
            const Application clock = std::visit(ClockOfEvent{}, event);
            const auto due = schedule.due(clock, time_of(event), Clock::now());
            if (wait_until(due, event, recordings) == Status::failed) {
                return Status::failed;
            }
        }
        return interrupted() ? Status::ok
                             : std::visit([&](const auto& each) { return publish(each); }, event);
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
        return written == Written::failed ? Status::failed : Status::ok;
    }
    Status publish(const LoggerEvent& event) {
        const LoggerState& state = event.change.now;
        return event.change.kind == LoggerChange::Kind::gone ? publication_.end(state.application)
                                                             : publication_.write(state);
    }
    Status publish(const LossEvent& event) {
        lost_ += event.lost();
        return Status::ok;
    }
    Status publish(const RecordingGap& event) {
        missing_ += event.events;
        return Status::ok;
    }

    Status wait_until(Clock::time_point due, const RecordedEvent& event,
                      const RecordingMerge& recordings) {
        constexpr std::chrono::milliseconds longest_look{200};
        constexpr std::chrono::minutes long_pause{1};
        const auto left = [&] {
            return std::chrono::floor<std::chrono::milliseconds>(due - Clock::now());
        };
        if (left() > long_pause) {
            line_.print(fmt::format("nothing for {} s; --max-pause shortens that",
                                    std::chrono::ceil<std::chrono::seconds>(left()).count()));
        }
        while (!interrupted() && left().count() > 0) {
            publication_.flush();
            show_progress(event, left(), recordings);
            if (look_around(std::clamp(left(), std::chrono::milliseconds{0}, longest_look)) ==
                Status::failed) {
                return Status::failed;
            }
        }
        return Status::ok;
    }

    void show_progress(const RecordedEvent& event, std::chrono::milliseconds left,
                       const RecordingMerge& recordings) {
        if (!line_.is_due()) {
            return;
        }
        std::string text =
            fmt::format("{}  {} messages", display_time(time_of(event), false), messages_);
        const double done = recordings.progress();
        // A small file is read at once.
        if (done < 1) {
            text += fmt::format("  {:.0f} %", 100 * done);
        }
        if (left >= std::chrono::seconds{2}) {
            text += fmt::format("  next in {} s", left.count() / 1000);
        }
        line_.show(text);
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
                                    options_.domain.id));
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
                is_delivered_ = false;
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
    bool is_delivered_ = true;
};

/// Publishes again and again. @return failed when the domain or a file failed
Status loop(Replay& replay, const ReplayOptions& options, ProgressLine& line) {
    Status status = Status::ok;
    while (status == Status::ok && !replay.interrupted()) {
        const std::uint64_t messages_before = replay.messages();
        bool tells = true;
        const auto recordings = open_recordings(options, [&](const std::string& problem) {
            if (tells) {
                line.print(problem);
            }
        });
        if (!recordings) {
            return Status::failed;
        }
        // What else cannot be read has been told the first time.
        tells = false;
        status = replay.play(*recordings);
        if (replay.messages() == messages_before) {
            break;
        }
    }
    return status;
}

/// @return the exit status
int play(Replay& replay, RecordingMerge& recordings, const ReplayOptions& options,
         ProgressLine& line) {
    if (replay.wait_for_viewer() == Status::failed) {
        return exit_failure;
    }
    const auto begin = Clock::now();
    if (!replay.interrupted()) {
        line.print(fmt::format("replaying in domain {0}; to see it: orvane tail --domain {0}",
                               options.domain.id));
    }
    Status status = replay.play(recordings);
    const bool finds_nothing = replay.messages() == 0 && !replay.interrupted();
    if (options.loop && status == Status::ok && !finds_nothing) {
        status = loop(replay, options, line);
    }
    line.print(replay.summary(Clock::now() - begin));
    if (finds_nothing && !recordings.has_problems()) {
        line.print("expected a message that the options do not leave out");
    }
    const bool is_whole = !recordings.has_problems() && replay.is_whole() && !finds_nothing;
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
            options.domain.id, fmt::join(names, ", ")));
        return exit_failure;
    }
    const auto publication = LogPublication::open(options.domain);
    if (!publication) {
        line.print(fmt::format("could not join domain {} to publish", options.domain.id));
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
    if (!recordings) {
        return exit_failure;
    }
    return with_domain(options.domain, DomainUse::publish, [&](DomainView& view) {
        return replay_in(view, *recordings, options, line);
    });
}

}  // namespace orvane::tools
