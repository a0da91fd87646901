/// @file child_process.hpp
/// @brief A program that runs beside this one and is watched by it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "bench/measure.hpp"

namespace orvane::bench {

/// Ends with this object.
class ChildProcess {
public:
    /// Ends this program when the other one cannot be started.
    /// @param command the path of the program, and its arguments
    /// @param output file for its standard output; this program then reads its standard error. When
    /// that is empty, this program reads its standard output.
    explicit ChildProcess(std::vector<std::string> command, const std::string& output = {});
    /// Ends its input, interrupts it and waits for its end.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// @return the next line that it prints, without its newline; nothing at the end
    std::string read_line();

    void end_input();
    void interrupt() const;

    /// Waits until it has used nearly no processor time for a while.
    /// @return when that while began
    Clock::time_point wait_for_rest() const;

    /// Of all its threads, up to now.
    std::chrono::nanoseconds processor_time() const;
    double resident_kib() const;

    /// Waits for its end. @return its exit status, or -1 after a signal
    int wait();

private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
};

}  // namespace orvane::bench
