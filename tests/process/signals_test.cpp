#include <dirent.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <fstream>
#include <map>
#include <string>

#include "pexa/osapi.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

/// @return the signals that each other thread of the process blocks, by the kernel's thread id.
std::map<std::string, unsigned long long> masks_of_other_threads() {
    std::map<std::string, unsigned long long> masks;
    DIR* const tasks = opendir("/proc/self/task");
    while (const dirent* entry = readdir(tasks)) {
        const std::string id = entry->d_name;
        std::ifstream status("/proc/self/task/" + id + "/status");
        for (std::string word; status >> word;) {
            if (word == "SigBlk:" && status >> word && id != std::to_string(getpid())) {
                masks[id] = std::stoull(word, nullptr, 16);
            }
        }
    }
    closedir(tasks);
    return masks;
}

TEST(Signals, AreLeftToTheThreadsOfTheApplication) {
    const auto before = masks_of_other_threads();
    const RunningLogger logger;
    std::size_t count = 0;
    for (const auto& [thread, blocked] : masks_of_other_threads()) {
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

/// The logger that the handler logs with, and how often it has.
std::atomic<QEL_KX_Orvane*> logger_of_handler = nullptr;
std::atomic<int> handled = 0;

TEST(Signals, FindNoDeadLockInAHandlerThatLogs) {
    const RunningLogger logger;
    logger_of_handler = logger.get();
    handled = 0;
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
