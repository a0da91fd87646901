#include "tools/subcommands/stop_signal.hpp"

#include <csignal>
#include <ctime>
#include <utility>

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
}

std::jthread StopSignal::watch(std::function<void()> action) {
    return std::jthread([this, action = std::move(action)](const std::stop_token& token) {
        const sigset_t signals = stop_signals();
        // The wait is short, because nothing else ends it when the tool does.
        constexpr std::timespec period{.tv_sec = 0, .tv_nsec = 50'000'000};
        while (!token.stop_requested()) {
            const int signal = sigtimedwait(&signals, nullptr, &period);
            if (signal < 0) {
                continue;
            }
            if (requested_.exchange(true)) {
                pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
                std::raise(signal);
            }
            action();
        }
    });
}

}  // namespace orvane::tools
