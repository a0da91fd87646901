/// @file reader_process.hpp
/// @brief A reader of log messages in a process of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "bench/child_process.hpp"

namespace orvane::bench {

/// The program bench_reader that lies beside this one.
class ReaderProcess : public ChildProcess {
public:
    struct Options {
        /// "orvane" or "bare".
        std::string engine;
        std::int32_t domain = 0;
        /// How many messages there will be; 0: it reads until the end of its input.
        std::size_t expected = 0;
    };

    /// Returns when the reader exists; ends the program when it cannot be started.
    explicit ReaderProcess(const Options& options);

    /// Waits until the reader has all messages or none has come for a while, or its input has
    /// ended.
    /// @return "received", "last_take" (nanoseconds of Clock) and "latency" (a distribution)
    nlohmann::json result();
};

}  // namespace orvane::bench
