// How long applications and viewers take to find each other.
//
// start: from the start of a process that logs one message until a viewer that runs has it.
// join: from the start of a viewer until it has the message of a logger that runs.
// crowd: the same as start, of many processes that start at once.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/child_process.hpp"
#include "bench/logger.hpp"
#include "bench/measure.hpp"

namespace orvane::bench {
namespace {

/// Longest wait for what must come.
constexpr std::chrono::seconds patience{120};

struct Plan {
    std::string what;
    std::string label;
    std::string results;
    std::int32_t domain = 0;
    std::size_t count = 1;
};

/// A process with a logger that logs one message.
class Speaker : public ChildProcess {
public:
    explicit Speaker(const Plan& plan)
        : ChildProcess{{std::filesystem::read_symlink("/proc/self/exe"), "--what", "speak",
                        "--domain", std::to_string(plan.domain)}} {}
    /// Lets it leave.
    void finish() {
        end_input();
        if (wait() != 0) {
            throw std::runtime_error{"a logger did not end well"};
        }
    }
};

int speak(const Plan& plan) {
    Logger logger{{.domain = plan.domain}};
    logger.log(QEL_KX_LEVEL_INFO, "here");
    std::getchar();
    return 0;
}

/// Takes so many messages. @return for each, how long it took from @p begin
std::vector<double> arrivals(LogReader& reader, std::size_t count, Clock::time_point begin) {
    std::vector<double> durations;
    std::vector<std::int64_t> source_times;
    while (durations.size() < count) {
        source_times.clear();
        reader.take(std::chrono::seconds{1}, source_times);
        const Clock::time_point now = Clock::now();
        durations.insert(durations.end(), source_times.size(), nanoseconds_between(begin, now));
        if (now - begin > patience) {
            throw std::runtime_error{"messages do not arrive"};
        }
    }
    return durations;
}

std::vector<double> measure_starts(const Plan& plan) {
    LogReader reader{plan.domain};
    std::vector<double> durations;
    for (std::size_t round = 0; round < plan.count; ++round) {
        const Clock::time_point begin = Clock::now();
        Speaker speaker{plan};
        durations.push_back(arrivals(reader, 1, begin).front());
        speaker.finish();
    }
    return durations;
}

std::vector<double> measure_crowd(const Plan& plan) {
    LogReader reader{plan.domain};
    std::vector<std::unique_ptr<Speaker>> crowd;
    const Clock::time_point begin = Clock::now();
    for (std::size_t i = 0; i < plan.count; ++i) {
        crowd.push_back(std::make_unique<Speaker>(plan));
    }
    std::vector<double> durations = arrivals(reader, plan.count, begin);
    for (const auto& speaker : crowd) {
        speaker->finish();
    }
    return durations;
}

/// @param growth bytes that both processes have more at the end than after a tenth of the joins
std::vector<double> measure_joins(const Plan& plan, nlohmann::json& growth) {
    Speaker speaker{plan};
    const auto own_kib = [] { return number_in("/proc/self/status", "VmRSS"); };
    double viewer_kib = 0;
    double logger_kib = 0;
    std::vector<double> durations;
    for (std::size_t round = 0; round < plan.count; ++round) {
        if (round == plan.count / 10) {
            viewer_kib = own_kib();
            logger_kib = speaker.resident_kib();
        }
        const Clock::time_point begin = Clock::now();
        LogReader reader{plan.domain};
        durations.push_back(arrivals(reader, 1, begin).front());
    }
    growth["viewer_growth_kib"] = own_kib() - viewer_kib;
    growth["logger_growth_kib"] = speaker.resident_kib() - logger_kib;
    speaker.finish();
    return durations;
}

int run(const Plan& plan) {
    nlohmann::json growth = nlohmann::json::object();
    nlohmann::json figures = distribution(plan.what == "start"   ? measure_starts(plan)
                                          : plan.what == "crowd" ? measure_crowd(plan)
                                                                 : measure_joins(plan, growth));
    figures.update(growth);
    append_result(plan.results, {{"group", "security"},
                                 {"what", plan.what},
                                 {"label", plan.label},
                                 {"count", plan.count},
                                 {"figures", figures}});
    return 0;
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) try {
    orvane::bench::Plan plan;
    CLI::App app{"Measures how long applications and viewers take to find each other."};
    app.add_option("--what", plan.what, "start, join or crowd")->required();
    app.add_option("--count", plan.count, "processes or joins")->check(CLI::PositiveNumber);
    app.add_option("--domain", plan.domain);
    app.add_option("--label", plan.label, "row of the report that the figures belong to");
    app.add_option("--results", plan.results, "file that a line of JSON is added to");
    CLI11_PARSE(app, argc, argv);
    return plan.what == "speak" ? orvane::bench::speak(plan) : orvane::bench::run(plan);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}
