#include "tools/subcommands/stop_signal.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <thread>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

/// Stops a process by a signal and ends it with 0 if the action was called once, in time.
[[noreturn]] void be_stopped_by(int signal) {
    StopSignal stop;
    std::promise<void> called;
    bool in_time = false;
    {
        const std::jthread watcher = stop.watch([&] { called.set_value(); });
        kill(getpid(), signal);
        in_time = called.get_future().wait_for(10s) == std::future_status::ready;
    }
    std::_Exit(in_time && stop.requested() ? 0 : 1);
}

/// Never reacts to the first signal; ends with 1 if the second one does not end the process.
[[noreturn]] void be_stopped_twice(int signal) {
    StopSignal stop;
    std::promise<void> called;
    const std::jthread watcher = stop.watch([&] { called.set_value(); });
    kill(getpid(), signal);
    called.get_future().wait();
    kill(getpid(), signal);
    std::this_thread::sleep_for(10s);
    std::_Exit(1);
}

class StopSignalDeathTest : public testing::TestWithParam<int> {
protected:
    // The program is started anew, so that it has one thread when it blocks the signals.
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_P(StopSignalDeathTest, CallsTheActionAtTheFirstSignal) {
    EXPECT_EXIT(be_stopped_by(GetParam()), testing::ExitedWithCode(0), "");
}

TEST_P(StopSignalDeathTest, LetsTheSecondSignalEndAProcessThatHangs) {
    EXPECT_EXIT(be_stopped_twice(GetParam()), testing::KilledBySignal(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(Signals, StopSignalDeathTest, testing::Values(SIGINT, SIGTERM));

TEST(StopSignal, EndsItsThreadWithoutASignal) {
    StopSignal stop;
    auto ended = std::async(std::launch::async,
                            [&] { const std::jthread watcher = stop.watch([] { FAIL(); }); });
    EXPECT_EQ(ended.wait_for(10s), std::future_status::ready);
    EXPECT_FALSE(stop.requested());
}

}  // namespace
}  // namespace orvane::tools
