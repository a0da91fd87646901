#include "tools/subcommands/stop_signal.hpp"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

#include "tools/subcommands/exit_status.hpp"

namespace orvane::tools {
namespace {

sigset_t stop_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

}  // namespace

StopSignal::StopSignal() {
    const sigset_t signals = stop_signals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    watcher_ = std::jthread([this](const std::stop_token& token) { run(token); });
}

StopSignal::Interruption StopSignal::interrupt(std::function<void()> action) {
    set_action(std::move(action));
    return Interruption{*this};
}

void StopSignal::set_action(std::function<void()> action) {
    const std::lock_guard lock(mutex_);
    action_ = std::move(action);
    if (action_ && requested_) {
        action_();
    }
}

void StopSignal::stop_at(std::chrono::system_clock::time_point end, std::function<void()> tell) {
    const std::lock_guard lock(mutex_);
    end_ = end;
    tell_end_ = std::move(tell);
}

int StopSignal::conclude(int status) {
    const std::lock_guard lock(mutex_);
    status_ = has_ended_ ? exit_failure : status;
    leaving_since_ = std::min(leaving_since_, std::chrono::steady_clock::now());
    return *status_;
}

void StopSignal::run(const std::stop_token& token) {
    const sigset_t signals = stop_signals();
    // The wait is short, because nothing else ends it when the tool does.
    constexpr std::timespec period{.tv_sec = 0, .tv_nsec = 50'000'000};
    while (!token.stop_requested()) {
        const int signal = sigtimedwait(&signals, nullptr, &period);
        if (signal >= 0) {
            receive(signal);
        }
        stop_if_due();
        end_if_overdue();
    }
}

void StopSignal::receive(int signal) {
    if (requested_.exchange(true)) {
        const sigset_t signals = stop_signals();
        pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
        std::raise(signal);
    }
    const std::lock_guard lock(mutex_);
    request();
}

/// With the mutex held.
void StopSignal::request() {
    requested_ = true;
    leaving_since_ = std::min(leaving_since_, std::chrono::steady_clock::now());
    if (action_) {
        action_();
    }
}

void StopSignal::stop_if_due() {
    const std::lock_guard lock(mutex_);
    if (!requested_ && !status_ && std::chrono::system_clock::now() >= end_) {
        has_ended_ = true;
        tell_end_();
        request();
    }
}

void StopSignal::end_if_overdue() {
    constexpr std::chrono::seconds longest_leave{2};
    const std::lock_guard lock(mutex_);
    if (std::chrono::steady_clock::now() - longest_leave < leaving_since_) {
        return;
    }
    pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    if (poll(&output, 1, 0) > 0) {
        std::fflush(stdout);
    }
    std::_Exit(status_.value_or(exit_failure));
}

}  // namespace orvane::tools
