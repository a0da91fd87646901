#include <algorithm>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

constexpr std::chrono::seconds longest_cycle{30};

/// The end of the transcript, or all since a sanitizer spoke.
std::string last_lines(ChildProcess& process) {
    constexpr std::size_t longest = 4000;
    const std::string text = process.transcript();
    const std::size_t start = text.size() > longest ? text.size() - longest : 0;
    return text.substr(std::min(text.find("WARNING: ThreadSanitizer"), start));
}

void expect_all_cycles(const std::string& mode, int cycles) {
    ChildProcess process{peer_command(mode, {std::to_string(cycles)})};
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        ASSERT_TRUE(process.wait_for_line("> cycle " + std::to_string(cycle), longest_cycle))
            << "cycle " << cycle << " did not end within " << longest_cycle.count() << " s\n"
            << last_lines(process);
    }
    EXPECT_EQ(process.wait_for_end(longest_cycle), "exit 0") << last_lines(process);
}

void expect_end(ChildProcess& process) {
    process.close_input();
    EXPECT_EQ(process.wait_for_end(longest_cycle), "exit 0") << last_lines(process);
}

class Finalisation : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(trigger_.wait_for_line("> triggering")) << trigger_.transcript();
    }
    void TearDown() override { expect_end(trigger_); }

private:
    /// Makes the threads of the peer's engine work all the time.
    ChildProcess trigger_{peer_command("trigger")};
};

/// Remote tools come and go meanwhile, the middleware reports all it can to the device, signal
/// handlers log, and the process forks.
TEST_F(Finalisation, EndsWhileThreadsLogAndRemoteToolsSendCommands) {
    ChildProcess visitor{peer_command("visit")};
    Viewer viewer;
    expect_all_cycles("threads", ORVANE_FINALISING_CYCLES);
    EXPECT_TRUE(viewer.wait_for(1, "fire", longest_cycle));
    EXPECT_TRUE(viewer.wait_for(1, "com.qel.pexa.config.Logger", longest_cycle));
    EXPECT_TRUE(visitor.wait_for_line("> visited")) << last_lines(visitor);
    expect_end(visitor);
}

TEST_F(Finalisation, EndsWhileListenersOfASharedParticipantLog) {
    expect_all_cycles("listener", 50);
}

}  // namespace
}  // namespace orvane::tests
