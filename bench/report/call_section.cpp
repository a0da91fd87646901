#include <fmt/format.h>

#include <utility>

#include "bench/report/call_setting.hpp"
#include "bench/report/sections.hpp"

namespace orvane::bench::report {
namespace {

using nlohmann::json;
using Kind = Target::Kind;

constexpr int long_length = 500;

/// One setting of the call benchmark; its figures by subject.
class CallRow {
public:
    CallRow(const Results& results, CallSetting setting)
        : results_{&results}, setting_{std::move(setting)}, name_{setting_.name()} {}

    Figure figure(const char* subject, const char* name) const {
        return results_->figure(setting_.identity(subject), name);
    }
    Figure quotient(const char* over, const char* under, const char* name) const {
        return ratio(figure(over, name), figure(under, name));
    }
    /// The quotient, and in brackets that of the figures without what reading the clock costs.
    std::string quotients(const char* over, const char* under, const char* name) const {
        const Figure gross = quotient(over, under, name);
        const Figure empty = figure("empty", "p50");
        const Figure net = ratio(figure(over, name) - empty, figure(under, name) - empty);
        return gross.measured() ? fmt::format("{} ({})", number(gross, 2), number(net, 2))
                                : not_measured;
    }
    std::string p50_and_p99(const char* subject) const {
        return figure(subject, "p50").measured()
                   ? duration(figure(subject, "p50")) + " / " + duration(figure(subject, "p99"))
                   : not_measured;
    }
    const std::string& name() const { return name_; }
    const CallSetting& setting() const { return setting_; }

private:
    const Results* results_;
    CallSetting setting_;
    std::string name_;
};

std::vector<CallRow> measured_rows(const Results& results,
                                   const std::vector<CallSetting>& settings) {
    std::vector<CallRow> rows;
    for (const CallSetting& setting : settings) {
        const CallRow row{results, setting};
        if (row.figure("orvane", "p50").measured()) {
            rows.push_back(row);
        }
    }
    return rows;
}

std::vector<CallSetting> undisturbed_settings() {
    std::vector<CallSetting> settings;
    for (const int gap : {0, 2, 20, 1000}) {
        for (const int threads : {1, 2, 4}) {
            settings.push_back({.gap_us = gap, .threads = threads});
            settings.push_back({.gap_us = gap, .threads = threads, .reader = true});
        }
    }
    settings.push_back({.gap_us = 2, .length = long_length});
    return settings;
}

std::vector<CallSetting> disturbed_settings() {
    return {{.group = "cold"},
            {.length = long_length, .group = "cold"},
            {.gap_us = 2, .group = "neighbour"},
            {.gap_us = 2, .length = long_length, .group = "neighbour"}};
}

std::string figures_table(const std::vector<CallRow>& rows) {
    Table table{{"call", "orvane min", "p50", "p99", "p99.9", "floor p50 / p99", "spdlog p50 / p99",
                 "DLT p50 / p99", "dds_write p50 / p99", "empty p50"}};
    for (const CallRow& row : rows) {
        table.add({row.name(), duration(row.figure("orvane", "min")),
                   duration(row.figure("orvane", "p50")), duration(row.figure("orvane", "p99")),
                   duration(row.figure("orvane", "p999")), row.p50_and_p99("floor"),
                   row.p50_and_p99("spdlog"), row.p50_and_p99("dlt"), row.p50_and_p99("bare"),
                   duration(row.figure("empty", "p50"))});
    }
    return table.text();
}

std::string ratios_table(const std::vector<CallRow>& rows) {
    Table table{{"call", "orvane : floor, p50", "orvane : spdlog, p50", "orvane : spdlog, p99",
                 "DLT : orvane, p50", "dds_write : orvane, p50"}};
    for (const CallRow& row : rows) {
        table.add({row.name(), row.quotients("orvane", "floor", "p50"),
                   row.quotients("orvane", "spdlog", "p50"),
                   row.quotients("orvane", "spdlog", "p99"), row.quotients("dlt", "orvane", "p50"),
                   row.quotients("bare", "orvane", "p50")});
    }
    return table.text();
}

/// What a call that wakes a thread is to be compared with.
std::string waking_table(const std::vector<CallRow>& rows) {
    Table table{{"call", "orvane p50", "floor-waking p50 / p99", "orvane : floor, p50",
                 "orvane : floor-waking, p50"}};
    for (const CallRow& row : rows) {
        if (row.figure("floor-waking", "p50").measured()) {
            table.add({row.name(), duration(row.figure("orvane", "p50")),
                       row.p50_and_p99("floor-waking"), row.quotients("orvane", "floor", "p50"),
                       row.quotients("orvane", "floor-waking", "p50")});
        }
    }
    return table.text();
}

/// The targets that hold for every row.
std::vector<Target> targets_beside_others(const std::vector<CallRow>& rows) {
    Target spdlog_p50{"call p50 : spdlog p50", Kind::at_most, 1};
    Target spdlog_p99{"call p99 : spdlog p99", Kind::at_most, 1};
    Target dlt{"DLT p50 : call p50", Kind::at_least, 5};
    for (const CallRow& row : rows) {
        spdlog_p50.judge(row.quotient("orvane", "spdlog", "p50"), row.name());
        spdlog_p99.judge(row.quotient("orvane", "spdlog", "p99"), row.name());
        dlt.judge(row.quotient("dlt", "orvane", "p50"), row.name());
    }
    return {spdlog_p50, spdlog_p99, dlt};
}

Figure with_statistics(const Results& results, const char* label, const char* name) {
    return results.figure({{"group", "statistics"}, {"label", label}}, name);
}

Figure filtered(const Results& results, const char* subject) {
    return results.figure({{"group", "call"}, {"filtered", true}, {"subject", subject}}, "p50");
}

}  // namespace

json CallSetting::identity(const char* subject) const {
    return {{"group", group},   {"gap_us", gap_us},  {"threads", threads}, {"reader", reader},
            {"length", length}, {"filtered", false}, {"subject", subject}};
}

std::string CallSetting::name() const {
    return fmt::format("{} µs, {} thread{}{}{}{}", gap_us, threads, threads == 1 ? "" : "s",
                       reader ? ", reader" : "",
                       length == ordinary_length ? "" : fmt::format(", {} characters", length),
                       group == "call" ? "" : ", " + group);
}

Section call_section(const Results& results) {
    const std::vector<CallRow> rows = measured_rows(results, undisturbed_settings());
    if (rows.empty()) {
        return {};
    }
    Target floor{"call p50 : floor p50, one thread, gaps to 20 µs", Kind::at_most, 1.5};
    Target floor_of_threads{"the same, more threads", Kind::at_most, 1.5};
    Target floor_of_long{"the same, 500 characters", Kind::at_most, 1.5};
    Target tail{"call p99, one thread, gap 2 µs", Kind::at_most, 1000, " ns"};
    Target stopped{"filtered message", Kind::at_most, 5, " ns"};
    for (const CallRow& row : rows) {
        const CallSetting& setting = row.setting();
        if (setting.gap_us <= 20) {
            (setting.length != ordinary_length ? floor_of_long
             : setting.threads > 1             ? floor_of_threads
                                               : floor)
                .judge(row.quotient("orvane", "floor", "p50"), row.name());
        }
        if (setting.gap_us == 2 && setting.threads == 1 && setting.length == ordinary_length) {
            tail.judge(row.figure("orvane", "p99"), row.name());
        }
    }
    stopped.judge(filtered(results, "orvane"));
    Table filter{{"filtered message", "orvane", "spdlog", "DLT", "empty"}};
    filter.add({"mean of a call", duration(filtered(results, "orvane")),
                duration(filtered(results, "spdlog")), duration(filtered(results, "dlt")),
                duration(filtered(results, "empty"))});
    Table statistics{{"statistics", "p50", "p99", "p99.9"}};
    for (const char* label : {"not published", "published"}) {
        statistics.add({label, duration(with_statistics(results, label, "p50")),
                        duration(with_statistics(results, label, "p99")),
                        duration(with_statistics(results, label, "p999"))});
    }
    Target counted{"call p50 with published statistics : without", Kind::at_most, 1.05};
    counted.judge(ratio(with_statistics(results, "published", "p50"),
                        with_statistics(results, "not published", "p50")));
    std::vector<Target> targets{floor, floor_of_threads, floor_of_long, tail};
    for (const Target& target : targets_beside_others(rows)) {
        targets.push_back(target);
    }
    targets.push_back(stopped);
    targets.push_back(counted);
    return {"### Call\n\n" + figures_table(rows) + "\n" + ratios_table(rows) + "\n" +
                filter.text() + "\n" + statistics.text(),
            targets};
}

Section disturbed_section(const Results& results) {
    const std::vector<CallRow> rows = measured_rows(results, disturbed_settings());
    if (rows.empty()) {
        return {};
    }
    Target neighbour{"call p50 : floor p50, busy neighbour", Kind::at_most, 1.5};
    Target cold{"call p50 : floor p50, cold caches", Kind::at_most, 1.5};
    Target waking{"call p50 : floor-waking p50, cold caches", Kind::at_most, 1.5};
    for (const CallRow& row : rows) {
        (row.setting().group == "cold" ? cold : neighbour)
            .judge(row.quotient("orvane", "floor", "p50"), row.name());
        waking.judge(row.quotient("orvane", "floor-waking", "p50"), row.name());
    }
    std::vector<Target> targets{neighbour, cold, waking};
    for (const Target& target : targets_beside_others(rows)) {
        targets.push_back(target);
    }
    return {"### Call, disturbed\n\n" + figures_table(rows) + "\n" + ratios_table(rows) + "\n" +
                waking_table(rows),
            targets};
}

}  // namespace orvane::bench::report
