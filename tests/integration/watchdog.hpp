/// @file watchdog.hpp
/// @brief Makes a program that hangs say where.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace orvane::tests {

/// Aborts the process unless it is told often enough that all is well. Before that the stacks of
/// all threads, the engine's own included, go to the standard error.
class Watchdog {
public:
    explicit Watchdog(std::chrono::milliseconds patience);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    void all_is_well();

private:
    void watch();

    const std::chrono::milliseconds patience_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool well_ = true;
    bool over_ = false;
    std::thread thread_;
};

}  // namespace orvane::tests
