// The cost of a logger without messages: the time to create and delete it, its memory, and the work
// of its threads. One sample per process, because a second creation is a warm one.
#include <sys/resource.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "bench/bare/engine.hpp"
#include "bench/logger.hpp"
#include "bench/measure.hpp"
#include "pexa/osapi.h"

namespace orvane::bench {
namespace {

struct Plan {
    std::string subject;
    std::string results;
    std::int32_t domain = 0;
    /// 0: creation, deletion and memory are measured, not the rest.
    int idle_seconds = 0;
    /// Threads that wait for the global lock while the process rests.
    int waiting_threads = 0;
};

struct Activity {
    double wakeups = 0;
    double write_thread_wakeups = 0;
    double cpu_seconds = 0;
};

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Of all threads but the one that measures. A thread that goes to sleep gives up the processor
/// voluntarily, once per wake-up.
Activity activity() {
    Activity sum;
    const std::string own = std::to_string(getpid());
    for (const auto& task : std::filesystem::directory_iterator{"/proc/self/task"}) {
        if (task.path().filename() == own) {
            continue;
        }
        std::string name;
        std::getline(std::ifstream{task.path() / "comm"}, name);
        const double wakeups = number_in(task.path() / "status", "voluntary_ctxt_switches");
        sum.wakeups += wakeups;
        if (name.starts_with("LogMessageWrite")) {
            sum.write_thread_wakeups += wakeups;
        }
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    sum.cpu_seconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    return sum;
}

nlohmann::json rest(int length) {
    const Activity before = activity();
    std::this_thread::sleep_for(std::chrono::seconds{length});
    const Activity after = activity();
    return {{"wakeups_per_second", (after.wakeups - before.wakeups) / length},
            {"write_thread_wakeups_per_second",
             (after.write_thread_wakeups - before.write_thread_wakeups) / length},
            {"cpu_ms_per_second", (after.cpu_seconds - before.cpu_seconds) * 1e3 / length}};
}

/// Threads that wait for the global lock, for as long as the object lives.
class WaitingThreads {
public:
    explicit WaitingThreads(int count) {
        QELOsapi_global_lock();
        while (count-- > 0) {
            threads_.emplace_back([] {
                QELOsapi_global_lock();
                QELOsapi_global_unlock();
            });
        }
    }
    ~WaitingThreads() { QELOsapi_global_unlock(); }
    WaitingThreads(const WaitingThreads&) = delete;
    WaitingThreads& operator=(const WaitingThreads&) = delete;

private:
    std::vector<std::jthread> threads_;
};

template <typename Entities, typename Options>
int run(const Plan& plan, const Options& options) {
    const Clock::time_point begin = Clock::now();
    std::optional<Entities> entities{options};
    const Clock::time_point created = Clock::now();
    // Discovery and the threads that the creation started come to rest.
    std::this_thread::sleep_for(std::chrono::seconds{1});

    nlohmann::json figures;
    if (plan.idle_seconds != 0) {
        const WaitingThreads waiting{plan.waiting_threads};
        figures = rest(plan.idle_seconds);
    } else {
        figures["create_ms"] = nanoseconds_between(begin, created) / 1e6;
        figures["rss_kib"] = number_in("/proc/self/smaps_rollup", "Rss");
        figures["pss_kib"] = number_in("/proc/self/smaps_rollup", "Pss");
        figures["anonymous_kib"] = number_in("/proc/self/smaps_rollup", "Anonymous");
        const Clock::time_point begin_of_end = Clock::now();
        entities.reset();
        figures["delete_ms"] = nanoseconds_between(begin_of_end, Clock::now()) / 1e6;
    }
    append_result(plan.results, {{"group", "rest"},
                                 {"subject", plan.subject},
                                 {"what", plan.waiting_threads != 0 ? "waiting"
                                          : plan.idle_seconds != 0  ? "idle"
                                                                    : "life"},
                                 {"figures", figures}});
    return 0;
}

int run_subject(const Plan& plan) {
    return plan.subject == "orvane" ? run<Logger>(plan, Logger::Options{.domain = plan.domain})
                                    : run<bare::LoggerEntities>(plan, plan.domain);
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) try {
    orvane::bench::Plan plan;
    CLI::App app{"Measures a logger that does nothing."};
    app.add_option("--subject", plan.subject)->required()->check(CLI::IsMember({"orvane", "bare"}));
    app.add_option("--results", plan.results, "file that a line of JSON is added to")->required();
    app.add_option("--domain", plan.domain);
    app.add_option("--idle", plan.idle_seconds, "seconds to rest");
    app.add_option("--waiting", plan.waiting_threads, "threads that wait for the global lock");
    CLI11_PARSE(app, argc, argv);
    return orvane::bench::run_subject(plan);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}
