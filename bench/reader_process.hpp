/// @file reader_process.hpp
/// @brief A reader of log messages in a process of its own.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace orvane::bench {

/// Runs the program bench_reader that lies beside this one, and ends with it.
class ReaderProcess {
public:
    struct Options {
        /// "orvane" or "bare".
        std::string engine;
        std::int32_t domain = 0;
        /// How many messages there will be; 0: it reads until the object's end.
        std::size_t expected = 0;
    };

    /// Returns when the reader exists; ends the program when it cannot be started.
    explicit ReaderProcess(const Options& options);
    ~ReaderProcess();
    ReaderProcess(const ReaderProcess&) = delete;
    ReaderProcess& operator=(const ReaderProcess&) = delete;

    /// Waits until the reader has all messages or none has come for a while.
    /// @return "received", "last_take" (nanoseconds of Clock) and "latency" (a distribution)
    nlohmann::json result();

private:
    std::string read_line();

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
};

}  // namespace orvane::bench
