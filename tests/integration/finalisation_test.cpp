#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr std::chrono::seconds longest_cycle{30};
const std::string domain = std::to_string(ORVANE_TEST_DOMAIN);

std::vector<std::string> peer(const std::string& mode, int cycles = 0) {
    return {ORVANE_FINALISING_PEER, mode, domain, std::to_string(cycles)};
}

bool has_line(const Output& output, const std::string& line) {
    return std::find(output.out.begin(), output.out.end(), line) != output.out.end();
}

/// The end of what the process printed, or all since its watchdog or a sanitizer spoke.
std::string last_lines(ChildProcess& process) {
    constexpr std::size_t longest = 4000;
    const std::string text = process.transcript();
    const std::size_t stacks =
        std::min(text.find("nothing has gone on"), text.find("WARNING: ThreadSanitizer"));
    const std::size_t start = text.size() > longest ? text.size() - longest : 0;
    return text.substr(std::min(stacks, start));
}

void expect_all_cycles(ChildProcess& process, int cycles) {
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

/// Remote tools come and go meanwhile, and the middleware reports all it can to the device.
TEST_F(Finalisation, EndsWhileThreadsLogAndRemoteToolsSendCommands) {
    constexpr int cycles = ORVANE_FINALISING_CYCLES;
    ChildProcess visitor{{ORVANE_VISITING_PEER, domain}};
    ChildProcess process{peer("threads", cycles)};
    {
        Viewer viewer{ORVANE_TEST_DOMAIN};
        EXPECT_TRUE(viewer.wait_for(1, "thread", longest_cycle));
        EXPECT_TRUE(viewer.wait_for(1, "com.qel.pexa.config.Logger", longest_cycle));
    }
    expect_all_cycles(process, cycles);
    EXPECT_TRUE(has_line(visitor.output(), "> visited")) << last_lines(visitor);
    visitor.close_input();
    EXPECT_EQ(visitor.wait_for_end(longest_cycle), "exit 0") << last_lines(visitor);
    std::cout << last_lines(visitor);
}

TEST_F(Finalisation, EndsWhileListenersOfASharedParticipantLog) {
    constexpr int cycles = 50;
    ChildProcess process{peer("listener", cycles)};
    expect_all_cycles(process, cycles);
}

TEST(Watchdog, PrintsTheStacksOfAllThreadsOfAProgramThatHangs) {
    ChildProcess process{peer("hang")};
    EXPECT_EQ(process.wait_for_end(longest_cycle), "signal 6");
    const std::string transcript = process.transcript();
    for (const char* expected : {"nothing has gone on", "finalising_peer", "recvUC", "libddsc"}) {
        EXPECT_NE(transcript.find(expected), std::string::npos) << expected << transcript;
    }
}

}  // namespace
}  // namespace orvane::tests
