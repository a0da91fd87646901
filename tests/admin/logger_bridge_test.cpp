#include <algorithm>
#include <array>

#include "tests/admin/administration.hpp"

namespace orvane::test {
namespace {

class LoggerBridge : public AdminTest {};

TEST_F(LoggerBridge, WithoutACompleteLoggerTheDevicePrintsWithOneNewline) {
    constexpr struct {
        const char* text;
        const char* output;
    } cases[] = {{"text", "text\n"}, {"text\n", "text\n"}, {"", ""},
                 {"\n", "\n"},       {"100%s", "100%s\n"}, {nullptr, ""}};
    for (const auto& row : cases) {
        const PEXA_Config_LogMessage message{row.text, PEXA_CONFIG_LOG_LEVEL_ERROR};
        EXPECT_EQ(
            output_of([&] { QEL_KX_Orvane_writeDevice(&QEL_KX_Orvane_localDevice, &message); }),
            row.output);
    }
    EXPECT_EQ(output_of([] { QEL_KX_Orvane_writeDevice(nullptr, nullptr); }), "");
}

TEST_F(LoggerBridge, ACompleteLoggerPublishesWhatTheMiddlewareSays) {
    const Node node;
    const RunningLogger logger;
    const PEXA_Config_LogMessage hidden{"filtered out", PEXA_CONFIG_LOG_LEVEL_DEBUG};
    const PEXA_Config_LogMessage remote{"from the middleware", PEXA_CONFIG_LOG_LEVEL_STATUS_REMOTE};
    EXPECT_EQ(output_of([&] {
                  QEL_KX_Orvane_writeDevice(&QEL_KX_Orvane_localDevice, &hidden);
                  QEL_KX_Orvane_writeDevice(&QEL_KX_Orvane_localDevice, &remote);
              }),
              "");
    const auto taken = take<QEL_KX_LogMessage>(node.reader<QEL_KX_LogMessage>(), 1);
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(taken[0].sample->level, 600);
    EXPECT_STREQ(taken[0].sample->category, "com.qel.pexa.config.Logger");
    EXPECT_STREQ(taken[0].sample->message, "from the middleware");
}

TEST_F(LoggerBridge, TheVerbositiesOfAMaskedLoggerAreSilentAndSaved) {
    using Verbosities = std::array<PEXA_Config_LogVerbosity, PEXA_CONFIG_LOG_CATEGORY_COUNT>;
    const auto current = [] {
        Verbosities verbosities;
        std::ranges::generate(verbosities, [n = 0]() mutable { return verbosity_of(n++); });
        return verbosities;
    };
    constexpr Verbosities before = {0, 1, 3, 7, 31};
    Verbosities saved = {};
    QEL_KX_Orvane_unmaskSystemVerbosity(before.data());
    EXPECT_EQ(current(), before);
    QEL_KX_Orvane_maskSystemVerbosity(saved.data());
    EXPECT_EQ(saved, before);
    EXPECT_EQ(current(), Verbosities{});
}

TEST_F(LoggerBridge, TheStateMirrorsEachCategoryAndTheWriteThreadThatOfCommunication) {
    BareLogger bare;
    LogMessageWriteThread thread{};
    thread.logger = middleware();
    bare->logMessageWriteThread = &thread;
    QEL_KX_Orvane_setQELLoggerVerbosityByCategory(bare.get(), PEXA_CONFIG_LOG_CATEGORY_ENTITIES,
                                                  0x7);
    EXPECT_EQ(thread.communicationsLogVerbosity, 0U);
    QEL_KX_Orvane_setQELLoggerVerbosityByCategory(bare.get(),
                                                  PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, 0xF);
    EXPECT_EQ(thread.communicationsLogVerbosity, 0xFU);
    EXPECT_EQ(verbosity_of(PEXA_CONFIG_LOG_CATEGORY_ENTITIES), 0x7U);
    EXPECT_EQ(verbosity_of(PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION), 0xFU);
    EXPECT_EQ(bare->state->qelLoggerVerbosities[1].verbosity, 4);
    EXPECT_EQ(bare->state->qelLoggerVerbosities[3].verbosity, 3);

    PEXA_Config_Logger_set_print_format(middleware(), PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG);
    // There is no writer that could publish.
    QEL_KX_DDSEntities_gInitialStateSent = 1;
    EXPECT_EQ(output_of([&] {
                  QEL_KX_Orvane_updateQELLoggerPrintFormatState(bare.get());
                  QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(bare.get());
              }),
              "");
    EXPECT_EQ(bare->state->qelLoggerPrintFormat, 4);
}

TEST(Translations, OfKnownNumbersGoBothWays) {
    for (DDS_Long category = 0; category < 5; ++category) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerCategoryToKXCategory(category), category);
        EXPECT_EQ(QEL_KX_translateFromKXCategoryToQELLoggerCategory(category), category);
    }
    constexpr DDS_UnsignedLong masks[] = {0, 1, 3, 7, 15, 31};
    constexpr DDS_Long levels[] = {600, 300, 400, 500, 600, 700};
    for (DDS_Long number = 0; number < 6; ++number) {
        const DDS_UnsignedLong mask = masks[number];
        EXPECT_EQ(QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(number), mask);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(mask), number);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerLogLevelToKXLevel(number), levels[number]);
    }
    constexpr DDS_UnsignedLong formats[] = {1042, 1298, 3606, 3862, 559, 17, 3903};
    for (DDS_Long format = 0; format < 7; ++format) {
        const DDS_UnsignedLong bits = formats[format];
        EXPECT_EQ(QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(format), bits);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(bits), format);
    }
}

TEST(Translations, TakeUnknownNumbersForTheApiAWarningTheDefaultAndInformation) {
    for (const DDS_Long number : {7, -1, 0x7fffffff}) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerCategoryToKXCategory(number), 4);
        EXPECT_EQ(QEL_KX_translateFromKXCategoryToQELLoggerCategory(number), 4);
        EXPECT_EQ(QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(number), 3U);
        EXPECT_EQ(QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(number), 1042U);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerLogLevelToKXLevel(number), 600);
    }
    for (const DDS_UnsignedLong bits : {2U, 1043U, 0xffffffffU}) {
        EXPECT_EQ(QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(bits), 2);
        EXPECT_EQ(QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(bits), 0);
    }
}

}  // namespace
}  // namespace orvane::test
