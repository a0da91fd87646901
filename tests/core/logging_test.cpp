#include <future>
#include <thread>

#include "core/logging_lock.hpp"
#include "tests/support/faults.hpp"
#include "tests/support/queued_logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

constexpr DDS_Long last_second = 2147483647;
constexpr const char* context = "QEL_KX_Orvane_logMessageWithParams";

/// What is logged stays in the queue.
class Logging : public testing::Test {
protected:
    void set_filter_level(DDS_Long level) { queued_.set_filter_level(level); }

    /// Takes the first message out of the queue. @return its text, if there is one
    std::optional<std::string> pop() {
        const auto message = queued_.pop();
        if (!message) {
            return std::nullopt;
        }
        return std::to_string(message->origin.rtps_host_id) + " " +
               std::to_string(message->origin.rtps_app_id) + " " + std::to_string(message->level) +
               " [" + message->category + "] " + message->text + " " +
               std::to_string(message->time.sec) + "." + std::to_string(message->time.nanosec);
    }

    QueuedLogger queued_{4};
    QEL_KX_Orvane* logger_ = queued_.get();
    QEL_KX_Orvane& record_ = *logger_;
};

TEST(Printer, WritesLevelContextAndMessageAsOneLine) {
    const std::string null_text =
        line("QEL_KX_Orvane_printMessage", "String passed as parameter is NULL.");
    const struct {
        const char* message;
        const char* context;
        DDS_Long level;
        DDS_ReturnCode_t result;
        std::string output;
    } lines[] = {
        {"text", "where", 100, DDS_RETCODE_OK, "KX Fatal: where: text\n"},
        {"text", "where", 200, DDS_RETCODE_OK, "KX Severe: where: text\n"},
        {"text", "where", 300, DDS_RETCODE_OK, "KX Error: where: text\n"},
        {"text", "where", 400, DDS_RETCODE_OK, "KX Warning: where: text\n"},
        {"text", "where", 500, DDS_RETCODE_OK, "KX Notice: where: text\n"},
        {"text", "", 600, DDS_RETCODE_OK, "KX Info: : text\n"},
        {"100 %s %n", "%d", 700, DDS_RETCODE_OK, "KX Debug: %d: 100 %s %n\n"},
        {"\n", "where", 800, DDS_RETCODE_OK, "KX Trace: where: \n"},
        {"ends itself\n", "where", 350, DDS_RETCODE_OK, "KX Silent: where: ends itself\n"},
        {"", "where", 300, DDS_RETCODE_BAD_PARAMETER,
         line("QEL_KX_Orvane_printMessage", "Message to print is empty.")},
        {nullptr, "where", 300, DDS_RETCODE_PRECONDITION_NOT_MET, null_text},
        {"text", nullptr, 300, DDS_RETCODE_PRECONDITION_NOT_MET, null_text},
    };
    for (const auto& row : lines) {
        EXPECT_EQ(output_of([&] {
                      EXPECT_EQ(QEL_KX_Orvane_printMessage(row.message, row.context, row.level),
                                row.result);
                  }),
                  row.output);
    }
    std::string name(QEL_KX_LEVEL_NAME_SIZE + 1, '#');
    EXPECT_EQ(QEL_KX_translateFromKXLogLevelToString(400, name.data()), DDS_RETCODE_OK);
    EXPECT_STREQ(name.c_str(), "KX Warning");
    EXPECT_EQ(name.back(), '#') << "wrote beyond the promised size";
    EXPECT_EQ(QEL_KX_translateFromKXLogLevelToString(400, nullptr), DDS_RETCODE_BAD_PARAMETER);
}

