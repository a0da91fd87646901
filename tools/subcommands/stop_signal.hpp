/// @file stop_signal.hpp
/// @brief SIGINT and SIGTERM as an ordinary function call.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace orvane::tools {

/// Turns the request to stop the process into a call on a thread of its own.
///
/// Made before any other thread, so that all of them inherit the blocked signals.
class StopSignal {
public:
    StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// Watches until the returned thread ends; it must end before the objects that @p action uses.
    /// The first signal calls @p action, a second one ends the process in the usual way.
    std::jthread watch(std::function<void()> action);

    bool requested() const { return requested_; }

private:
    std::atomic<bool> requested_{false};
};

}  // namespace orvane::tools
