// How fast a viewer takes in the messages of a logger, and how fast a recording is printed and
// published; what that costs, and what a message takes in its files.
//
// The logger's queue is kept half full, or it logs at a given rate. A viewer has done its work when
// its process rests. A reader that only takes the messages is measured in the same way.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <random>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "bench/child_process.hpp"
#include "bench/logger.hpp"
#include "bench/measure.hpp"
#include "bench/reader_process.hpp"

namespace orvane::bench {
namespace {

struct Plan {
    std::string subject;
    std::string results;
    std::string tool;
    std::string file;
    std::int32_t domain = 0;
    std::size_t messages = 500'000;
    /// Messages per second; 0: as many as the logger can.
    unsigned rate = 0;

    std::string format() const { return std::filesystem::path{file}.extension().string(); }
};

struct Message {
    DDS_Long level;
    std::string text;
};

/// Messages of about 60 characters, the same ones in each run, in which the figures differ: a file
/// that is compressed would be too small otherwise.
std::vector<Message> messages() {
    constexpr std::size_t count = 4096;
    constexpr std::array<DDS_Long, 4> levels{QEL_KX_LEVEL_INFO, QEL_KX_LEVEL_INFO,
                                             QEL_KX_LEVEL_NOTICE, QEL_KX_LEVEL_WARNING};
    std::mt19937 random;
    std::vector<Message> messages(count);
    for (Message& message : messages) {
        std::array<char, 128> text{};
        const auto draw = static_cast<unsigned>(random());
        const int axis = static_cast<int>(draw % 6);
        const double reached = static_cast<double>(random() % 10'000'000) / 1e4;
        const unsigned long long duration = random() % 100'000;
        const char* const form = draw % 3 == 0 ? "axis %d has reached %.4f mm of its way in %llu us"
                                 : draw % 3 == 1
                                     ? "controller %d: temperature %.2f, next look in %llu us"
                                     : "request %d of the planner was served at %.3f, took %llu us";
        std::snprintf(text.data(), text.size(), form, axis, reached, duration);
        message = {levels[draw / 6 % levels.size()], text.data()};
    }
    return messages;
}

/// What the process prints at its end: how many messages there were, how many of them are missing
/// in its file, and how long it took.
struct Summary {
    double messages = 0;
    double missing = 0;
    double seconds = 0;
};

/// @return the number in front of the first match, or 0
double number_before(const std::string& text, const char* words) {
    std::smatch match;
    return std::regex_search(text, match, std::regex{std::string{"([0-9.]+) "} + words})
               ? std::stod(match[1])
               : 0;
}

Summary read_summary(ChildProcess& viewer) {
    std::string text;
    for (std::string line; !(line = viewer.read_line()).empty();) {
        text += line + '\n';
    }
    return {number_before(text, "messages? "), number_before(text, "events? (is|are) not in"),
            number_before(text, "s\\b")};
}

class Subject {
public:
    virtual ~Subject() = default;
    virtual ChildProcess& process() = 0;
    /// Ends the process.
    virtual Summary finish() = 0;
};

class BareReader : public Subject {
public:
    explicit BareReader(const Plan& plan) : reader_{{.engine = "orvane", .domain = plan.domain}} {}
    ChildProcess& process() override { return reader_; }
    Summary finish() override {
        reader_.end_input();
        return {.messages = reader_.result()["received"].get<double>()};
    }

private:
    ReaderProcess reader_;
};

class Viewer : public Subject {
public:
    explicit Viewer(const Plan& plan)
        : process_{command(plan), plan.subject == "record" ? "/dev/null" : plan.file} {}
    ChildProcess& process() override { return process_; }
    Summary finish() override {
        process_.interrupt();
        return read_summary(process_);
    }

private:
    static std::vector<std::string> command(const Plan& plan) {
        const std::string domain = std::to_string(plan.domain);
        if (plan.subject == "record") {
            return {plan.tool, "record", plan.file, "--domain", domain};
        }
        std::vector<std::string> words{plan.tool, "tail", "--domain", domain};
        if (plan.format() == ".jsonl") {
            words.emplace_back("--json");
        }
        return words;
    }

