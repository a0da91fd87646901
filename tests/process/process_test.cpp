// What the logger does to the process that it lives in.
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <thread>
#include <vector>

#include "orvane/admin.h"
#include "pexa/subscription.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/output_pipe.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

using std::chrono::microseconds;

/// Runs @p action in a child process, which a signal ends if the action takes too long.
/// @return whether the action returned true
bool succeeds_in_child(const std::function<bool()>& action) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(static_cast<unsigned>(patience.sec));
        const bool succeeded = action();
        std::fflush(stdout);
        _exit(succeeded ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// @return threads that log for as long as they live.
std::vector<std::jthread> start_logging(QEL_KX_Orvane* logger) {
    std::vector<std::jthread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([logger](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                QEL_KX_Orvane_info(logger, "from a thread that no child has");
            }
        });
    }
    return threads;
}

const std::string refusal =
    line("QEL_Orvane_getInstance",
         "No logger in a process that was forked while DDS was in use: finalize before fork, or "
         "execute a program in the child");

TEST(Fork, WhileThreadsLogLetsProgramsStartAndTheChildHaveADeadLoggerThatNeverHangs) {
    const RunningLogger logger;
    const auto threads = start_logging(logger.get());
    const auto child = [&] {
        QEL_KX_Orvane_fatal(logger.get(), "nobody sees it");
        const bool refused =
            output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }) == refusal;
        return refused && QEL_KX_Orvane_isOrvaneRunning() == 0 &&
               QEL_KX_Orvane_finalizeInstance() == DDS_RETCODE_OK &&
               QEL_KX_Orvane_finalizeInstance() == DDS_RETCODE_OK && QELOsapi_global_lock() == 0 &&
               QELOsapi_global_unlock() == 0 && !testing::Test::HasFailure();
    };
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(succeeds_in_child(child)) << round;
        // NOLINTNEXTLINE(cert-env33-c): it is what applications do
        ASSERT_EQ(std::system("true"), 0);
        ASSERT_TRUE(succeeds_in_child([] { return execl("/bin/true", "true", nullptr) == 0; }));
    }
    EXPECT_TRUE(succeeds_in_child([&] { return succeeds_in_child(child); })) << "a grandchild";
    EXPECT_EQ(QEL_KX_Orvane_getInstance(), logger.get()) << "the parent goes on";
}

TEST(Fork, LeavesTheStatisticsToTheParent) {
    const Node viewer;
    DDS_DataReader* numbers = viewer.reader<QEL_KX_ADMIN_Statistics>();
    ask_for_statistics("true");
    constexpr int rounds = 5;
    {
        const RunningLogger logger;
        ask_for_statistics(nullptr);
        for (int round = 0; round < rounds; ++round) {
            EXPECT_TRUE(succeeds_in_child([&] {
                const Calls writes("DDS_DataWriter_write_untypedI");
                QEL_KX_Orvane_error(logger.get(), "nobody sees it");
                return QEL_KX_Orvane_finalizeInstance() == DDS_RETCODE_OK && writes.count() == 0;
            }));
            QEL_KX_Orvane_error(logger.get(), "a message");
        }
    }
    const auto last = last_statistics(numbers);
    ASSERT_NE(last.sample, nullptr);
    EXPECT_EQ(last.sample->accepted.low, rounds);
}

TEST(Fork, MakesTheChildRefuseWhatWouldNeedTheParticipantsOfTheParent) {
    const Node node;
    EXPECT_TRUE(succeeds_in_child([&] {
        return output_of([] { QEL_KX_Orvane_getInstance(); }) == refusal &&
               DDS_DomainParticipant_delete_contained_entities(node.participant()) ==
                   DDS_RETCODE_PRECONDITION_NOT_MET;
    }));
}

TEST(Fork, LetsEachChildStartALoggerAfterTheParentHasFinalisedItsOwn) {
    { const RunningLogger logger; }
    const auto child = [] {
        const RunningLogger logger;
        QEL_KX_Orvane_info(logger.get(), "from a child");
        return logger.get() != nullptr && !testing::Test::HasFailure();
    };
    EXPECT_TRUE(succeeds_in_child(child));
    EXPECT_TRUE(succeeds_in_child([&] { return child() && succeeds_in_child(child); }));
    const RunningLogger logger;
    EXPECT_NE(logger.get(), nullptr);
}

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

/// Repeats @p work on a thread until that is cancelled, at as many moments as asked.
template <typename Work>
void cancel_during(Work work, int moments, microseconds between) {
    const auto repeat = [](void* repeated) -> void* {
        for (;;) {
            (*static_cast<Work*>(repeated))();
            pthread_testcancel();
        }
    };
    for (int moment = 0; moment < moments; ++moment) {
        pthread_t thread{};
        ASSERT_EQ(pthread_create(&thread, nullptr, repeat, &work), 0);
        std::this_thread::sleep_for(moment * between);
        pthread_cancel(thread);
        void* result = nullptr;
        pthread_join(thread, &result);
        EXPECT_EQ(result, PTHREAD_CANCELED);
    }
}

TEST(Cancellation, OfAThreadThatEchoesLeavesTheLockToOthers) {
    const OutputPipe output;
    std::jthread slow_reader([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            output.take();
            std::this_thread::sleep_for(microseconds(500));
        }
    });
    Options options = make_options();
    QEL_KX_Options_setEchoToStdout(options.get(), 1);
    const RunningLogger logger(std::move(options));
    const std::string text(500, 't');
    cancel_during([&] { QEL_KX_Orvane_error(logger.get(), text.c_str()); }, 50, microseconds(97));
    EXPECT_EQ(QEL_KX_Orvane_error(logger.get(), "still alive"), DDS_RETCODE_OK);
}

TEST(Cancellation, OfAThreadThatCreatesAndFinalisesLeavesAWholeLoggerOrNone) {
    const Options options = make_options();
    const auto live_and_end = [&] {
        QEL_KX_Orvane_setOptions(options.get());
        QEL_KX_Orvane_error(QEL_KX_Orvane_getInstance(), "text");
        QEL_KX_Orvane_finalizeInstance();
    };
    cancel_during(live_and_end, 15, microseconds(3001));
    live_and_end();
    const RunningLogger logger;
    EXPECT_EQ(logger->state->state, QEL_KX_STATE_OPERATIONAL);
}

TEST(Cancellation, OfAThreadThatWaitsTakesEffectAndEndsTheWait) {
    DDS_WaitSet* set = DDS_WaitSet_new();
    DDS_GuardCondition* guard = DDS_GuardCondition_new();
    DDS_WaitSet_attach_condition(set, DDS_GuardCondition_as_condition(guard));
    DDS_ConditionSeq active{};
    cancel_during([&] { DDS_WaitSet_wait(set, &active, &DDS_DURATION_INFINITE); }, 5,
                  microseconds(20'000));
    constexpr DDS_Duration_t several_steps = {0, 250'000'000};
    EXPECT_EQ(DDS_WaitSet_wait(set, &active, &several_steps), DDS_RETCODE_TIMEOUT);
    EXPECT_EQ(DDS_WaitSet_delete(set), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_GuardCondition_delete(guard), DDS_RETCODE_OK);
}

}  // namespace
}  // namespace orvane::test
