#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <stdio_ext.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <thread>

#include "pexa/osapi.h"

namespace {

/// Standard output leads into a pipe for as long as an object lives.
class OutputPipe {
public:
    OutputPipe() {
        std::fflush(stdout);
        EXPECT_EQ(pipe(ends_), 0);
        fcntl(ends_[0], F_SETFL, O_NONBLOCK);
        dup2(ends_[1], STDOUT_FILENO);
    }
    ~OutputPipe() {
        __fpurge(stdout);
        clearerr(stdout);
        dup2(real_, STDOUT_FILENO);
        for (const int descriptor : {real_, ends_[0], ends_[1]}) {
            close(descriptor);
        }
    }

    /// Leaves no room in the pipe.
    void fill() const {
        fcntl(ends_[1], F_SETFL, O_NONBLOCK);
        while (write(ends_[1], "x", 1) == 1) {
        }
        fcntl(ends_[1], F_SETFL, 0);
    }
    /// @return what is in the pipe, without what filled it
    std::string take() const {
        std::string taken;
        char byte = 0;
        while (read(ends_[0], &byte, 1) == 1) {
            taken += byte == 'x' ? "" : std::string(1, byte);
        }
        return taken;
    }
    void close_reader() {
        close(ends_[0]);
        ends_[0] = -1;
    }

private:
    int real_ = dup(STDOUT_FILENO);
    int ends_[2] = {};
};

constexpr struct {
    void (*enter)();
    void (*leave)();
} marks[] = {{QELOsapi_enterDeviceCall, QELOsapi_leaveDeviceCall},
             {QELOsapi_enterEngineCall, QELOsapi_leaveEngineCall}};

std::string note(int lost) {
    return "(" + std::to_string(lost) + " lines are missing: standard output was blocked)\n";
}

TEST(PrintedLine, IsDroppedAndCountedWhereItsThreadMustNotWait) {
    constexpr int lines = 200;
    const std::string line = std::string(99, 'l') + "\n";
    for (const auto& mark : marks) {
        const OutputPipe output;
        output.fill();
        mark.enter();
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

TEST(PrintedLine, IsCutToWhatAPipeTakesAtOnceWhereItsThreadMustNotWait) {
    const OutputPipe output;
    const std::string longer(5000, 'c');
    marks[1].enter();
    QELOsapi_printLine("%s\n", longer.c_str());
    QELOsapi_flushLines();
    marks[1].leave();
    EXPECT_EQ(output.take(), longer.substr(0, 4095) + "\n");
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