    ChildProcess process_;
};

std::unique_ptr<Subject> start_subject(const Plan& plan) {
    if (plan.subject == "reader") {
        return std::make_unique<BareReader>(plan);
    }
    std::filesystem::remove(plan.file);
    return std::make_unique<Viewer>(plan);
}

/// @param elapsed nanoseconds
/// @param used processor time
nlohmann::json figures_of(double messages, double elapsed, nanoseconds used) {
    return {{"per_second", messages * 1e9 / elapsed},
            {"cpu_ns", static_cast<double>(used.count()) / messages}};
}

void add_row(const Plan& plan, const nlohmann::json& figures) {
    append_result(plan.results, {{"group", "viewers"},
                                 {"subject", plan.subject},
                                 {"format", plan.format()},
                                 {"rate", plan.rate},
                                 {"figures", figures}});
}

/// Logs all messages. @return the memory of a process after some shares of them
nlohmann::json log_all(const Plan& plan, Logger& logger, const ChildProcess& process) {
    constexpr std::size_t messages_per_step = 100;
    constexpr std::array<std::size_t, 3> percents{10, 20, 50};
    const nanoseconds step{plan.rate == 0 ? 0 : messages_per_step * 1'000'000'000 / plan.rate};
    const std::vector<Message> texts = messages();
    nlohmann::json memory;
    Clock::time_point begin = Clock::now();
    for (std::size_t sent = 1; sent <= plan.messages; ++sent) {
        const Message& message = texts[sent % texts.size()];
        logger.log_at_leisure(message.level, message.text.c_str());
        if (plan.rate != 0 && sent % messages_per_step == 0) {
            begin += step;
            std::this_thread::sleep_until(begin);
        }
        for (const std::size_t percent : percents) {
            if (sent == plan.messages * percent / 100) {
                memory[fmt::format("rss_kib_{}", percent)] = process.resident_kib();
            }
        }
    }
    return memory;
}

int watch(const Plan& plan) {
    const std::unique_ptr<Subject> subject = start_subject(plan);
    ChildProcess& process = subject->process();
    Logger logger{{.domain = plan.domain, .queue_size = 8192, .keep_all = true, .kind = "bench"}};
    if (!wait_until([&] { return logger.has_reader(); }, std::chrono::seconds{10})) {
        std::fprintf(stderr, "bench: %s does not find the logger\n", plan.subject.c_str());
        return 1;
    }
    // The viewer gets to know the logger.
    process.wait_for_rest();

    const nanoseconds used_before = process.processor_time();
    const Clock::time_point begin = Clock::now();
    const nlohmann::json memory = log_all(plan, logger, process);
    const Clock::time_point end = process.wait_for_rest();
    const nanoseconds used = process.processor_time() - used_before;
    const double resident_kib = process.resident_kib();

    const Summary summary = subject->finish();
    nlohmann::json figures = figures_of(summary.messages, nanoseconds_between(begin, end), used);
    figures.update(memory);
    figures["rss_kib_100"] = resident_kib;
    figures["lost"] = static_cast<double>(plan.messages) - (summary.messages - summary.missing);
    if (plan.subject != "reader") {
        process.wait();
        figures["bytes"] =
            static_cast<double>(std::filesystem::file_size(plan.file)) / summary.messages;
    }
    add_row(plan, figures);
    return 0;
}

int show(const Plan& plan) {
    const Clock::time_point begin = Clock::now();
    ChildProcess process{{plan.tool, "show", plan.file}, plan.file + ".txt"};
    const Summary summary = read_summary(process);
    const Clock::time_point end = Clock::now();
    add_row(plan, figures_of(summary.messages, nanoseconds_between(begin, end),
                             process.processor_time()));
    return 0;
}

int replay(const Plan& plan) {
    BareReader reader{plan};
    ChildProcess process{{plan.tool, "replay", plan.file, "--speed", "max", "--wait", "--domain",
                          std::to_string(plan.domain)},
                         "/dev/null"};
    const Summary summary = read_summary(process);
    nlohmann::json figures =
        figures_of(summary.messages, summary.seconds * 1e9, process.processor_time());
    figures["lost"] = summary.messages - reader.finish().messages;
    add_row(plan, figures);
    return 0;
}

int run(const Plan& plan) {
    return plan.subject == "show"     ? show(plan)
           : plan.subject == "replay" ? replay(plan)
                                      : watch(plan);
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) try {
    orvane::bench::Plan plan;
    CLI::App app{"Measures a viewer."};
    app.add_option("--subject", plan.subject)
        ->required()
        ->check(CLI::IsMember({"reader", "tail", "record", "show", "replay"}));
    app.add_option("--results", plan.results, "file that a line of JSON is added to")->required();
    app.add_option("--tool", plan.tool, "the program orvane")->required();
    app.add_option("--file", plan.file,
                   "the viewer's output, in the format of its ending, or the recording to read");
    app.add_option("--domain", plan.domain);
    app.add_option("--messages", plan.messages);
    app.add_option("--rate", plan.rate, "messages per second, by default as many as possible");
    CLI11_PARSE(app, argc, argv);
    return orvane::bench::run(plan);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}
