#include <gtest/gtest.h>

#include "orvane/admin.h"

namespace {

constexpr DDS_Long far_off = 0x7fffffff;

TEST(Translations, OfKnownNumbersGoBothWays) {
    for (DDS_Long category = 0; category < 5; ++category) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerCategoryToKXCategory(category), category);
        EXPECT_EQ(QEL_KX_translateFromKXCategoryToQELLoggerCategory(category), category);
    }
    constexpr DDS_UnsignedLong masks[] = {0, 1, 3, 7, 15, 31};
    for (DDS_Long verbosity = 0; verbosity < 6; ++verbosity) {
        const DDS_UnsignedLong mask = masks[verbosity];
        EXPECT_EQ(QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(verbosity), mask);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(mask), verbosity);
    }
    constexpr DDS_UnsignedLong formats[] = {1042, 1298, 3606, 3862, 559, 17, 3903};
    for (DDS_Long format = 0; format < 7; ++format) {
        const DDS_UnsignedLong bits = formats[format];
        EXPECT_EQ(QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(format), bits);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(bits), format);
    }
    constexpr DDS_Long levels[] = {600, 300, 400, 500, 600, 700};
    for (DDS_Long level = 0; level < 6; ++level) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerLogLevelToKXLevel(level), levels[level]);
    }
}

TEST(Translations, TakeUnknownNumbersForTheApiAWarningTheDefaultAndInformation) {
    for (const DDS_Long number : {7, 9, -1, far_off}) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerCategoryToKXCategory(number), 4);
        EXPECT_EQ(QEL_KX_translateFromKXCategoryToQELLoggerCategory(number), 4);
        EXPECT_EQ(QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(number), 3U);
        EXPECT_EQ(QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(number), 1042U);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerLogLevelToKXLevel(number), 600);
    }
    for (const DDS_UnsignedLong mask : {2U, 5U, 32U, 0xffffffffU}) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(mask), 2);
    }
    for (const DDS_UnsignedLong format : {0U, 1U, 1043U, 0xffffffffU}) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(format), 0);
    }
}

}  // namespace