TEST_F(Logging, QueuesAMessageOfEachLevelWithItsOriginAndTime) {
    const struct {
        DDS_ReturnCode_t (*log)(QEL_KX_Orvane*, const char*);
        const char* level;
    } calls[] = {{QEL_KX_Orvane_fatal, "100"},  {QEL_KX_Orvane_severe, "200"},
                 {QEL_KX_Orvane_error, "300"},  {QEL_KX_Orvane_warning, "400"},
                 {QEL_KX_Orvane_notice, "500"}, {QEL_KX_Orvane_info, "600"},
                 {QEL_KX_Orvane_debug, "700"},  {QEL_KX_Orvane_trace, "800"}};
    set_filter_level(QEL_KX_LEVEL_TRACE);
    const Stub<decltype(QELSystemClock_getTime)> clock("QELSystemClock_getTime",
                                                       [](QELSystemClock*, QELNtpTime* now) {
                                                           *now = {1700000000, 0};
                                                           return 1;
                                                       });
    for (const auto& call : calls) {
        EXPECT_EQ(output_of([&] { EXPECT_EQ(call.log(logger_, "text"), DDS_RETCODE_OK); }), "");
        EXPECT_EQ(pop(), "-1062731775 77 " + std::string(call.level) + " [] text 1700000000.0");
    }
}

TEST_F(Logging, QueuesWhatPassesTheFilterWhileTheStateIsOperational) {
    constexpr struct {
        QEL_KX_ADMIN_StateKind state;
        DDS_Long filter_level;
        DDS_Long level;
        bool is_queued;
    } cases[] = {
        {QEL_KX_STATE_OPERATIONAL, 600, 600, true},
        {QEL_KX_STATE_OPERATIONAL, 600, 601, false},
        {QEL_KX_STATE_OPERATIONAL, 0, 100, false},
        {QEL_KX_STATE_OPERATIONAL, 0, 0, true},
        {QEL_KX_STATE_OPERATIONAL, 0, -5, true},
        {QEL_KX_STATE_OPERATIONAL, last_second, last_second, true},
        {QEL_KX_STATE_INITIALIZING, 600, 100, false},
        {QEL_KX_STATE_NONOPERATIONAL, 600, 100, false},
    };
    for (const auto& row : cases) {
        record_.state->state = row.state;
        set_filter_level(row.filter_level);
        EXPECT_EQ(QEL_KX_Orvane_log(logger_, row.level, "text"), DDS_RETCODE_OK);
        EXPECT_EQ(pop().has_value(), row.is_queued)
            << row.state << " " << row.filter_level << " " << row.level;
        EXPECT_EQ(QEL_KX_Orvane_isLevelEnabled(row.level), row.level <= row.filter_level);
    }
    core::follow_filter_of(nullptr);
    EXPECT_EQ(QEL_KX_Orvane_isLevelEnabled(QEL_KX_LEVEL_FATAL), 0) << "there is no logger";
}

TEST_F(Logging, EchoesWhatTheFilterOrTheStateStopsToo) {
    constexpr struct {
        QELBool echo;
        const char* message;
        DDS_Long level;
        const char* output;
    } cases[] = {
        {1, "hello", 600, "KX Info: : hello\n"},
        {1, "hello\n", 600, "KX Info: : hello\n"},
        {1, "hello", -5, "KX Silent: : hello\n"},
        {1, "hello", 800, "KX Trace: : hello\n"},
        {1, "", 600, ""},
        {0, "hello", 600, ""},
        {2, "hello", 600, ""},
    };
    for (const auto state : {QEL_KX_STATE_OPERATIONAL, QEL_KX_STATE_NONOPERATIONAL}) {
        record_.state->state = state;
        for (const auto& row : cases) {
            QEL_KX_Options_setEchoToStdout(record_.options, row.echo);
            EXPECT_EQ(output_of([&] { QEL_KX_Orvane_log(logger_, row.level, row.message); }),
                      row.output);
            EXPECT_EQ(pop().has_value(), state == QEL_KX_STATE_OPERATIONAL && row.level <= 600)
                << row.level << row.message;
            EXPECT_EQ(QEL_KX_Orvane_isLevelEnabled(row.level), row.echo == 1 || row.level <= 600);
        }
    }
}

