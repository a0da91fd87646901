#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>

#include "core/logging_lock.hpp"
#include "orvane/core.h"
#include "pexa/osapi.h"
#include "tests/core/faults.hpp"
#include "tests/core/hand_made_instance.hpp"
#include "tests/core/output.hpp"

namespace {

using orvane::core::LifecycleChange;
using orvane::test::Fault;
using orvane::test::FixedTime;
using orvane::test::HandMadeInstance;
using orvane::test::output_of;

constexpr DDS_Long last_second = 2147483647;

std::string line(const char* message, const char* level = "Error",
                 const char* operation = "logMessageWithParams") {
    return std::string("KX ") + level + ": QEL_KX_Orvane_" + operation + ": " + message + "\n";
}

TEST(Logging, QueuesAMessageOfEachLevel) {
    struct Call {
        DDS_ReturnCode_t (*log)(QEL_KX_Orvane*, const char*);
        DDS_Long level;
    };
    HandMadeInstance instance;
    instance.set_filter_level(QEL_KX_LEVEL_TRACE);
    for (const Call& call : {Call{QEL_KX_Orvane_fatal, 100}, Call{QEL_KX_Orvane_severe, 200},
                             Call{QEL_KX_Orvane_error, 300}, Call{QEL_KX_Orvane_warning, 400},
                             Call{QEL_KX_Orvane_notice, 500}, Call{QEL_KX_Orvane_info, 600},
                             Call{QEL_KX_Orvane_debug, 700}, Call{QEL_KX_Orvane_trace, 800}}) {
        const FixedTime now({1700000000, 0});
        EXPECT_EQ(output_of([&] { EXPECT_EQ(call.log(instance.get(), "text"), 0); }), "");
        const auto queued = instance.pop();
        ASSERT_TRUE(queued.has_value());
        EXPECT_EQ(queued->level, call.level);
        EXPECT_EQ(queued->message, "text");
        EXPECT_EQ(queued->category, "");
        EXPECT_EQ(queued->host_id, HandMadeInstance::host_id);
        EXPECT_EQ(queued->app_id, HandMadeInstance::app_id);
        EXPECT_EQ(queued->timestamp.sec, 1700000000);
        EXPECT_EQ(queued->timestamp.nanosec, 0U);
    }
}

TEST(Logging, QueuesWhatIsAtMostAtTheFilterLevelWhileTheStateIsOperational) {
    struct Case {
        QEL_KX_ADMIN_StateKind state;
        DDS_Long filter_level;
        DDS_Long level;
        bool queued;
    };
    constexpr Case cases[] = {
        {QEL_KX_STATE_OPERATIONAL, 600, 600, true},
        {QEL_KX_STATE_OPERATIONAL, 600, 601, false},
        {QEL_KX_STATE_OPERATIONAL, 600, 100, true},
        {QEL_KX_STATE_OPERATIONAL, 0, 100, false},
        {QEL_KX_STATE_OPERATIONAL, 0, 0, true},
        {QEL_KX_STATE_OPERATIONAL, 0, -5, true},
        {QEL_KX_STATE_OPERATIONAL, last_second, last_second, true},
        {QEL_KX_STATE_INITIALIZING, 600, 100, false},
        {QEL_KX_STATE_NONOPERATIONAL, 600, 100, false},
    };
    HandMadeInstance instance;
    for (const Case& each : cases) {
        instance->state->state = each.state;
        instance.set_filter_level(each.filter_level);
        EXPECT_EQ(QEL_KX_Orvane_log(instance.get(), each.level, "text"), DDS_RETCODE_OK);
        EXPECT_EQ(instance.pop().has_value(), each.queued)
            << each.state << " " << each.filter_level << " " << each.level;
    }
}

TEST(Logging, EchoesWhatTheFilterOrTheStateStopsToo) {
    struct Case {
        QELBool echo;
        const char* message;
        DDS_Long level;
        const char* output;
    };
    constexpr Case cases[] = {
        {1, "hello", 600, "KX Info: : hello\n"},
        {1, "hello\n", 600, "KX Info: : hello\n"},
        {1, "hello", -5, "KX Silent: : hello\n"},
        {1, "hello", 800, "KX Trace: : hello\n"},
        {1, "", 600, ""},
        {0, "hello", 600, ""},
        {2, "hello", 600, ""},
        {2, "hello", 800, ""},
    };
    HandMadeInstance instance;
    for (const QEL_KX_ADMIN_StateKind state :
         {QEL_KX_STATE_OPERATIONAL, QEL_KX_STATE_NONOPERATIONAL}) {
        instance->state->state = state;
        for (const Case& each : cases) {
            QEL_KX_Options_setEchoToStdout(instance->options, each.echo);
            EXPECT_EQ(
                output_of([&] { QEL_KX_Orvane_log(instance.get(), each.level, each.message); }),
                each.output);
            const bool passes = state == QEL_KX_STATE_OPERATIONAL && each.level <= 600;
            EXPECT_EQ(instance.pop().has_value(), passes) << each.level << each.message;
        }
    }
}

TEST(Logging, RefusesParametersThatAreIncomplete) {
    struct Case {
        QEL_KX_LogMessageParams params;
        const char* report;
    };
    constexpr Case cases[] = {
        {{300, nullptr, nullptr, {-1, 0}}, "Message to be logged is NULL"},
        {{300, "text", nullptr, {-1, 0}}, "Message category is NULL"},
        {{300, "text", "", {-1, 0}}, "Invalid message timestamp"},
    };
    HandMadeInstance instance;
    QEL_KX_Options_setEchoToStdout(instance->options, 1);
    for (QEL_KX_Orvane* logger : {instance.get(), static_cast<QEL_KX_Orvane*>(nullptr)}) {
        for (const Case& each : cases) {
            EXPECT_EQ(output_of([&] {
                          EXPECT_EQ(QEL_KX_Orvane_logMessageWithParams(logger, &each.params), 0);
                      }),
                      line(each.report));
        }
        EXPECT_EQ(output_of([&] { QEL_KX_Orvane_logMessageWithParams(logger, nullptr); }),
                  line("Message params is NULL"));
        EXPECT_EQ(output_of([&] { QEL_KX_Orvane_info(logger, nullptr); }),
                  line("Message to be logged is NULL"));
    }
    EXPECT_FALSE(instance.pop().has_value());
    // Every refusal has given the lock back.
    EXPECT_NE(QELOsapi_global_unlock(), 0);
}

TEST(Logging, IgnoresAPointerThatIsNotTheInstance) {
    HandMadeInstance instance;
    QEL_KX_Options_setEchoToStdout(instance->options, 1);
    // An address at which there is nothing.
    auto* stale = reinterpret_cast<QEL_KX_Orvane*>(alignof(QEL_KX_Orvane));
    const Fault clock("QELSystemClock_getTime");
    for (QEL_KX_Orvane* logger : {stale, static_cast<QEL_KX_Orvane*>(nullptr)}) {
        EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Orvane_fatal(logger, "text"), 0); }), "");
    }
    EXPECT_FALSE(clock.has_struck());
    EXPECT_FALSE(instance.pop().has_value());
}

