#include <gtest/gtest.h>

#include <cstring>

#include "orvane/admin.h"

namespace {

constexpr DDS_Long far_off = 0x7fffffff;

TEST(Translations, CategoriesAreTheSameNumbersAndUnknownOnesAreTheApi) {
    for (DDS_Long number = 0; number < 4; ++number) {
        EXPECT_EQ(number, QEL_KX_translateFromQELLoggerCategoryToKXCategory(number));
        EXPECT_EQ(number, QEL_KX_translateFromKXCategoryToQELLoggerCategory(number));
    }
    for (const DDS_Long number : {4, 5, -1, far_off}) {
        EXPECT_EQ(4, QEL_KX_translateFromQELLoggerCategoryToKXCategory(number));
        EXPECT_EQ(4, QEL_KX_translateFromKXCategoryToQELLoggerCategory(number));
    }
}

TEST(Translations, VerbositiesAreMasksAndUnknownOnesAreWarnings) {
    constexpr DDS_UnsignedLong masks[] = {0, 1, 3, 7, 15, 31};
    for (DDS_Long number = 0; number < 6; ++number) {
        EXPECT_EQ(masks[number], QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(number));
        EXPECT_EQ(number, QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(masks[number]));
    }
    for (const DDS_UnsignedLong mask : {2U, 5U, 32U, 0xffffffffU}) {
        EXPECT_EQ(2, QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(mask));
    }
    for (const DDS_Long number : {6, 9, -1, far_off}) {
        EXPECT_EQ(3U, QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(number));
    }
}

TEST(Translations, UnknownPrintFormatsAreTheDefault) {
    constexpr DDS_UnsignedLong formats[] = {1042, 1298, 3606, 3862, 559, 17, 3903};
    for (DDS_Long number = 0; number < 7; ++number) {
        EXPECT_EQ(formats[number], QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(number));
        EXPECT_EQ(number, QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(formats[number]));
    }
    for (const DDS_UnsignedLong format : {0U, 1U, 1043U, 0xffffffffU}) {
        EXPECT_EQ(0, QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(format));
    }
    for (const DDS_Long number : {7, -1, far_off}) {
        EXPECT_EQ(1042U, QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(number));
    }
}

TEST(Translations, MessagesOfTheMiddlewareHaveALevelOfTheLibrary) {
    constexpr struct {
        DDS_Long middleware;
        DDS_Long own;
    } cases[] = {{1, 300}, {2, 400}, {3, 500}, {5, 700}, {4, 600}, {0, 600}, {6, 600}, {-1, 600}};
    for (const auto& row : cases) {
        EXPECT_EQ(row.own, QEL_KX_translateFromQELLoggerLogLevelToKXLevel(row.middleware))
            << row.middleware;
    }
}

TEST(Translations, EveryLevelHasAPrintedName) {
    constexpr struct {
        DDS_Long level;
        const char* name;
    } cases[] = {{100, "KX Fatal"},  {200, "KX Severe"}, {300, "KX Error"}, {400, "KX Warning"},
                 {500, "KX Notice"}, {600, "KX Info"},   {700, "KX Debug"}, {800, "KX Trace"},
                 {350, "KX Silent"}, {0, "KX Silent"},   {-5, "KX Silent"}, {far_off, "KX Silent"}};
    for (const auto& row : cases) {
        char buffer[QEL_KX_LEVEL_NAME_SIZE + 1];
        std::memset(buffer, '#', sizeof(buffer));
        EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_translateFromKXLogLevelToString(row.level, buffer));
        EXPECT_STREQ(row.name, buffer);
        EXPECT_EQ('#', buffer[QEL_KX_LEVEL_NAME_SIZE]) << "wrote beyond the promised size";
    }
    EXPECT_EQ(DDS_RETCODE_BAD_PARAMETER, QEL_KX_translateFromKXLogLevelToString(100, nullptr));
}

}  // namespace
