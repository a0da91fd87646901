// Reads log messages and tells when the last one was there and how old each one was. Prints "ready"
// when the reader exists, and at the end a line of JSON. Ends with its standard input.
#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "bench/bare/engine.hpp"
#include "bench/logger.hpp"
#include "bench/measure.hpp"

namespace {

using namespace std::chrono_literals;
using orvane::bench::Clock;

/// Without a message for this long the missing ones are taken for lost.
constexpr auto longest_silence = 2s;

bool input_has_ended() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

template <typename Reader>
void read(Reader& reader, std::size_t expected) {
    std::vector<double> latencies;
    latencies.reserve(expected);
    std::vector<std::int64_t> source_times;
    std::size_t received = 0;
    Clock::time_point last = Clock::now();
    fmt::print("ready\n");
    std::fflush(stdout);

    while (received < expected || expected == 0) {
        source_times.clear();
        reader.take(100ms, source_times);
        if (source_times.empty()) {
            const bool is_silent = received > 0 && Clock::now() - last > longest_silence;
            if (input_has_ended() || (is_silent && expected != 0)) {
                break;
            }
            continue;
        }
        const std::chrono::nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
        last = Clock::now();
        received += source_times.size();
        // Nobody asks a reader without an end for its latencies.
        const std::size_t asked_for = expected != 0 ? source_times.size() : 0;
        for (std::size_t index = 0; index < asked_for; ++index) {
            latencies.push_back(static_cast<double>(now.count() - source_times[index]));
        }
    }
    const nlohmann::json result{{"received", received},
                                {"last_take", last.time_since_epoch().count()},
                                {"latency", orvane::bench::distribution(std::move(latencies))}};
    fmt::print("{}\n", result.dump());
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 4) {
        std::fprintf(stderr, "usage: bench_reader orvane|bare DOMAIN EXPECTED\n");
        return 2;
    }
    const std::string engine{argv[1]};
    const std::int32_t domain = std::stoi(argv[2]);
    const std::size_t expected = std::stoul(argv[3]);
    if (engine == "bare") {
        orvane::bench::bare::Reader reader{domain};
        read(reader, expected);
    } else {
        orvane::bench::LogReader reader{domain};
        read(reader, expected);
    }
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}
