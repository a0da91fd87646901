// What a logging call costs its caller, at a given gap between calls and from several threads.
//
// Calls come in bursts that every subject's queue has room for; between bursts the queues are
// given the time to drain. Each call is timed by itself, and reading the clock is part of the
// figure. On request another thread makes the caches cold.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <barrier>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "bench/call_subjects.hpp"
#include "bench/disturbance.hpp"
#include "bench/front_end_subjects.hpp"
#include "bench/measure.hpp"
#include "bench/reader_process.hpp"

namespace orvane::bench {
namespace {

struct Plan {
    std::string group = "call";
    std::string subject;
    std::string label;
    std::string results;
    SubjectOptions options;
    unsigned threads = 1;
    unsigned gap_us = 0;
    /// Over all threads, warming up not counted.
    std::size_t calls = 20480;
    std::size_t burst = 2048;
    /// Calls per reading of the clock; a sample is their mean.
    std::size_t batch = 1;
    Disturbance::Kind disturbance = Disturbance::Kind::none;
};

constexpr std::size_t longest_warm_up = 512;
/// The program's result when the subject cannot be measured here.
constexpr int not_measured = 3;

template <typename Subject>
class Caller {
public:
    Caller(Subject& subject, Disturbance& disturbance, const Plan& plan)
        : subject_{subject},
          disturbance_{disturbance},
          plan_{plan},
          text_{Subject::text(plan.options.length)} {
        samples_.reserve(plan.calls / plan.batch / plan.threads + 1);
    }

    void burst(std::size_t calls) {
        const std::chrono::microseconds gap{plan_.gap_us};
        Clock::time_point end = Clock::now();
        for (std::size_t call = 0; call < calls; call += plan_.batch) {
            wait_gap(end, gap);
            disturbance_.prepare_call();
            const Clock::time_point begin = Clock::now();
            for (std::size_t repeated = 0; repeated < plan_.batch; ++repeated) {
                subject_.call(text_.c_str());
            }
            end = Clock::now();
            samples_.push_back(nanoseconds_between(begin, end) / static_cast<double>(plan_.batch));
        }
    }

    void forget() { samples_.clear(); }
    const std::vector<double>& samples() const { return samples_; }

private:
    Subject& subject_;
    Disturbance& disturbance_;
    const Plan& plan_;
    std::string text_;
    std::vector<double> samples_;
};

template <typename Subject>
std::vector<double> measure(Subject& subject, const Plan& plan) {
    Disturbance disturbance{plan.disturbance};
    std::vector<double> samples;
    std::mutex samples_mutex;
    std::barrier barrier{static_cast<std::ptrdiff_t>(plan.threads)};
    const std::size_t in_burst = std::min(plan.burst, plan.calls);
    const std::size_t per_burst = std::max(in_burst / plan.threads, plan.batch);
    const std::size_t bursts = plan.calls / in_burst;
    // Few calls are slow ones.
    const std::size_t warm_up = std::min(plan.calls / 8, longest_warm_up);
    const auto run = [&](bool leads) {
        Caller<Subject> caller{subject, disturbance, plan};
        for (std::size_t burst = 0; burst <= bursts; ++burst) {
            barrier.arrive_and_wait();
            caller.burst(burst == 0 ? std::max(warm_up / plan.threads, plan.batch) : per_burst);
            barrier.arrive_and_wait();
            if (burst == 0) {
                caller.forget();
            }
            if (leads) {
                subject.drain();
            }
        }
        const std::lock_guard lock{samples_mutex};
        samples.insert(samples.end(), caller.samples().begin(), caller.samples().end());
    };
    std::vector<std::jthread> others;
    for (unsigned thread = 1; thread < plan.threads; ++thread) {
        others.emplace_back(run, false);
    }
    run(true);
    others.clear();
    return samples;
}

template <typename Subject>
int run(const Plan& plan) {
    std::optional<ReaderProcess> reader;
    if (plan.options.reader) {
        reader.emplace(
            ReaderProcess::Options{.engine = plan.subject, .domain = plan.options.domain});
    }
    Subject subject{plan.options};
    if (!subject.ready()) {
        std::fprintf(stderr, "bench: %s cannot be measured\n", plan.subject.c_str());
        return not_measured;
    }
    nlohmann::json result{{"group", plan.group},           {"subject", plan.subject},
                          {"label", plan.label},           {"gap_us", plan.gap_us},
                          {"threads", plan.threads},       {"reader", plan.options.reader},
                          {"length", plan.options.length}, {"filtered", plan.options.filtered}};
    result["figures"] = distribution(measure(subject, plan));
    append_result(plan.results, result);
    return 0;
}

const std::map<std::string, int (*)(const Plan&)> subjects{
    {"bare", run<BareSubject>},
    {"dlt", run<DltSubject>},
    {"empty", run<EmptySubject>},
    {"floor", run<FloorSubject>},
    {"floor-waking", run<WakingFloorSubject>},
    {"format", run<FormatSubject>},
    {"orvane", run<OrvaneSubject>},
    {"printf", run<PrintfSubject>},
    {"rcutils", run<RcutilsSubject>},
    {"snprintf", run<SnprintfSubject>},
    {"spdlog", run<SpdlogSubject>},
    {"spdlog-format", run<SpdlogFormatSubject>},
    {"spdlog-sink", run<SpdlogSinkSubject>},
};

int run_subject(const Plan& plan) {
    return subjects.at(plan.subject)(plan);
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) try {
    using orvane::bench::Disturbance;
    orvane::bench::Plan plan;
    plan.options.queue_size = 8192;
    CLI::App app{"Measures what a logging call costs its caller."};
    app.add_option("--subject", plan.subject)
        ->required()
        ->check(CLI::IsMember(&orvane::bench::subjects));
    app.add_option("--results", plan.results, "file that a line of JSON is added to")->required();
    app.add_option("--group", plan.group, "part of the report that the figures belong to");
    app.add_option("--label", plan.label, "name of the figures within the group");
    app.add_option("--domain", plan.options.domain);
    app.add_option("--queue", plan.options.queue_size, "messages that wait at most");
    app.add_option("--gap", plan.gap_us, "microseconds between calls");
    app.add_option("--threads", plan.threads)->check(CLI::PositiveNumber);
    app.add_option("--length", plan.options.length, "characters of a message");
    app.add_option("--calls", plan.calls, "calls over all threads");
    app.add_option("--burst", plan.burst, "calls between two drainings, over all threads");
    app.add_option("--batch", plan.batch, "calls per reading of the clock");
    app.add_option("--disturbance", plan.disturbance, "by a thread that walks through memory")
        ->transform(CLI::CheckedTransformer(std::map<std::string, Disturbance::Kind>{
            {"cold", Disturbance::Kind::cold}, {"neighbour", Disturbance::Kind::neighbour}}));
    app.add_flag("--reader", plan.options.reader, "with a reader in another process");
    app.add_flag("--filtered", plan.options.filtered, "with messages that the filter stops");
    CLI11_PARSE(app, argc, argv);
    return orvane::bench::run_subject(plan);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}
