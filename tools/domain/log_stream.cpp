#include "tools/domain/log_stream.hpp"

#include <utility>

namespace orvane::tools {
namespace {

template <typename Time>
void note_earlier(std::optional<Time>& earliest, const std::optional<Time>& other) {
    if (other && (!earliest || *other < *earliest)) {
        earliest = other;
    }
}

}  // namespace

void LogStream::receive(LogRecord record, const Origin& origin, Clock::time_point now) {
    if (origin.number && !accounts_.of(origin.writer).receive(*origin.number, now)) {
        return;
    }
    messages_.push_back(
        {std::move(record), application_of(origin.writer), now + patience_for_names});
}

void LogStream::receive_end(const Origin& origin, Clock::time_point now) {
    if (origin.number) {
        accounts_.of(origin.writer).receive(*origin.number, now);
    } else {
        accounts_.of(origin.writer).receive_unnumbered();
    }
}

void LogStream::receive(const LoggerStatistics& statistics, Clock::time_point now) {
    accounts_.of(statistics.writer).receive(statistics, now);
}

void LogStream::set_matched(std::set<Endpoint> writers) {
    std::set<Application> still_there;
    for (const Endpoint& writer : writers) {
        if (nameless_.contains(application_of(writer))) {
            still_there.insert(application_of(writer));
        }
    }
    nameless_ = std::move(still_there);
    accounts_.set_matched(std::move(writers));
}

bool LogStream::waits_for_name(const Logger& logger) const {
    return logger.kind.empty() && !nameless_.contains(logger.application);
}

void LogStream::take(Clock::time_point now, std::int64_t wall_clock, bool is_last,
                     std::vector<Event>& events) {
    events.reserve(events.size() + messages_.size());
    std::shared_ptr<const Publisher> publisher;  // of the last message in another's name
    for (; !messages_.empty(); messages_.pop_front()) {
        Waiting& first = messages_.front();
        Logger logger = directory_.logger(first.record.application);
        const bool is_own = share_host_and_app(first.publisher, first.record.application);
        if (!is_own && (!publisher || publisher->logger.application != first.publisher)) {
            publisher = directory_.publisher(first.publisher, is_authenticated_);
        }
        const bool shows_publisher = !is_own && is_authenticated_;
        if (waits_for_name(logger) || (shows_publisher && waits_for_name(publisher->logger))) {
            if (now < first.until && !is_last) {
                break;
            }
            nameless_.insert(logger.application);
            if (shows_publisher) {
                nameless_.insert(first.publisher);
            }
        }
        events.emplace_back(
            MessageEvent{std::move(first.record), std::move(logger), is_own ? nullptr : publisher});
    }
    for (auto& [writer, account] : accounts_.open()) {
        const LostMessages lost = account.take_losses(now);
        if (lost == LostMessages{}) {
            continue;
        }
        events.emplace_back(LossEvent{.nanoseconds = wall_clock,
                                      .logger = directory_.logger(application_of(writer)),
                                      .queue_full = lost.queue_full,
                                      .no_memory = lost.no_memory,
                                      .discarded = lost.discarded,
                                      .on_the_way = lost.on_the_way});
    }
    accounts_.close([&](const Endpoint& writer, const LossAccount& account) {
        if (account.earlier() > 0) {
            earlier_of_dropped_.emplace_back(directory_.logger(application_of(writer)),
                                             account.earlier());
        }
    });
}

std::uint64_t LogStream::earlier(const std::function<bool(const Logger& logger)>& is_wanted) const {
    std::uint64_t sum = 0;
    const auto add = [&](const Logger& logger, std::uint64_t count) {
        sum += count > 0 && is_wanted(logger) ? count : 0;
    };
    for (const auto& [writer, account] : accounts_.open()) {
        add(directory_.logger(application_of(writer)), account.earlier());
    }
    for (const auto& [writer, account] : accounts_.closed()) {
        add(directory_.logger(application_of(writer)), account.earlier());
    }
    for (const auto& [logger, count] : earlier_of_dropped_) {
        add(logger, count);
    }
    return sum;
}

std::optional<LogStream::Clock::time_point> LogStream::next_deadline() const {
    std::optional<Clock::time_point> earliest;
    if (!messages_.empty()) {
        earliest = messages_.front().until;
    }
    for (const auto& [writer, account] : accounts_.open()) {
        note_earlier(earliest, account.next_deadline());
    }
    return earliest;
}

}  // namespace orvane::tools
