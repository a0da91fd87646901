#include "tools/recording/recorder.hpp"

#include <fmt/format.h>

#include <chrono>
#include <cstring>
#include <utility>

#include "tools/text/time_text.hpp"
#include "tools/thread/start_thread.hpp"

namespace orvane::tools {
namespace {

using Clock = std::chrono::steady_clock;

}  // namespace

std::unique_ptr<Recorder> Recorder::start(const RecordingOptions& options, Report report,
                                          int& error, CreateFile create) {
    RecordingFiles files{options, std::move(create)};
    error = files.open(Clock::now());
    if (error != 0) {
        return nullptr;
    }
    return std::unique_ptr<Recorder>{new Recorder{std::move(files), options, std::move(report)}};
}

Recorder::Recorder(RecordingFiles files, const RecordingOptions& options, Report report)
    : files_(std::move(files)), queue_limit_(options.queue_size), report_(std::move(report)) {
    thread_ = start_thread([this] { run(); });
}

Recorder::~Recorder() {
    stop();
}

void Recorder::add(std::vector<RecordedEvent> events) {
    {
        const std::lock_guard lock(mutex_);
        for (RecordedEvent& event : events) {
            const std::size_t size = memory_of(event);
            // Once events are missing, the gap comes before later events.
            if (refused_ > 0 || queue_size_ + size > queue_limit_) {
                ++refused_;
                continue;
            }
            queue_size_ += size;
            queue_.push_back(std::move(event));
        }
    }
    changed_.notify_one();
}

std::uint64_t Recorder::stop() {
    if (!thread_.joinable()) {
        return missing_;
    }
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_one();
    thread_.join();
    return missing_;
}

void Recorder::run() {
    std::unique_lock lock(mutex_);
    bool is_last = false;
    while (!is_last || (has_work() && !files_.is_stuck())) {
        wait(lock);
        is_last = stopping_;
        if (is_last) {
            files_.flush(Clock::now());
        }
        write_queue(lock);
    }
    files_.close(Clock::now());
    report_failure();
    missing_ += files_.unwritten() + batch_.size() + queue_.size() + refused_;
}

bool Recorder::has_work() const {
    return !batch_.empty() || !queue_.empty() || refused_ > 0;
}

void Recorder::wait(std::unique_lock<std::mutex>& lock) {
    const auto is_over = [this] { return stopping_ || (has_work() && !files_.is_stuck()); };
    if (const auto due = files_.due()) {
        changed_.wait_until(lock, *due, is_over);
    } else {
        changed_.wait(lock, is_over);
    }
}

void Recorder::write_queue(std::unique_lock<std::mutex>& lock) {
    while (fill_batch() && !files_.is_stuck()) {
        lock.unlock();
        for (; !batch_.empty() && !files_.is_stuck(); batch_.pop_front()) {
            files_.add(batch_.front(), Clock::now());
        }
        lock.lock();
    }
    const std::uint64_t refused = files_.is_stuck() ? 0 : std::exchange(refused_, 0);
    lock.unlock();
    if (refused > 0) {
        add_gap(refused);
    }
    files_.tick(Clock::now());
    report_failure();
    lock.lock();
}

bool Recorder::fill_batch() {
    constexpr std::size_t largest_batch = 256;
    while (batch_.size() < largest_batch && !queue_.empty()) {
        queue_size_ -= memory_of(queue_.front());
        batch_.push_back(std::move(queue_.front()));
        queue_.pop_front();
    }
    return !batch_.empty();
}

void Recorder::add_gap(std::uint64_t events) {
    missing_ += events;
    files_.add(RecordingGap{wall_clock(), events}, Clock::now());
    report_(fmt::format("{} event{} not in {}: the disk was full or too slow", events,
                        events == 1 ? " is" : "s are", files_.path()));
}

void Recorder::report_failure() {
    const int error = files_.error();
    if (error != 0 && error != reported_error_) {
        report_(fmt::format("could not write {}: {}; tried again every second", files_.path(),
                            std::strerror(error)));
    } else if (error == 0 && reported_error_ != 0) {
        report_(fmt::format("{} is written again", files_.path()));
    }
    reported_error_ = error;
}

}  // namespace orvane::tools
