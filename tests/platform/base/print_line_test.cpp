#include <gtest/gtest.h>
#include <pthread.h>

#include <csignal>
#include <string>
#include <thread>

#include "pexa/osapi.h"
#include "tests/support/output_pipe.hpp"

namespace {

using orvane::test::OutputPipe;

constexpr struct {
    void (*enter)();
    void (*leave)();
} marks[] = {{QELOsapi_enterDeviceCall, QELOsapi_leaveDeviceCall},
             {QELOsapi_enterEngineCall, QELOsapi_leaveEngineCall}};

std::string note(int lost) {
    return "(" + std::to_string(lost) + " lines are missing: standard output was blocked)\n";
}

TEST(PrintedLine, IsKeptForItsThreadUntilItIsTaken) {
    const OutputPipe output;
    QELOsapi_takeLines(nullptr, 0);
    char lines[600] = "";
    std::thread([] { QELOsapi_printLine("of another thread\n"); }).join();
    QELOsapi_printLine("one\n");
    QELOsapi_printLine("%s\n", "two");
    EXPECT_EQ(QELOsapi_takeLines(lines, sizeof lines), 8U);
    EXPECT_STREQ(lines, "one\ntwo\n");
    EXPECT_EQ(QELOsapi_takeLines(lines, sizeof lines), 0U);
    EXPECT_STREQ(lines, "");
    QELOsapi_printLine("three\n");
    EXPECT_EQ(QELOsapi_takeLines(lines, 4), 3U);
    EXPECT_STREQ(lines, "thr");
    const std::string longer(500, 'c');
    for (int i = 0; i < 3; ++i) {
        QELOsapi_printLine("%s\n", longer.c_str());
    }
    EXPECT_EQ(QELOsapi_takeLines(lines, sizeof lines), 511U);
    EXPECT_EQ(lines, longer + "\n" + longer.substr(0, 10));
}

TEST(PrintedLine, IsCutToWhatAPipeTakesAtOnceOrDroppedAndCountedWhereItsThreadMustNotWait) {
    constexpr int lines = 200;
    const std::string line = std::string(99, 'l') + "\n";
    const std::string longer(5000, 'c');
    for (const auto& mark : marks) {
        const OutputPipe output;
        mark.enter();
        QELOsapi_printLine("%s\n", longer.c_str());
        QELOsapi_flushLines();
        EXPECT_EQ(output.take(), longer.substr(0, 4095) + "\n");
        output.fill();
        for (int i = 0; i < lines; ++i) {
            QELOsapi_printLine("%s", line.c_str());
        }
        QELOsapi_flushLines();
        mark.leave();
        output.take();
        QELOsapi_printLine("last\n");
        QELOsapi_flushLines();
        std::string taken = output.take();
        int arrived = 0;
        for (; taken.starts_with(line); ++arrived) {
            taken.erase(0, line.size());
        }
        EXPECT_EQ(taken, note(lines - arrived) + "last\n");
    }
}

TEST(PrintedLine, IsDroppedWhileAnotherThreadWaitsForStandardOutput) {
    const OutputPipe output;
    output.fill();
    const std::string longer(10'000, 'w');
    std::thread waiting([&] { QELOsapi_printLine("%s\n", longer.c_str()); });
    while (ftrylockfile(stdout) == 0) {
        funlockfile(stdout);
        std::this_thread::yield();
    }
    marks[0].enter();
    QELOsapi_printLine("dropped\n");
    marks[0].leave();
    std::string taken;
    while (taken.size() <= longer.size() / 2) {
        taken += output.take();
    }
    waiting.join();
    QELOsapi_printLine("last\n");
    QELOsapi_flushLines();
    EXPECT_EQ(taken + output.take(), longer + "\n" + note(1) + "last\n");
}

TEST(PrintedLine, RaisesNoSignalWhenNobodyReadsThePipe) {
    OutputPipe output;
    output.close_reader();
    const std::string longer(10'000, 'c');
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    const auto is_pending_after_line = [&] {
        QELOsapi_printLine("%s\n", longer.c_str());
        sigset_t pending;
        return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
    };
    EXPECT_FALSE(is_pending_after_line());
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    EXPECT_FALSE(is_pending_after_line());
    pthread_kill(pthread_self(), SIGPIPE);
    EXPECT_TRUE(is_pending_after_line()) << "the application's own signal";
    int signal = 0;
    sigwait(&set, &signal);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace
