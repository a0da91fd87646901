#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr std::chrono::seconds longest_cycle{30};
constexpr int cycles = 50;

std::vector<std::string> peer(const std::string& mode) {
    return {ORVANE_FINALISING_PEER, mode, std::to_string(ORVANE_TEST_DOMAIN),
            std::to_string(cycles)};
}

bool has_line(const Output& output, const std::string& line) {
    return std::find(output.out.begin(), output.out.end(), line) != output.out.end();
}

/// The end of what the process printed.
std::string last_lines(ChildProcess& process) {
    constexpr std::size_t longest = 4000;
    const std::string text = process.transcript();
    return text.size() > longest ? "…" + text.substr(text.size() - longest) : text;
}

void expect_all_cycles(ChildProcess& process) {
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        const std::string line = "> cycle " + std::to_string(cycle);
        ASSERT_TRUE(process.wait_until([&](const Output& output) { return has_line(output, line); },
                                       longest_cycle))
            << "cycle " << cycle << " did not end within " << longest_cycle.count() << " s\n"
            << last_lines(process);
    }
    EXPECT_EQ(process.wait_for_end(longest_cycle), "exit 0") << last_lines(process);
}

class Finalisation : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(puller_.wait_until(
            [](const Output& output) { return has_line(output, "> pulling"); }, longest_cycle))
            << puller_.transcript();
    }

    void TearDown() override {
        puller_.close_input();
        EXPECT_EQ(puller_.wait_for_end(longest_cycle), "exit 0") << last_lines(puller_);
    }

private:
    /// Makes the threads of the peer's engine work all the time.
    ChildProcess puller_{peer("pull")};
};

TEST_F(Finalisation, EndsWhileThreadsLogAndTheMiddlewareReportsAllItCan) {
    Viewer viewer{ORVANE_TEST_DOMAIN};
    ChildProcess process{peer("threads")};
    expect_all_cycles(process);
    EXPECT_TRUE(viewer.wait_for(1, "thread", longest_cycle));
    EXPECT_TRUE(viewer.wait_for(1, "com.qel.pexa.config.Logger", longest_cycle));
}

TEST_F(Finalisation, EndsWhileListenersOfASharedParticipantLog) {
    ChildProcess process{peer("listener")};
    expect_all_cycles(process);
}

}  // namespace
}  // namespace orvane::tests
