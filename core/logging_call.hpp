/// @file logging_call.hpp
/// @brief The mark of a thread that a signal handler must not disturb by logging.
#pragma once

#include <atomic>
#include <cerrno>

namespace orvane::core {

/// Marks the thread as being in a logging call, or as taking or giving the global lock. A signal
/// handler that logs may have interrupted that call in the middle of a change of the queue, and its
/// own call must touch nothing. The error number stays what it was, for the handler's thread and
/// for applications that log before they look at it.
class LoggingCall {
public:
    LoggingCall() noexcept : error_number_(errno), is_nested_(under_way) {
        under_way = true;
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
    ~LoggingCall() {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        under_way = is_nested_;
        errno = error_number_;
    }
    LoggingCall(const LoggingCall&) = delete;
    LoggingCall& operator=(const LoggingCall&) = delete;

    bool is_nested() const noexcept { return is_nested_; }

private:
    // Not of the model "initial-exec": that would put all variables of this library's threads into
    // the little room that the loader has left for libraries that are loaded at run time.
    static inline constinit thread_local bool under_way = false;

    const int error_number_;
    const bool is_nested_;
};

}  // namespace orvane::core
