#include "bench/measure.hpp"

#include <time.h>

#include <algorithm>
#include <fstream>
#include <thread>

namespace orvane::bench {
namespace {

constexpr std::chrono::microseconds coarseness_of_sleep{100};

double percentile(const std::vector<double>& sorted, double share) {
    return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

}  // namespace

void wait_gap(Clock::time_point begin, nanoseconds gap) {
    if (gap > coarseness_of_sleep) {
        std::this_thread::sleep_until(begin + gap);
    }
    while (Clock::now() < begin + gap) {
    }
}

bool wait_until(const std::function<bool()>& condition, std::chrono::milliseconds longest) {
    const Clock::time_point end = Clock::now() + longest;
    while (!condition()) {
        if (Clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return true;
}

nlohmann::json distribution(std::vector<double> samples) {
    if (samples.empty()) {
        return {{"samples", 0}};
    }
    std::sort(samples.begin(), samples.end());
    return {{"samples", samples.size()},          {"min", samples.front()},
            {"p50", percentile(samples, 0.5)},    {"p99", percentile(samples, 0.99)},
            {"p999", percentile(samples, 0.999)}, {"max", samples.back()}};
}

nanoseconds own_processor_time() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds{time.tv_sec} + nanoseconds{time.tv_nsec};
}

double number_in(const std::filesystem::path& file, const std::string& name) {
    std::ifstream stream{file};
    for (std::string word; stream >> word;) {
        double value = 0;
        if (word == name + ':' && stream >> value) {
            return value;
        }
    }
    return 0;
}

void append_result(const std::string& path, const nlohmann::json& result) {
    std::ofstream{path, std::ios::app} << result.dump() << '\n';
}

}  // namespace orvane::bench