TEST_F(Logging, RefusesParametersThatAreIncomplete) {
    constexpr struct {
        QEL_KX_LogMessageParams params;
        const char* report;
    } cases[] = {
        {{300, nullptr, nullptr, {-1, 0}}, "Message to be logged is NULL"},
        {{300, "text", nullptr, {-1, 0}}, "Message category is NULL"},
        {{300, "text", "", {-1, 0}}, "Invalid message timestamp"},
    };
    QEL_KX_Options_setEchoToStdout(record_.options, 1);
    for (QEL_KX_Orvane* logger : {logger_, static_cast<QEL_KX_Orvane*>(nullptr)}) {
        for (const auto& row : cases) {
            EXPECT_EQ(output_of([&] {
                          EXPECT_EQ(QEL_KX_Orvane_logMessageWithParams(logger, &row.params),
                                    DDS_RETCODE_OK);
                      }),
                      line(context, row.report));
        }
        EXPECT_EQ(output_of([&] { QEL_KX_Orvane_logMessageWithParams(logger, nullptr); }),
                  line(context, "Message params is NULL"));
        EXPECT_EQ(output_of([&] { QEL_KX_Orvane_info(logger, nullptr); }),
                  line(context, "Message to be logged is NULL"));
    }
    EXPECT_EQ(pop(), std::nullopt);
    EXPECT_NE(QELOsapi_global_unlock(), 0) << "every refusal has given the lock back";
}

TEST_F(Logging, DropsWhatTheWriteThreadLogsAndWhatIsForAnotherInstance) {
    QEL_KX_Options_setEchoToStdout(record_.options, 1);
    const auto expect_nothing = [this](QEL_KX_Orvane* logger) {
        EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Orvane_fatal(logger, "text"), 0); }), "");
        EXPECT_EQ(pop(), std::nullopt);
    };
    const Calls clock("QELSystemClock_getTime");
    // An address at which there is nothing.
    expect_nothing(reinterpret_cast<QEL_KX_Orvane*>(alignof(QEL_KX_Orvane)));
    expect_nothing(nullptr);
    EXPECT_EQ(clock.count(), 0);
    record_.logMessageWriteThread->threadId = QELOsapiThread_getCurrentThreadID();
    expect_nothing(logger_);
}

TEST_F(Logging, ReportsAFailureAndReturnsSuccess) {
    const struct {
        const char* function;
        bool after;
        bool is_queued;
        std::string output;
    } failures[] = {
        {"QELSystemClock_getTime", false, false,
         line("QEL_KX_Orvane_logMessageWithLevelCategory",
              "Unable to get current Time from internal clock")},
        {"QELOsapi_global_lockUnless", false, false,
         line(context, "Unable to lock: It is not safe to log message")},
        {"QELOsapiThread_getCurrentThreadID", false, false,
         line(context, "Unable to get current thread Id, message missed", "Warning")},
        {"QELOsapi_global_unlock", true, true,
         line(context, "Unable to unlock when logging message.")},
    };
    for (const auto& failure : failures) {
        const Fault fault(failure.function, {.after = failure.after});
        EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Orvane_fatal(logger_, "text"), 0); }),
                  failure.output);
        EXPECT_EQ(pop().has_value(), failure.is_queued) << failure.output;
    }
}

TEST_F(Logging, WaitsForTheLockUnlessItMayNeverComeOrIsNotNeeded) {
    std::promise<void> held;
    std::promise<void> release;
    std::jthread holder([&] {
        EXPECT_EQ(QELOsapi_global_lock(), 0);
        held.set_value();
        release.get_future().wait();
        EXPECT_EQ(QELOsapi_global_unlock(), 0);
    });
    held.get_future().wait();
    const Calls clock("QELSystemClock_getTime");
    EXPECT_EQ(output_of([&] { QEL_KX_Orvane_debug(logger_, "leaves no trace"); }), "");
    EXPECT_EQ(clock.count(), 0);
    {
        const core::LifecycleChange change;
        EXPECT_EQ(output_of([&] { QEL_KX_Orvane_fatal(logger_, "while it changes"); }), "");
    }
    QELOsapi_enterDeviceCall();
    EXPECT_EQ(output_of([&] { QEL_KX_Orvane_fatal(logger_, "in a device call"); }),
              line(context, "Unable to lock: It is not safe to log message"));
    QELOsapi_leaveDeviceCall();

    std::promise<void> is_about_to_lock;
    const Before lock("QELOsapi_global_lockUnless", [&] { is_about_to_lock.set_value(); });
    std::jthread caller([&] { QEL_KX_Orvane_fatal(logger_, "text"); });
    is_about_to_lock.get_future().wait();
    EXPECT_EQ(pop(), std::nullopt);
    release.set_value();
    caller.join();
    EXPECT_NE(pop(), std::nullopt);
}

}  // namespace
}  // namespace orvane::test
