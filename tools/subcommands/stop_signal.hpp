/// @file stop_signal.hpp
/// @brief SIGINT and SIGTERM as an ordinary function call, and an end that nothing delays.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace orvane::tools {

/// Turns the request to stop the process into a call on a thread of its own.
///
/// Made before any other thread, so that all of them inherit the blocked signals, and destroyed
/// after all that may take long.
class StopSignal {
public:
    StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// The time during which the first signal calls an action.
    class [[nodiscard]] Interruption {
    public:
        explicit Interruption(StopSignal& owner) : owner_(owner) {}
        Interruption(const Interruption&) = delete;
        Interruption& operator=(const Interruption&) = delete;
        ~Interruption() { owner_.set_action(nullptr); }

    private:
        StopSignal& owner_;
    };

    /// The first signal calls @p action, also if it came before this call. A second one ends the
    /// process in the usual way, and so does the first one two seconds later, if the process still
    /// hangs, say in a standard output that blocks. The result must end before the objects that @p
    /// action uses.
    Interruption interrupt(std::function<void()> action);

    /// Requests the stop at a time by the wall clock, as a first signal would. @p tell is called
    /// just before. The process then ends as failed.
    void stop_at(std::chrono::system_clock::time_point end, std::function<void()> tell);

    /// Says that the command is done but for leaving the domain. That may take two seconds; then
    /// the process ends without it. @return the exit status of the process, @p status unless @ref
    /// stop_at has ended it
    int conclude(int status);

    bool requested() const { return requested_; }

private:
    void set_action(std::function<void()> action);
    void run(const std::stop_token& token);
    void receive(int signal);
    void request();
    void stop_if_due();
    void end_if_overdue();

    std::atomic<bool> requested_{false};
    std::mutex mutex_;
    std::function<void()> action_;
    std::optional<int> status_;
    std::chrono::system_clock::time_point end_ = std::chrono::system_clock::time_point::max();
    std::function<void()> tell_end_;
    bool has_ended_ = false;
    std::chrono::steady_clock::time_point leaving_since_ =
        std::chrono::steady_clock::time_point::max();
    std::jthread watcher_;
};

}  // namespace orvane::tools
