// Cost of a logging call as its caller sees it, at a given gap between calls. Prints a line of
// nanoseconds: minimum, median, 99th and 99.9th percentile, maximum. The reading of the clock
// around each call is part of the figures.
#include <orvane/orvane.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;

void wait_until(Clock::time_point time) {
    // Sleeping is too coarse for gaps of microseconds.
    while (Clock::now() < time) {
    }
}

std::vector<nanoseconds> measure(QEL_KX_Orvane* logger, std::size_t calls, nanoseconds gap) {
    const std::string text(60, 'x');
    std::vector<nanoseconds> costs;
    costs.reserve(calls);
    Clock::time_point next = Clock::now();
    for (std::size_t call = 0; call < calls; ++call) {
        wait_until(next);
        const Clock::time_point before = Clock::now();
        QEL_KX_Orvane_info(logger, text.c_str());
        const Clock::time_point after = Clock::now();
        costs.push_back(after - before);
        next = after + gap;
    }
    return costs;
}

long long percentile(const std::vector<nanoseconds>& sorted, double share) {
    const auto index = static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1));
    return static_cast<long long>(sorted[index].count());
}

long long number(const char* text) {
    return std::strtoll(text, nullptr, 10);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: log_call_bench DOMAIN CALLS GAP_MICROSECONDS\n");
        return 2;
    }
    QEL_KX_Options* options = QEL_KX_Options_createDefault();
    QEL_KX_Options_setDomainId(options, static_cast<DDS_Long>(number(argv[1])));
    QEL_KX_Options_setQueueSize(options, 8192);
    QEL_KX_Orvane_setOptions(options);
    QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    if (logger == nullptr) {
        return 1;
    }
    // A viewer that already runs is discovered within this time.
    std::this_thread::sleep_for(std::chrono::seconds{2});

    const auto calls = static_cast<std::size_t>(number(argv[2]));
    std::vector<nanoseconds> costs =
        measure(logger, calls, std::chrono::microseconds{number(argv[3])});
    std::sort(costs.begin(), costs.end());
    std::printf("min %lld p50 %lld p99 %lld p99.9 %lld max %lld ns\n", percentile(costs, 0),
                percentile(costs, 0.5), percentile(costs, 0.99), percentile(costs, 0.999),
                percentile(costs, 1));

    std::this_thread::sleep_for(std::chrono::seconds{1});
    QEL_KX_Orvane_finalizeInstance();
    QEL_KX_Options_delete(options);
    return 0;
}
