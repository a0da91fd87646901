#include <signal.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"

namespace orvane::test {
namespace {

/// @return the signals that each thread of the process blocks, by the kernel's thread id.
std::map<std::string, unsigned long long> blocked_signals() {
    std::map<std::string, unsigned long long> masks;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream status(task.path() / "status");
        for (std::string word; status >> word;) {
            if (word == "SigBlk:") {
                status >> std::hex >> masks[task.path().filename()];
            }
        }
    }
    return masks;
}

TEST(Signals, AreLeftToTheThreadsOfTheApplication) {
    const auto before = blocked_signals();
    const RunningLogger logger;
    std::size_t count = 0;
    for (const auto& [thread, blocked] : blocked_signals()) {
        if (before.contains(thread)) {
            continue;
        }
        ++count;
        for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGCHLD, SIGPIPE, SIGALRM, SIGUSR1}) {
            EXPECT_TRUE((blocked >> (number - 1) & 1U) != 0) << thread << ' ' << strsignal(number);
        }
    }
    EXPECT_GT(count, 1U) << "the write thread and those of the engine";
}

TEST(Signals, FindNoDeadLockInAHandlerThatLogs) {
    const RunningLogger logger;
    static std::atomic<QEL_KX_Orvane*> logger_of_handler = logger.get();
    static std::atomic<int> handled = 0;
    struct sigaction action {};
    action.sa_handler = [](int) {
        QEL_KX_Orvane_info(logger_of_handler, "from a handler");
        ++handled;
    };
    ASSERT_EQ(sigaction(SIGUSR1, &action, nullptr), 0);
    // In the middle of the change of the queue, where a second one would ruin it.
    const Before during_push("MOSKFastBufferPool_getBuffer", [] {
        raise(SIGUSR1);
        errno = EAGAIN;
    });
    errno = 0;
    const Calls pushes("MOSKFastBufferPool_getBuffer");
    QEL_KX_Orvane_info(logger.get(), "interrupted");
    EXPECT_EQ(errno, 0) << "stays what it was";
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(pushes.count(), 1) << "the message of the handler is given up";
    signal(SIGUSR1, SIG_DFL);
}

}  // namespace
}  // namespace orvane::test
