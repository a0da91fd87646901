// How the figures of several runs of the benchmarks become one report.
#include "bench/report/report.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/report/run.hpp"

namespace orvane::bench::report {
namespace {

using nlohmann::json;

json call(const char* subject, double p50, const char* group = "call") {
    return {
        {"group", group}, {"gap_us", 0},       {"threads", 1},       {"reader", false},
        {"length", 60},   {"filtered", false}, {"subject", subject}, {"figures", {{"p50", p50}}}};
}

Run run(const char* begun, std::vector<json> rows, const char* machine = "one machine") {
    return {.begun = begun,
            .kind = "complete",
            .commit = "abcdef0",
            .sources = "these",
            .load = "0.00",
            .machine = machine,
            .rows = std::move(rows)};
}

::testing::AssertionResult has_line(const std::string& text, const std::string& begin) {
    return text.find('\n' + begin) != std::string::npos
               ? ::testing::AssertionSuccess()
               : ::testing::AssertionFailure() << "no line begins with " << begin << " in\n"
                                               << text;
}

class BenchReport : public ::testing::Test {
protected:
    BenchReport()
        : folder_{std::filesystem::path{::testing::TempDir()} /
                  ::testing::UnitTest::GetInstance()->current_test_info()->name()} {
        std::filesystem::remove_all(folder_);
    }
    ~BenchReport() override { std::filesystem::remove_all(folder_); }

    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
};

TEST_F(BenchReport, JudgesByTheMedianOfRatiosWithinRunsAndNamesTheWorst) {
    // The ratio of the medians would be 2.
    const std::string text = report({.runs = {
                                         run("1", {call("orvane", 100), call("floor", 100)}),
                                         run("2", {call("orvane", 200), call("floor", 50)}),
                                         run("3", {call("orvane", 300), call("floor", 250)}),
                                     }});
    EXPECT_TRUE(has_line(text,
                         "| call p50 : floor p50, one thread, gaps to 20 µs | ≤ 1.5 | 1.20 | "
                         "0 µs, 1 thread | 4.00 | 0 µs, 1 thread, run 2 | 3 | met |"));
}

TEST_F(BenchReport, TakesTheMeanOfTwoMiddleRunsAndLeavesOutWhatARunHasNotMeasured) {
    const std::string text =
        report({.runs = {
                    run("1", {call("orvane", 100), call("floor", 100), call("orvane", 70, "cold")}),
                    run("2", {call("orvane", 50, "cold"), call("floor", 30, "cold")}),
                    run("3", {call("orvane", 300), call("floor", 100), call("dlt", 300)}),
                }});
    EXPECT_TRUE(has_line(text,
                         "| call p50 : floor p50, one thread, gaps to 20 µs | ≤ 1.5 | 2.00 | "
                         "0 µs, 1 thread | 3.00 | 0 µs, 1 thread, run 3 | 2 | **missed** |"));
    EXPECT_TRUE(has_line(text,
                         "| DLT p50 : call p50 | ≥ 5 | 1.00 | 0 µs, 1 thread | 1.00 | "
                         "0 µs, 1 thread, run 3 | 1 | **missed** |"));
    EXPECT_TRUE(has_line(text, "| call p50 : spdlog p50 | ≤ 1 |  |  |  |  | 0 | not measured |"));
    EXPECT_TRUE(has_line(text, "| call p50 : floor p50, cold caches | ≤ 1.5 | 1.67 |"));
    EXPECT_TRUE(has_line(text, "| 2 | 2 | complete | abcdef0 | 0.00 |"));
}

TEST_F(BenchReport, DoesNotMixTheFiguresOfMachines) {
    const std::string text =
        report({.runs = {
                    run("1", {call("orvane", 100), call("floor", 100)}),
                    run("2", {call("orvane", 500), call("floor", 100)}, "another machine"),
                    run("3", {call("orvane", 120), call("floor", 100)}),
                }});
    const std::size_t second = text.find("\nanother machine:");
    ASSERT_NE(second, std::string::npos);
    const std::string target = "| call p50 : floor p50, one thread, gaps to 20 µs | ≤ 1.5 | ";
    EXPECT_TRUE(has_line(text.substr(0, second), target + "1.10 |"));
    EXPECT_TRUE(has_line(text.substr(second), target + "5.00 |"));
}

TEST_F(BenchReport, ReadsBackTheRunsOfTheNewestSourcesAndCountsTheOthers) {
    auto old = run("2026-11-22T10:00:00Z", {call("orvane", 1)});
    old.sources = "others";
    const auto first = run("2026-11-23T09:00:00Z", {call("orvane", 100)});
    const auto second = run("2026-11-23T10:00:00Z", {call("orvane", 200)});
    for (const auto& kept : {second, old, first}) {
        add_run(folder(), kept);
    }
    const Series series = newest_series(folder());
    ASSERT_EQ(series.runs.size(), 2U);
    EXPECT_EQ(to_text(series.runs[0]), to_text(first));
    EXPECT_EQ(to_text(series.runs[1]), to_text(second));
    EXPECT_EQ(series.others, 1U);
    EXPECT_TRUE(
        has_line(report(series), "Runs of other sources, which are not in these figures: 1."));
    std::ofstream{folder() / "torn.json"} << to_text(old).substr(0, 40);
    EXPECT_THROW(newest_series(folder()), std::runtime_error);
}

TEST_F(BenchReport, MakesOneRowOfRepetitionsOfWhichSomeLackAFigure) {
    std::filesystem::create_directories(folder());
    const std::filesystem::path results = folder() / "results.jsonl";
    std::ofstream{results} << R"({"group":"rest","figures":{"create_ms":3,"rss_kib":10}})" << '\n'
                           << R"({"group":"call","figures":{"p50":1}})" << '\n'
                           << R"({"group":"rest","figures":{"create_ms":1}})" << '\n'
                           << R"({"group":"rest","figures":{"create_ms":2,"rss_kib":20}})" << '\n';
    EXPECT_EQ(
        merge_repetitions(results),
        json::parse(R"([{"group":"rest","figures":{"create_ms":2,"rss_kib":15,"repetitions":3}},
                              {"group":"call","figures":{"p50":1,"repetitions":1}}])"));
}

}  // namespace
}  // namespace orvane::bench::report
