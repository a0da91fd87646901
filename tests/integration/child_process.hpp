/// @file child_process.hpp
/// @brief A program that runs beside the test, and what it prints.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace orvane::tests {

/// The wait() status of a process that has ended, in words: "exit 0" or "signal 9".
std::string ending(int wait_status);

/// What a process has printed so far, as complete lines.
struct Output {
    std::vector<std::string> out;
    std::vector<std::string> error;
    bool ended = false;
    int wait_status = 0;  ///< meaningful once it has ended
};

/// A child process that does not outlive the object, nor the thread that started it.
///
/// A thread of its own collects the output from the start, so that the child never waits for
/// somebody to read. Used by one thread; a program that cannot be started ends with "exit 127".
class ChildProcess {
public:
    /// @param command path of the program and its arguments
    explicit ChildProcess(const std::vector<std::string>& command);
    /// Kills the process if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Writes a line to the standard input. @return false when the process reads no more
    bool send_line(std::string_view line) const;
    /// Ends the standard input.
    void close_input();
    void send_signal(int number);

    /// Waits until @p condition holds for what has been printed, but no longer than @p longest and
    /// not beyond the end of the process. @return whether it holds
    bool wait_until(const std::function<bool(const Output&)>& condition,
                    std::chrono::milliseconds longest);
    /// @return as @ref ending, or "still running" after @p longest
    std::string wait_for_end(std::chrono::milliseconds longest);

    [[nodiscard]] Output output();
    /// Everything printed, for a failure's message.
    [[nodiscard]] std::string transcript();

private:
    struct Stream {
        int descriptor = -1;
        std::string unfinished;
    };

    void start(const std::vector<std::string>& command);
    void collect();
    /// @return false at the end of the stream
    bool read_from(Stream& stream, std::vector<std::string> Output::*lines);
    void reap();

    pid_t pid_ = -1;
    int input_ = -1;
    Stream out_;
    Stream error_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Output output_;
    std::thread collector_;
};

}  // namespace orvane::tests
