// How fast and how late messages reach a reader in another process when none may be lost.
//
// The logger's queue is kept half full while the messages last, which is the rate that just fits;
// the bare writer waits by itself when its reader falls behind. With a gap the messages come one by
// one, and what counts is how old they are when they have been taken.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>
#include <vector>

#include "bench/bare/engine.hpp"
#include "bench/logger.hpp"
#include "bench/measure.hpp"
#include "bench/reader_process.hpp"

namespace orvane::bench {
namespace {

constexpr std::size_t text_length = 60;

struct Plan {
    std::string group = "stream";
    std::string subject;
    std::string label;
    std::string results;
    std::int32_t domain = 0;
    std::size_t messages = 200'000;
    unsigned threads = 1;
    unsigned gap_us = 0;
};

class LoggerSource {
public:
    explicit LoggerSource(const Plan& plan)
        : logger_{{.domain = plan.domain, .queue_size = 8192, .keep_all = true}} {}
    bool has_reader() const { return logger_.has_reader(); }
    static std::string text() { return std::string(text_length, 'x'); }
    void send(const char* text) { logger_.log_at_leisure(QEL_KX_LEVEL_INFO, text); }
    static void finish() {}

private:
    Logger logger_;
};

class BareSource {
public:
    explicit BareSource(const Plan& plan)
        : writer_{{.domain = plan.domain,
                   .history = bare::History::all,
                   .batching = plan.subject == "bare-batching"}} {}
    bool has_reader() const { return writer_.has_reader(); }
    /// Makes the payload as large as the logger's, whose encoding has headers for each member.
    static std::string text() {
        const std::string plain(text_length, 'x');
        return std::string(text_length + encoded_size(plain) - bare::encoded_size(text_length),
                           'x');
    }
    void send(const char* text) { writer_.write(text); }
    void finish() { writer_.flush(); }

private:
    bare::Writer writer_;
};

template <typename Source>
void send_all(Source& source, const Plan& plan) {
    const std::string text = Source::text();
    const auto send_share = [&] {
        for (std::size_t sent = 0; sent < plan.messages / plan.threads; ++sent) {
            const Clock::time_point begin = Clock::now();
            source.send(text.c_str());
            if (plan.gap_us != 0) {
                wait_gap(begin, std::chrono::microseconds{plan.gap_us});
            }
        }
    };
    std::vector<std::jthread> others;
    for (unsigned thread = 1; thread < plan.threads; ++thread) {
        others.emplace_back(send_share);
    }
    send_share();
}

template <typename Source>
int run(const Plan& plan) {
    ReaderProcess reader{{.engine = plan.subject == "orvane" ? "orvane" : "bare",
                          .domain = plan.domain,
                          .expected = plan.messages}};
    Source source{plan};
    if (!wait_until([&] { return source.has_reader(); }, std::chrono::seconds{10})) {
        std::fprintf(stderr, "bench: %s finds no reader\n", plan.subject.c_str());
        return 1;
    }
    const nanoseconds logger_before = own_processor_time();
    const nanoseconds reader_before = reader.processor_time();
    const Clock::time_point begin = Clock::now();
    send_all(source, plan);
    source.finish();
    const nlohmann::json seen = reader.result();
    const nanoseconds logger_time = own_processor_time() - logger_before;
    const nanoseconds reader_time = reader.processor_time() - reader_before;

    const auto received = seen["received"].get<double>();
    const Clock::time_point end{Clock::duration{seen["last_take"].get<Clock::rep>()}};
    nlohmann::json figures = seen["latency"];
    figures["lost"] = static_cast<double>(plan.messages) - received;
    figures["per_second"] = received * 1e9 / nanoseconds_between(begin, end);
    figures["logger_cpu_ns"] = static_cast<double>(logger_time.count()) / received;
    figures["reader_cpu_ns"] = static_cast<double>(reader_time.count()) / received;
    append_result(plan.results, {{"group", plan.group},
                                 {"subject", plan.subject},
                                 {"label", plan.label},
                                 {"threads", plan.threads},
                                 {"gap_us", plan.gap_us},
                                 {"figures", figures}});
    return 0;
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) try {
    orvane::bench::Plan plan;
    CLI::App app{"Measures how messages reach a reader in another process."};
    app.add_option("--subject", plan.subject)
        ->required()
        ->check(CLI::IsMember({"orvane", "bare", "bare-batching"}));
    app.add_option("--results", plan.results, "file that a line of JSON is added to")->required();
    app.add_option("--group", plan.group, "part of the report that the figures belong to");
    app.add_option("--label", plan.label, "row of the report that the figures belong to");
    app.add_option("--domain", plan.domain);
    app.add_option("--messages", plan.messages);
    app.add_option("--threads", plan.threads)->check(CLI::PositiveNumber);
    app.add_option("--gap", plan.gap_us, "microseconds between messages");
    CLI11_PARSE(app, argc, argv);
    return plan.subject == "orvane" ? orvane::bench::run<orvane::bench::LoggerSource>(plan)
                                    : orvane::bench::run<orvane::bench::BareSource>(plan);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}
