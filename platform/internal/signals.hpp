/// @file signals.hpp
/// @brief What threads and writes of ours do to keep out of the application's signals.
#pragma once

#include <pthread.h>

#include <cerrno>
#include <csignal>
#include <ctime>

namespace pexa {

/// The signals that a thread of ours blocks. They are the application's: its handlers and its
/// sigwait() get them on its own threads. A fault of the thread itself still ends the process where
/// it happens.
inline sigset_t signals_of_application() {
    sigset_t signals;
    sigfillset(&signals);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS}) {
        sigdelset(&signals, fault);
    }
    return signals;
}

/// As long as an object lives, its thread blocks these signals. Threads that it makes keep that.
class ApplicationSignalsBlocked {
public:
    ApplicationSignalsBlocked() {
        const sigset_t signals = signals_of_application();
        pthread_sigmask(SIG_BLOCK, &signals, &before_);
    }
    ApplicationSignalsBlocked(const ApplicationSignalsBlocked&) = delete;
    ApplicationSignalsBlocked& operator=(const ApplicationSignalsBlocked&) = delete;
    ~ApplicationSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_;
};

/// Keeps SIGPIPE from the application while this thread writes.
class PipeSignalHeld {
public:
    PipeSignalHeld() {
        sigemptyset(&signal_);
        sigaddset(&signal_, SIGPIPE);
        sigset_t before;
        pthread_sigmask(SIG_BLOCK, &signal_, &before);
        was_blocked_ = sigismember(&before, SIGPIPE) == 1;
        // Only a blocked signal can be pending.
        sigset_t pending;
        was_pending_ =
            was_blocked_ && sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
    }
    PipeSignalHeld(const PipeSignalHeld&) = delete;
    PipeSignalHeld& operator=(const PipeSignalHeld&) = delete;
    ~PipeSignalHeld() {
        // The results of stdio do not tell: a line that did not get through can count as printed.
        constexpr timespec at_once = {};
        while (!was_pending_ && sigtimedwait(&signal_, nullptr, &at_once) == -1 && errno == EINTR) {
        }
        if (!was_blocked_) {
            pthread_sigmask(SIG_UNBLOCK, &signal_, nullptr);
        }
    }

private:
    sigset_t signal_;
    bool was_blocked_;
    bool was_pending_;
};

}  // namespace pexa
