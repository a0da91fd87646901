/// @file measure.hpp
/// @brief What all benchmark programs share: the clock, the gap between calls, distributions, and
/// the file of results.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace orvane::bench {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;

inline double nanoseconds_between(Clock::time_point begin, Clock::time_point end) {
    return static_cast<double>(nanoseconds{end - begin}.count());
}

/// Waits until @p gap has passed since @p begin: busily when a sleep would be too coarse, else
/// asleep, as an application is that logs once in a while.
void wait_gap(Clock::time_point begin, nanoseconds gap);

/// Waits until the condition holds. @return false when it did not within @p longest
[[nodiscard]] bool wait_until(const std::function<bool()>& condition,
                              std::chrono::milliseconds longest);

/// Number of samples, minimum, 50th, 99th and 99.9th percentile, and maximum.
nlohmann::json distribution(std::vector<double> samples);

/// Of all threads of this process, up to now.
nanoseconds own_processor_time();

/// @return the number behind "name:" in a file of /proc, or 0
double number_in(const std::filesystem::path& file, const std::string& name);

/// Appends an object as a line; a later run of the same programs adds to the same file.
void append_result(const std::string& path, const nlohmann::json& result);

}  // namespace orvane::bench
