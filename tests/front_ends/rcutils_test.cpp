#include "orvane/rcutils_handler.h"

#include <rcutils/logging_macros.h>

#include "tests/support/queued_logger.hpp"

namespace orvane::test {
namespace {

/// Logs once with rcutils itself, as a node does.
void log(int severity, const char* name) {
    const rcutils_log_location_t location = {"function", "file", 1};
    rcutils_log(&location, severity, name, "%d %s", 180, "kPa");
}

TEST(RcutilsHandler, KeepsSeverityNodeTextAndTime) {
    ASSERT_EQ(rcutils_logging_initialize(), RCUTILS_RET_OK);
    rcutils_logging_set_default_logger_level(1);
    rcutils_logging_set_output_handler(orvane_rcutils_handler);
    log(RCUTILS_LOG_SEVERITY_FATAL, "before there is a logger");

    QueuedLogger queued{8};
    queued.set_filter_level(QEL_KX_LEVEL_DEBUG);
    constexpr struct {
        int severity;
        DDS_Long level;
    } levels[] = {
        {RCUTILS_LOG_SEVERITY_FATAL, QEL_KX_LEVEL_FATAL},
        {RCUTILS_LOG_SEVERITY_ERROR, QEL_KX_LEVEL_ERROR},
        {RCUTILS_LOG_SEVERITY_WARN, QEL_KX_LEVEL_WARNING},
        {RCUTILS_LOG_SEVERITY_INFO, QEL_KX_LEVEL_INFO},
        {RCUTILS_LOG_SEVERITY_DEBUG, QEL_KX_LEVEL_DEBUG},
    };
    for (const auto& row : levels) {
        rcutils_time_point_value_t before = 0;
        rcutils_time_point_value_t after = 0;
        ASSERT_EQ(rcutils_system_time_now(&before), RCUTILS_RET_OK);
        log(row.severity, "robot.arm");
        ASSERT_EQ(rcutils_system_time_now(&after), RCUTILS_RET_OK);
        const auto message = queued.pop();
        ASSERT_TRUE(message) << row.severity;
        EXPECT_EQ(message->level, row.level);
        EXPECT_EQ(orvane_to_rcutils_severity(message->level), row.severity);
        EXPECT_EQ(message->category, "robot.arm");
        EXPECT_EQ(message->text, "180 kPa");
        const std::int64_t time = message->time.sec * 1'000'000'000LL + message->time.nanosec;
        EXPECT_GE(time, before);
        EXPECT_LE(time, after);
    }
    RCUTILS_LOG_INFO("without a node");
    EXPECT_EQ(queued.pop()->category, "");
    queued.set_filter_level(QEL_KX_LEVEL_ERROR);
    log(RCUTILS_LOG_SEVERITY_WARN, "not asked for");
    EXPECT_FALSE(queued.pop());
    EXPECT_EQ(orvane_from_rcutils_severity(5), QEL_KX_LEVEL_TRACE);
    EXPECT_EQ(orvane_to_rcutils_severity(QEL_KX_LEVEL_SEVERE), RCUTILS_LOG_SEVERITY_FATAL);
    EXPECT_EQ(orvane_to_rcutils_severity(QEL_KX_LEVEL_NOTICE), RCUTILS_LOG_SEVERITY_INFO);
    EXPECT_EQ(rcutils_logging_shutdown(), RCUTILS_RET_OK);
}

}  // namespace
}  // namespace orvane::test
