// A program that runs beside the test, and its output.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace orvane::tests {

using Words = std::vector<std::string>;

/// Longest wait for anything that is bound to happen.
inline constexpr std::chrono::seconds patience{60};

/// The complete lines that a process has printed so far.
struct Output {
    std::vector<std::string> out;
    std::vector<std::string> error;
    std::string ending;  ///< "exit 0" or "signal 9" once it has ended
};

/// A child process that does not outlive the object, nor the thread that started it.
///
/// A thread of its own collects the output from the start, so that the child never waits for a
/// reader. Used by one thread; a program that cannot be started ends with "exit 127".
class ChildProcess {
public:
    /// @param command path of the program and its arguments
    explicit ChildProcess(Words command);
    /// Kills the process if it still runs.
    ~ChildProcess();

    pid_t id() const { return pid_; }

    /// Writes a line to the standard input. @return whether the process still reads
    bool send_line(std::string_view line) const;
    /// Ends the standard input.
    void close_input();
    void send_signal(int number);

    /// Waits until @p condition holds for the output, but no longer than @p longest and not beyond
    /// the end of the process. @return whether it holds
    bool wait_until(const std::function<bool(const Output&)>& condition,
                    std::chrono::milliseconds longest = patience);
    /// Waits for a line of the standard output.
    bool wait_for_line(const std::string& line, std::chrono::milliseconds longest = patience);
    /// @return as Output::ending, or "still running" after @p longest
    std::string wait_for_end(std::chrono::milliseconds longest = patience);

    Output output();
    /// Everything printed, for a failure's message.
    std::string transcript();

private:
    void collect(int descriptor, std::vector<std::string> Output::*lines);
    void reap();

    pid_t pid_ = -1;
    int input_ = -1;
    std::mutex mutex_;
    std::condition_variable changed_;
    Output output_;
    std::jthread collector_;
};

}  // namespace orvane::tests