struct Failure {
    const char* function;
    bool queued;
    std::string output;
};

TEST(Logging, ReportsAFailureAndReturnsSuccess) {
    const Failure failures[] = {
        {"QELSystemClock_getTime", false,
         line("Unable to get current Time from internal clock", "Error",
              "logMessageWithLevelCategory")},
        {"QELOsapi_global_lockUnless", false,
         line("Unable to lock: It is not safe to log message")},
        {"QELOsapiThread_getCurrentThreadID", false,
         line("Unable to get current thread Id, message missed", "Warning")},
        {"QELOsapi_global_unlock", true, line("Unable to unlock when logging message.")},
    };
    HandMadeInstance instance;
    for (const Failure& failure : failures) {
        const Fault fault(failure.function);
        EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Orvane_fatal(instance.get(), "text"), 0); }),
                  failure.output);
        EXPECT_EQ(instance.pop().has_value(), failure.queued) << failure.output;
    }
}

TEST(Logging, DropsWhatTheWriteThreadLogs) {
    HandMadeInstance instance;
    QEL_KX_Options_setEchoToStdout(instance->options, 1);
    instance->logMessageWriteThread->threadId = QELOsapiThread_getCurrentThreadID();
    EXPECT_EQ(output_of([&] { QEL_KX_Orvane_fatal(instance.get(), "text"); }), "");
    EXPECT_FALSE(instance.pop().has_value());
}

/// Holds the global lock, on a thread of its own, as long as it lives.
class Holder {
public:
    Holder() {
        std::promise<void> held;
        thread_ = std::jthread([&held, release = release_.get_future()]() mutable {
            EXPECT_EQ(QELOsapi_global_lock(), 0);
            held.set_value();
            release.wait();
            EXPECT_EQ(QELOsapi_global_unlock(), 0);
        });
        held.get_future().wait();
    }
    ~Holder() { release_.set_value(); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

private:
    std::promise<void> release_;
    std::jthread thread_;
};

TEST(Logging, GivesUpSilentlyWhileTheInstanceIsBuiltOrTakenDown) {
    HandMadeInstance instance;
    const Holder holder;
    const LifecycleChange change;
    EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Orvane_fatal(instance.get(), "text"), 0); }), "");
    EXPECT_FALSE(instance.pop().has_value());
}

TEST(Logging, GivesUpWithAReportInsideADeviceCallWhenSomebodyKeepsTheLock) {
    HandMadeInstance instance;
    const Holder holder;
    QELOsapi_enterDeviceCall();
    EXPECT_EQ(output_of([&] { QEL_KX_Orvane_fatal(instance.get(), "text"); }),
              line("Unable to lock: It is not safe to log message"));
    QELOsapi_leaveDeviceCall();
}

TEST(Logging, NeedsNeitherClockNorLockForWhatLeavesNoTrace) {
    HandMadeInstance instance;
    const Holder holder;
    const Fault clock("QELSystemClock_getTime");
    auto call =
        std::async(std::launch::async, [&] { return QEL_KX_Orvane_debug(instance.get(), "text"); });
    EXPECT_EQ(call.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_FALSE(clock.has_struck());
}

TEST(Logging, WaitsForTheLockOtherwise) {
    HandMadeInstance instance;
    std::future<DDS_ReturnCode_t> call;
    {
        const Holder holder;
        call = std::async(std::launch::async,
                          [&] { return QEL_KX_Orvane_fatal(instance.get(), "text"); });
        EXPECT_EQ(call.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    }
    EXPECT_EQ(call.get(), DDS_RETCODE_OK);
    EXPECT_TRUE(instance.pop().has_value());
}

}  // namespace
