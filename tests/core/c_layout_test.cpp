#include "c_layout.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "orvane/orvane.h"

namespace {

TEST(CInterface, HasRecordsOfTheSameLayoutInBothLanguages) {
    const std::vector<std::size_t> expected = {
        sizeof(QEL_KX_Options),
        offsetof(QEL_KX_Options, thread),
        offsetof(QEL_KX_Options, log_infrastructure_messages),
        sizeof(QEL_KX_MessageQueueElement),
        offsetof(QEL_KX_MessageQueueElement, categoryBuffer),
        sizeof(QEL_KX_MessageQueue),
        sizeof(LogMessageWriteThread),
        offsetof(LogMessageWriteThread, threadId),
        sizeof(QEL_KX_Orvane),
        offsetof(QEL_KX_Orvane, clock),
        sizeof(QEL_KX_LogMessageParams),
        offsetof(QEL_KX_LogMessageParams, timestamp),
        sizeof(QEL_KX_LogLevel),
    };
    EXPECT_EQ(std::vector<std::size_t>(c_layout, c_layout + c_layout_count), expected);
}

TEST(CInterface, CanBeCalledFromC) {
    EXPECT_EQ(c_logging_without_instance(), 0);
}

}  // namespace
