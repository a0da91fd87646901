/// @file start_thread.hpp
/// @brief Starts threads of the tool.
#pragma once

#include <csignal>
#include <thread>
#include <utility>

namespace orvane::tools {

/// Starts a thread that gets no signals: those for the process are the main thread's, and a file
/// that is too large or a connection that has ended is a failure to write there, and no signal.
template <typename Run>
std::thread start_thread(Run run) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread{std::move(run)};
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

}  // namespace orvane::tools
