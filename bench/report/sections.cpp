#include "bench/report/sections.hpp"

#include <fmt/format.h>

#include <tuple>

#include "bench/report/call_setting.hpp"

namespace orvane::bench::report {
namespace {

using nlohmann::json;
using Kind = Target::Kind;

json stream_identity(const char* subject, int gap_us, int threads) {
    return {{"group", "stream"}, {"subject", subject}, {"gap_us", gap_us}, {"threads", threads}};
}

}  // namespace

Section front_ends_section(const Results& results) {
    const auto figure = [&](const char* subject, bool is_filtered, const char* name) {
        return results.figure(
            {{"group", "front_ends"}, {"subject", subject}, {"filtered", is_filtered}}, name);
    };
    if (!figure("orvane", false, "p50").measured()) {
        return {};
    }
    Table table{{"a text of two values", "p50", "p99", "filtered"}};
    Target filtered{"filtered by a front end, beyond the C call", Kind::at_most, 1, " ns"};
    for (const auto& [name, subject, is_ours] :
         {std::tuple{"C interface, a text that is there", "orvane", false},
          {"snprintf and the C interface", "snprintf", false},
          {"`orvane/log.h`", "printf", true},
          {"`orvane/log.hpp`", "format", true},
          {"`orvane/spdlog_sink.h` behind spdlog", "spdlog-sink", false},
          {"`orvane/rcutils_handler.h` behind rcutils", "rcutils", false},
          {"spdlog, asynchronous, into nothing", "spdlog-format", false},
          {"nothing", "empty", false}}) {
        table.add({name, duration(figure(subject, false, "p50")),
                   duration(figure(subject, false, "p99")),
                   duration(figure(subject, true, "p50"))});
        if (is_ours) {
            filtered.judge(figure(subject, true, "p50") - figure("orvane", true, "p50"), subject);
        }
    }
    return {"### Front ends\n\n" + table.text(), {filtered}};
}

Section stream_section(const Results& results) {
    const auto figure = [&](const char* subject, int gap_us, int threads, const char* name) {
        return results.figure(stream_identity(subject, gap_us, threads), name);
    };
    Table rates{{"stream", "messages/s", "lost", "latency p50", "p99"}};
    for (const auto& [name, subject, threads] : {std::tuple{"orvane, 1 thread", "orvane", 1},
                                                 {"orvane, 2 threads", "orvane", 2},
                                                 {"bare engine", "bare", 1},
                                                 {"bare engine, batching", "bare-batching", 1}}) {
        if (figure(subject, 0, threads, "per_second").measured()) {
            rates.add({name, number(figure(subject, 0, threads, "per_second")),
                       number(figure(subject, 0, threads, "lost")),
                       duration(figure(subject, 0, threads, "p50")),
                       duration(figure(subject, 0, threads, "p99"))});
        }
    }
    if (rates.empty()) {
        return {};
    }
    Target batching{"stream rate : bare engine with batching", Kind::at_least, 0.85};
    Target plain{"stream rate : bare engine", Kind::at_least, 3};
    Target lone{"latency of a lone message : bare engine, p50, one every 20 ms", Kind::at_most,
                1.3};
    Target frequent{"the same, one every ms", Kind::at_most, 2};
    const auto rate = figure("orvane", 0, 1, "per_second");
    batching.judge(ratio(rate, figure("bare-batching", 0, 1, "per_second")));
    plain.judge(ratio(rate, figure("bare", 0, 1, "per_second")));
    Table latencies{{"lone messages", "orvane p50", "p99", "bare engine p50", "p99", "ratio, p50"}};
    for (const int gap_us : {1000, 20'000}) {
        const auto quotient =
            ratio(figure("orvane", gap_us, 1, "p50"), figure("bare", gap_us, 1, "p50"));
        const std::string where = fmt::format("one every {} ms", gap_us / 1000);
        // One every millisecond finds the write thread dozing.
        (gap_us == 20'000 ? lone : frequent).judge(quotient);
        latencies.add({where, duration(figure("orvane", gap_us, 1, "p50")),
                       duration(figure("orvane", gap_us, 1, "p99")),
                       duration(figure("bare", gap_us, 1, "p50")),
                       duration(figure("bare", gap_us, 1, "p99")), number(quotient, 2)});
    }
    return {"### Stream\n\n" + rates.text() + "\n" + latencies.text(),
            {batching, plain, lone, frequent}};
}

Section types_section(const Results& results) {
    const auto figure = [&](const char* type, const char* operation, const char* name) {
        return results.figure({{"group", "types"}, {"type", type}, {"operation", operation}}, name);
    };
    Table table{{"type", "bytes", "encode", "decode", "size", "key hash"}};
    for (const char* type : {"log_message", "state", "command_request", "command_response"}) {
        if (figure(type, "encode", "ns").measured()) {
            const auto hash = figure(type, "key_hash", "ns");
            table.add({type, number(figure(type, "encode", "bytes")),
                       duration(figure(type, "encode", "ns")),
                       duration(figure(type, "decode", "ns")), duration(figure(type, "size", "ns")),
                       hash.measured() ? duration(hash) : "no key"});
        }
    }
    if (table.empty()) {
        return {};
    }
    const auto by_hand = figure("log_message", "encode_by_hand", "ns");
    table.add({"log_message by hand", number(figure("log_message", "encode", "bytes")),
               duration(by_hand), duration(figure("log_message", "decode_by_hand", "ns")), "", ""});
    Target encode{"encode : encoder by hand", Kind::at_most, 2};
    Target decode{"decode : encoder by hand", Kind::at_most, 2};
    encode.judge(ratio(figure("log_message", "encode", "ns"), by_hand));
    decode.judge(ratio(figure("log_message", "decode", "ns"), by_hand));
    return {"### Types\n\n" + table.text(), {encode, decode}};
}

Section rest_section(const Results& results) {
    const auto figure = [&](const char* subject, const char* what, const char* name) {
        return results.figure({{"group", "rest"}, {"subject", subject}, {"what", what}}, name);
    };
    if (!figure("orvane", "life", "create_ms").measured()) {
        return {};
    }
    Table table{{"start and rest", "orvane", "bare engine", "ratio", "difference"}};
    const auto add = [&](const char* title, const char* what, const char* name, int decimals) {
        const auto ours = figure("orvane", what, name);
        const auto bare = figure("bare", what, name);
        table.add({title, number(ours, decimals), number(bare, decimals),
                   bare.median() == 0.0 ? "" : number(ratio(ours, bare), 2),
                   number(ours - bare, decimals)});
    };
    add("creation, ms", "life", "create_ms", 2);
    add("deletion, ms", "life", "delete_ms", 2);
    add("resident memory, KiB", "life", "rss_kib", 0);
    add("proportional share of it, KiB", "life", "pss_kib", 0);
    add("of it not backed by files, KiB", "life", "anonymous_kib", 0);
    add("wake-ups per second, idle", "idle", "wakeups_per_second", 1);
    add("of it the write thread", "idle", "write_thread_wakeups_per_second", 1);
    add("processor time, idle, ms/s", "idle", "cpu_ms_per_second", 2);
    add("the same with 32 threads that wait for the global lock", "waiting", "cpu_ms_per_second",
        2);

    Target start{"creation : bare engine", Kind::at_most, 1.3};
    start.judge(ratio(figure("orvane", "life", "create_ms"), figure("bare", "life", "create_ms")));
    Target end{"deletion", Kind::at_most, 10, " ms"};
    end.judge(figure("orvane", "life", "delete_ms"));
    Target memory{"resident memory beyond the bare engine's", Kind::at_most, 1024, " KiB"};
    memory.judge(figure("orvane", "life", "rss_kib") - figure("bare", "life", "rss_kib"));
    Target idle{"wake-ups of an idle logger", Kind::at_most, 12, "/s"};
    idle.judge(figure("orvane", "idle", "wakeups_per_second"));
    Target waiting{"processor time of 32 waiting threads", Kind::at_most, 10, " ms/s"};
    waiting.judge(figure("orvane", "waiting", "cpu_ms_per_second"));
    return {"### Start and rest\n\n" + table.text(), {start, end, memory, idle, waiting}};
}

Section flood_section(const Results& results) {
    Table table{{"flood, standard output is", "p50", "p99", "p99.9", "max"}};
    for (const char* output : {"/dev/null", "a file", "a pipe"}) {
        const json about{{"group", "flood"}, {"label", output}};
        if (results.figure(about, "p50").measured()) {
            table.add({output, duration(results.figure(about, "p50")),
                       duration(results.figure(about, "p99")),
                       duration(results.figure(about, "p999")),
                       duration(results.figure(about, "max"))});
        }
    }
    return table.empty() ? Section{} : Section{"### Flood\n\n" + table.text(), {}};
}

Section viewers_section(const Results& results) {
    static constexpr struct {
        const char* name;
        const char* subject;
        const char* format;
    } subjects[] = {{"bare reader", "reader", ""},
                    {"orvane tail", "tail", ".txt"},
                    {"orvane tail --json", "tail", ".jsonl"},
                    {"orvane record, lines of JSON", "record", ".jsonl"},
                    {"orvane record, MCAP", "record", ".mcap"},
                    {"orvane show, lines of JSON", "show", ".jsonl"},
                    {"orvane show, MCAP", "show", ".mcap"},
                    {"orvane replay, lines of JSON", "replay", ".jsonl"},
                    {"orvane replay, MCAP", "replay", ".mcap"}};
    constexpr int paced = 100'000;
    const auto figure = [&](const auto& subject, int rate, const char* name) {
        return results.figure({{"group", "viewers"},
                               {"subject", subject.subject},
                               {"format", subject.format},
                               {"rate", rate}},
                              name);
    };
    Table rates{{"viewer", "messages/s", ": bare reader", "lost", "processor time per message",
                 "bytes per message"}};
    Table memory{{"resident memory, KiB", "after 10 % of the messages", "20 %", "50 %", "all"}};
    Target rate{"viewer rate : bare reader", Kind::at_least, 0.7};
    Target lost{"messages that a viewer has lost", Kind::at_most, 0};
    Target growth{"growth of a viewer's memory behind a tenth of the messages", Kind::at_most, 8192,
                  " KiB"};
    const auto of_reader = figure(subjects[0], 0, "per_second");
    const auto number_or_nothing = [](const Figure& value, int decimals = 0) {
        return value.measured() ? number(value, decimals) : "";
    };
    for (const auto& subject : subjects) {
        const auto per_second = figure(subject, 0, "per_second");
        // A recording is shown without a logger, and loses nothing.
        const auto missing = figure(subject, 0, "lost");
        // Only a viewer has its memory watched, and is to keep up with the reader.
        const bool views = figure(subject, 0, "rss_kib_100").measured();
        const auto quotient = views ? ratio(per_second, of_reader) : Figure{};
        if (per_second.measured()) {
            rates.add({subject.name, number(per_second), number_or_nothing(quotient, 2),
                       number_or_nothing(missing), duration(figure(subject, 0, "cpu_ns")),
                       number_or_nothing(figure(subject, 0, "bytes"))});
        }
        if (&subject != &subjects[0]) {
            rate.judge(quotient, subject.name);
            lost.judge(missing, subject.name);
        }
        const auto at_first = figure(subject, paced, "rss_kib_10");
        const auto at_last = figure(subject, paced, "rss_kib_100");
        if (at_first.measured() && at_last.measured()) {
            memory.add({subject.name, number(at_first),
                        number(figure(subject, paced, "rss_kib_20")),
                        number(figure(subject, paced, "rss_kib_50")), number(at_last)});
            growth.judge(at_last - at_first, subject.name);
        }
    }
    return rates.empty() ? Section{}
                         : Section{"### Viewers\n\n" + rates.text() + "\n" + memory.text(),
                                   {rate, lost, growth}};
}

Section security_section(const Results& results) {
    const auto figure = [&](json about, const char* label, const char* name) {
        about.update({{"group", "security"}, {"label", label}});
        return results.figure(about, name);
    };
    const json stream{{"subject", "orvane"}, {"gap_us", 0}};
    if (!figure(stream, "with", "per_second").measured()) {
        return {};
    }
    Table table{{"security", "without", "with", "ratio"}};
    const auto add = [&](const char* title, const json& about, const char* name,
                         std::string (*text)(const Figure&)) {
        const auto without = figure(about, "without", name);
        const auto with = figure(about, "with", name);
        table.add({title, text(without), text(with), number(ratio(with, without), 2)});
    };
    const auto count = [](const Figure& value) { return number(value); };
    const json lone{{"subject", "orvane"}, {"gap_us", 1000}};
    add("stream, messages/s", stream, "per_second", count);
    add("processor time of a message, logger", stream, "logger_cpu_ns", duration);
    add("the same, reader", stream, "reader_cpu_ns", duration);
    add("one message every ms, latency p50", lone, "p50", duration);
    add("processor time of it, logger", lone, "logger_cpu_ns", duration);
    add("the same, reader", lone, "reader_cpu_ns", duration);
    add("start of a process to its first message, p50", {{"what", "start"}}, "p50", duration);
    add("join of a viewer to the first message, p50", {{"what", "join"}}, "p50", duration);
    add("the same, p99", {{"what", "join"}}, "p99", duration);
    add("growth of the viewer over the joins, KiB", {{"what", "join"}}, "viewer_growth_kib", count);
    add("growth of the logger, KiB", {{"what", "join"}}, "logger_growth_kib", count);
    add("many processes at once, first message, p50", {{"what", "crowd"}}, "p50", duration);
    add("the same, the last process", {{"what", "crowd"}}, "max", duration);
    return {"### Security\n\n" + table.text(), {}};
}

std::vector<PlotData> plots(const Results& results) {
    const auto bar = [&](const json& about, const char* name, double unit) {
        const auto value = results.figure(about, name).median();
        return value ? fmt::format(" {:.3f}", *value / unit) : std::string{" ?"};
    };
    std::string call = "gap floor - orvane - spdlog - dlt - dds_write -\n";
    for (const int gap : {0, 2, 20, 1000}) {
        call += fmt::format("\"{} µs\"", gap);
        for (const char* subject : {"floor", "orvane", "spdlog", "dlt", "bare"}) {
            const json about = CallSetting{.gap_us = gap}.identity(subject);
            call += bar(about, "p50", 1) + bar(about, "p99", 1);
        }
        call += '\n';
    }
    std::string rate;
    for (const char* subject : {"orvane", "bare", "bare-batching"}) {
        rate += subject + bar(stream_identity(subject, 0, 1), "per_second", 1e3) + '\n';
    }
    std::string latency = "gap orvane - bare -\n";
    for (const int gap_us : {1000, 20'000}) {
        latency += fmt::format("\"{} ms\"", gap_us / 1000);
        for (const char* subject : {"orvane", "bare"}) {
            const json about = stream_identity(subject, gap_us, 1);
            latency += bar(about, "p50", 1e3) + bar(about, "p99", 1e3);
        }
        latency += '\n';
    }
    std::vector<PlotData> data;
    if (results.has("call")) {
        data.push_back({"call.dat", call});
    }
    if (results.has("stream")) {
        data.push_back({"rate.dat", rate});
        data.push_back({"latency.dat", latency});
    }
    return data;
}

}  // namespace orvane::bench::report
