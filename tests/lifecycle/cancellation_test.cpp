#include <pthread.h>

#include <chrono>
#include <thread>

#include "orvane/admin.h"
#include "pexa/subscription.h"
#include "tests/support/logger.hpp"
#include "tests/support/output_pipe.hpp"

namespace orvane::test {
namespace {

using std::chrono::microseconds;

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
