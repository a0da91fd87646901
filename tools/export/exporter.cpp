#include "tools/export/exporter.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <variant>

#include "tools/text/time_text.hpp"
#include "tools/thread/start_thread.hpp"

namespace orvane::tools {

Exporter::Exporter(std::unique_ptr<ExportSink> sink, const ExportLimits& limits, Report report)
    : sink_(std::move(sink)), limits_(limits), report_(std::move(report)) {
    thread_ = start_thread([this] { run(); });
}

Exporter::~Exporter() {
    stop();
    thread_.join();
}

void Exporter::add(std::vector<RecordedEvent> events, std::int64_t observed) {
    {
        const std::lock_guard lock(mutex_);
        if (queue_.empty()) {
            oldest_ = Clock::now();
        }
        added_ += events.size();
        for (RecordedEvent& event : events) {
            const std::size_t size = memory_of(event);
            is_full_ = is_full_ ? bytes_ > limits_.buffer / 2 : bytes_ + size > limits_.buffer;
            if (is_full_) {
                ++given_up_;
                continue;
            }
            bytes_ += size;
            queue_.push_back({std::move(event), observed});
        }
    }
    changed_.notify_one();
}

ExportCounts Exporter::counts() const {
    const std::lock_guard lock(mutex_);
    return {added_, sent_, given_up_};
}

ExportCounts Exporter::stop() {
    std::unique_lock lock(mutex_);
    if (!stopping_) {
        stopping_ = true;
        end_ = Clock::now() + limits_.longest_end;
        changed_.notify_one();
        if (!ended_.wait_until(lock, end_, [this] { return has_ended_; })) {
            constexpr std::chrono::milliseconds longest_interruption{200};
            has_to_end_ = true;
            changed_.notify_one();
            sink_->interrupt();
            ended_.wait_for(lock, longest_interruption, [this] { return has_ended_; });
        }
    }
    return {added_, sent_, added_ - sent_};
}

void Exporter::run() {
    std::unique_lock lock(mutex_);
    while (wait_for_batch(lock)) {
        if (batch_.empty()) {
            fill_batch();
        }
        lock.unlock();
        const Delivery delivery = sink_->send(batch_);
        lock.lock();
        settle(delivery);
        const std::uint64_t given_up = given_up_;
        if (!has_to_end_) {
            lock.unlock();
            report(delivery, given_up);
            lock.lock();
        }
        if (!batch_.empty()) {
            pause(lock, delivery);
        }
    }
    has_ended_ = true;
    ended_.notify_one();
}

bool Exporter::wait_for_batch(Lock& lock) {
    const auto is_ready = [this] {
        return stopping_ || !batch_.empty() || has_gap_to_tell() ||
               queue_.size() >= limits_.batch_records || bytes_ >= limits_.batch_bytes;
    };
    changed_.wait(lock, [&] { return is_ready() || !queue_.empty(); });
    changed_.wait_until(lock, oldest_ + limits_.batch_age, is_ready);
    return !has_to_end_ && (!batch_.empty() || !queue_.empty() || has_gap_to_tell());
}

void Exporter::fill_batch() {
    if (given_up_ > told_) {
        ExportRecord& gap = batch_.emplace_back();
        gap.observed = wall_clock();
        gap.event = RecordingGap{gap.observed, given_up_ - told_};
        told_ = given_up_;
    }
    std::size_t bytes = 0;
    while (!queue_.empty() && batch_.size() < limits_.batch_records &&
           bytes < limits_.batch_bytes) {
        bytes += memory_of(queue_.front().event);
        batch_.push_back(std::move(queue_.front()));
        queue_.pop_front();
    }
    oldest_ = Clock::now();
}

void Exporter::settle(const Delivery& delivery) {
    if (delivery.done == 0) {
        return;
    }
    takes_records_ = delivery.refused < delivery.done;
    last_pause_ = std::chrono::milliseconds{0};
    const auto* gap = std::get_if<RecordingGap>(&batch_.front().event);
    const std::uint64_t records = delivery.done - (gap != nullptr ? 1 : 0);
    const std::uint64_t refused = std::min<std::uint64_t>(delivery.refused, records);
    sent_ += records - refused;
    given_up_ += refused;
    if (gap != nullptr && delivery.refused > records) {
        told_ -= gap->events;
    }
    const auto first = batch_.begin() + (gap != nullptr ? 1 : 0);
    const auto last = batch_.begin() + static_cast<std::ptrdiff_t>(delivery.done);
    for (auto each = first; each != last; ++each) {
        bytes_ -= memory_of(each->event);
    }
    batch_.erase(batch_.begin(), last);
}

void Exporter::report(const Delivery& delivery, std::uint64_t given_up) {
    constexpr std::chrono::seconds period{5};
    const std::uint64_t more = given_up - reported_given_up_;
    std::string text;
    if (delivery.problem != reported_problem_) {
        text = delivery.problem.empty() ? "takes records again" : delivery.problem;
        text += batch_.empty() ? "" : "; tried again";
    } else if (delivery.problem.empty() && more > 0 && Clock::now() >= next_report_) {
        text = "takes fewer records than come";
    } else {
        return;
    }
    if (more > 0) {
        text += fmt::format("; {} record{} given up", more, more == 1 ? "" : "s");
    }
    report_(sink_->name() + ": " + text);
    reported_problem_ = delivery.problem;
    reported_given_up_ = given_up;
    next_report_ = Clock::now() + period;
}

void Exporter::pause(Lock& lock, const Delivery& delivery) {
    const Clock::time_point until =
        Clock::now() +
        (delivery.pause ? std::max(*delivery.pause, limits_.first_pause) : next_pause());
    const bool was_stopping = stopping_;
    changed_.wait_until(lock, until, [&] {
        return has_to_end_ || (stopping_ && (!was_stopping || delivery.pause.has_value()));
    });
    if (stopping_ && delivery.pause) {
        // The end does not make a receiver ready that has asked for a pause.
        has_to_end_ = has_to_end_ || until > end_;
        changed_.wait_until(lock, until, [this] { return has_to_end_; });
    }
}

Exporter::Clock::duration Exporter::next_pause() {
    last_pause_ = std::clamp(2 * last_pause_, limits_.first_pause, limits_.longest_pause);
    // Those who failed at the same time do not all come back at the same time.
    std::uniform_int_distribution<std::int64_t> part(last_pause_.count() / 2, last_pause_.count());
    return std::chrono::milliseconds{part(random_)};
}

}  // namespace orvane::tools
