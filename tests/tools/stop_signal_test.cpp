#include "tools/subcommands/stop_signal.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <future>
#include <thread>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

/// Never reacts to the first signal; ends with 1 if the second one does not end the process.
[[noreturn]] void be_stopped_twice(int signal) {
    StopSignal stop;
    std::promise<void> called;
    const auto interruption = stop.interrupt([&] { called.set_value(); });
    kill(getpid(), signal);
    called.get_future().wait();
    kill(getpid(), signal);
    std::this_thread::sleep_for(10s);
    std::_Exit(1);
}

/// Does not leave.
[[noreturn]] void be_done(int status) {
    StopSignal stop;
    stop.conclude(status);
    std::this_thread::sleep_for(60s);
    std::_Exit(1);
}

/// Is interrupted at the end that was set, although it would succeed.
[[noreturn]] void be_stopped_at_the_end() {
    StopSignal stop;
    stop.stop_at(std::chrono::system_clock::now() + 200ms, [] { std::fputs("expired\n", stderr); });
    std::promise<void> called;
    const auto interruption = stop.interrupt([&] { called.set_value(); });
    called.get_future().wait();
    std::_Exit(stop.requested() ? stop.conclude(0) : 2);
}

TEST(StopSignalDeathTest, StopsAtTheEndThatWasSetAsFailed) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(be_stopped_at_the_end(), testing::ExitedWithCode(1), "expired");
}

TEST(StopSignalDeathTest, EndsAProcessThatIsDoneAndDoesNotLeave) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(be_done(5), testing::ExitedWithCode(5), "");
}

TEST(StopSignalDeathTest, LetsTheSecondSignalEndAProcessThatHangs) {
    // The program is started anew, so that it has one thread when it blocks the signals.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const int signal : {SIGINT, SIGTERM}) {
        EXPECT_EXIT(be_stopped_twice(signal), testing::KilledBySignal(signal), "");
    }
}

}  // namespace
}  // namespace orvane::tools
