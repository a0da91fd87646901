/// @file call_subjects.hpp
/// @brief What is called in the call benchmark. A subject is made once per process, with its
/// options, and called by several threads.
#pragma once

#include <dlt/dlt.h>
#include <semaphore.h>
#include <spdlog/async.h>
#include <spdlog/sinks/null_sink.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <latch>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "bench/bare/engine.hpp"
#include "bench/logger.hpp"
#include "bench/measure.hpp"

namespace orvane::bench {

struct SubjectOptions {
    std::int32_t domain = 0;
    std::int32_t queue_size = 0;
    /// Characters of a message.
    std::size_t length = 60;
    /// Calls are of a level that the subject's filter stops.
    bool filtered = false;
    /// A reader of another process will be there.
    bool reader = false;
};

/// The defaults of most subjects; a subject with another behaviour hides them.
struct Subject {
    /// False when it cannot be measured on this machine.
    static bool ready() { return true; }
    /// The message that stands for one of that many characters.
    static std::string text(std::size_t length) { return std::string(length, 'x'); }
    /// Returns when the messages so far no longer slow down the next calls.
    static void drain() { std::this_thread::sleep_for(std::chrono::milliseconds{30}); }
    // The time of void call(const char* text) is measured.
};

/// Does nothing: shows the cost of reading the clock twice.
struct EmptySubject : Subject {
    explicit EmptySubject(const SubjectOptions& /*options*/) {}
    static void call(const char* text) { asm volatile("" : : "r"(text) : "memory"); }
};

/// The least that a logger with a lock for the process and a queue can do: one reading of the
/// clock, two mutexes, the length of the text and its copy into the next element of a ring. There
/// is a thread, as in the process of any logger with a queue, but it sleeps: the mutexes of the C
/// library do without atomic operations as long as a process has never had a second thread.
class FloorSubject : public Subject {
public:
    explicit FloorSubject(const SubjectOptions& options)
        : stride_{sizeof(timespec) + options.length + 1},
          ring_(static_cast<std::size_t>(options.queue_size) * stride_) {}
    ~FloorSubject() { end_.count_down(); }
    FloorSubject(const FloorSubject&) = delete;
    FloorSubject& operator=(const FloorSubject&) = delete;

    void call(const char* text) {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        const std::lock_guard global_lock{global_mutex_};
        const std::lock_guard queue_lock{queue_mutex_};
        char* element = &ring_[next_];
        next_ = next_ + stride_ < ring_.size() ? next_ + stride_ : 0;
        std::memcpy(element, &now, sizeof now);
        const std::size_t length = strnlen(text, stride_ - sizeof now - 1);
        std::memcpy(element + sizeof now, text, length);
        element[sizeof now + length] = '\0';
    }

private:
    std::mutex global_mutex_;
    std::mutex queue_mutex_;
    std::size_t stride_;
    std::size_t next_ = 0;
    std::vector<char> ring_;
    std::latch end_{1};
    std::jthread sleeper_{[this] { end_.wait(); }};
};

/// The floor, and each call tells a thread of itself. That costs a system call when the thread
/// sleeps.
class WakingFloorSubject : public FloorSubject {
public:
    explicit WakingFloorSubject(const SubjectOptions& options) : FloorSubject{options} {
        sem_init(&calls_, 0, 0);
        woken_ = std::jthread{[this] { take_calls(); }};
    }
    ~WakingFloorSubject() {
        ended_ = true;
        sem_post(&calls_);
        woken_.join();
        sem_destroy(&calls_);
    }
    WakingFloorSubject(const WakingFloorSubject&) = delete;
    WakingFloorSubject& operator=(const WakingFloorSubject&) = delete;

    void call(const char* text) {
        FloorSubject::call(text);
        sem_post(&calls_);
    }

private:
    void take_calls() {
        while (!ended_) {
            sem_wait(&calls_);
        }
    }

    std::atomic<bool> ended_{false};
    sem_t calls_{};
    std::jthread woken_;
};

class OrvaneSubject : public Subject {
public:
    explicit OrvaneSubject(const SubjectOptions& options)
        : level_{options.filtered ? QEL_KX_LEVEL_DEBUG : QEL_KX_LEVEL_INFO},
          reader_{options.reader},
          logger_{{.domain = options.domain, .queue_size = options.queue_size}} {}
    bool ready() {
        return !reader_ ||
               wait_until([&] { return logger_.has_reader(); }, std::chrono::seconds{10});
    }
    void call(const char* text) { logger_.log(level_, text); }
    void drain() {
        static_cast<void>(
            wait_until([&] { return logger_.queued() == 0; }, std::chrono::seconds{10}));
        // The last message has left the queue before it has left the process.
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }

protected:
    DDS_Long level() const { return level_; }

private:
    DDS_Long level_;
    bool reader_;
    Logger logger_;
};

/// A queue of as many messages, a thread that takes from it, and a sink that does nothing.
class SpdlogSubject : public Subject {
public:
    explicit SpdlogSubject(const SubjectOptions& options)
        : level_{options.filtered ? spdlog::level::debug : spdlog::level::info},
          pool_{std::make_shared<spdlog::details::thread_pool>(
              static_cast<std::size_t>(options.queue_size), 1)},
          logger_{std::make_shared<spdlog::async_logger>(
              category, std::make_shared<spdlog::sinks::null_sink_mt>(), pool_,
              spdlog::async_overflow_policy::overrun_oldest)} {}
    void call(const char* text) { logger_->log(level_, text); }

protected:
    spdlog::level::level_enum level() const { return level_; }
    spdlog::logger& logger() { return *logger_; }

private:
    spdlog::level::level_enum level_;
    std::shared_ptr<spdlog::details::thread_pool> pool_;
    // Shared because each queued message holds a reference to its logger.
    std::shared_ptr<spdlog::async_logger> logger_;
};

/// With its daemon, to which a call hands the message.
class DltSubject : public Subject {
public:
    explicit DltSubject(const SubjectOptions& options)
        : level_{options.filtered ? DLT_LOG_DEBUG : DLT_LOG_INFO} {
        dlt_register_app("BNCH", "benchmark");
        dlt_register_context(&context_, "CALL", "calls");
    }
    ~DltSubject() {
        dlt_unregister_context(&context_);
        dlt_unregister_app();
    }
    DltSubject(const DltSubject&) = delete;
    DltSubject& operator=(const DltSubject&) = delete;

    /// The daemon tells an application that registers whether the log has a reader.
    static bool ready() {
        return wait_until([] { return dlt_get_log_state() >= 0; }, std::chrono::seconds{3});
    }
    void call(const char* text) {
        DltContextData data{};
        if (dlt_user_log_write_start(&context_, &data, level_) == DLT_RETURN_TRUE) {
            dlt_user_log_write_string(&data, text);
            dlt_user_log_write_finish(&data);
        }
    }

private:
    DltLogLevelType level_;
    DltContext context_{};
};

/// A synchronous write of a payload of the same size, without any logger.
class BareSubject : public Subject {
public:
    explicit BareSubject(const SubjectOptions& options)
        : reader_{options.reader}, writer_{{.domain = options.domain}} {}
    bool ready() {
        return !reader_ ||
               wait_until([&] { return writer_.has_reader(); }, std::chrono::seconds{10});
    }
    static std::string text(std::size_t length) {
        return Subject::text(length + encoded_size(Subject::text(length)) -
                             bare::encoded_size(length));
    }
    void call(const char* text) { writer_.write(text); }

private:
    bool reader_;
    bare::Writer writer_;
};

}  // namespace orvane::bench
