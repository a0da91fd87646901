/// @file progress_line.hpp
/// @brief A line on the terminal that tells how far a command is.
#pragma once

#include <chrono>
#include <mutex>
#include <string>

namespace orvane::tools {

/// The last line on the standard error, written anew from time to time. Where the standard error is
/// no terminal, or takes nothing, there is none. May be used by several threads. What cannot be
/// written is dropped.
class ProgressLine {
public:
    ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

    /// Whether it is time for a new text. While another thread prints it is not.
    bool is_due() const;

    /// Waits for nobody, neither for a terminal nor for another thread that prints.
    /// @param text for one line; what does not fit is cut
    void show(const std::string& text);

    /// Prints "orvane: ", a text and a newline, above the line.
    void print(const std::string& text);

private:
    using Clock = std::chrono::steady_clock;

    void clear();
    void write(const std::string& text);

    bool is_on_terminal_;
    mutable std::mutex mutex_;
    bool is_shown_ = false;
    Clock::time_point next_ = Clock::time_point::min();
};

}  // namespace orvane::tools
