#include <algorithm>
#include <array>
#include <functional>
#include <string>

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

TEST_F(LoggerBridge, EachOperationSaysWhatItCouldNotDo) {
    BareLogger bare;
    PEXA_Config_LogVerbosity saved[5] = {9, 9, 9, 9, 9};
    const auto set_verbosity = [&] {
        QEL_KX_Orvane_setQELLoggerVerbosityByCategory(bare.get(), PEXA_CONFIG_LOG_CATEGORY_API,
                                                      0x3);
    };
    const auto set_format = [&] {
        EXPECT_EQ(QEL_KX_Orvane_setQELLoggerPrintFormat(bare.get(), 3606), 0);
    };
    constexpr const char* refresh = "QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState";
    const struct {
        const char* context;
        std::function<void()> operation;
    } cases[] = {
        {"QEL_KX_Orvane_maskSystemVerbosity", [&] { QEL_KX_Orvane_maskSystemVerbosity(saved); }},
        {"QEL_KX_Orvane_unmaskSystemVerbosity",
         [&] { QEL_KX_Orvane_unmaskSystemVerbosity(saved); }},
        {refresh, [&] { QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(bare.get()); }},
        {"QEL_KX_Orvane_updateQELLoggerPrintFormatState",
         [&] { QEL_KX_Orvane_updateQELLoggerPrintFormatState(bare.get()); }},
        {refresh, set_verbosity},
        {"QEL_KX_Orvane_setQELLoggerPrintFormat", set_format},
    };
    for (const auto& row : cases) {
        const Fault fault("PEXA_Config_Logger_get_instance", {.call = 0});
        const std::string output = output_of(row.operation);
        EXPECT_NE(output.find(line(row.context, "Unable to get QEL Logger")), std::string::npos)
            << output;
    }
    EXPECT_EQ(saved[4], 0U);
    EXPECT_EQ(verbosity_of(4), 1U) << "the middleware was left alone";

    QEL_KX_DDSEntities_gInitialStateSent = 1;
    const std::string no_writer =
        line("QEL_KX_Orvane_writeState", "could not get KX state data writer");
    EXPECT_EQ(output_of(set_verbosity),
              no_writer + line("QEL_KX_Orvane_setQELLoggerVerbosityByCategory",
                               "Unable to write Verbosity State", "Warning"));
    EXPECT_EQ(output_of(set_format),
              no_writer + line("QEL_KX_Orvane_setQELLoggerPrintFormat",
                               "Unable to write PrintFormat State", "Warning"));
    EXPECT_EQ(bare->state->qelLoggerVerbosities[4].verbosity, 2);
    EXPECT_EQ(bare->state->qelLoggerPrintFormat, 2);
}

}  // namespace
}  // namespace orvane::test
