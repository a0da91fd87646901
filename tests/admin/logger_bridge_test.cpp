#include "pexa/config_logger.h"
#include "tests/admin/admin_fixture.hpp"

namespace admin_test {
namespace {

PEXA_Config_Logger* middleware() {
    return PEXA_Config_Logger_get_instance();
}

PEXA_Config_LogVerbosity verbosity_of(int category) {
    return PEXA_Config_Logger_get_verbosity_by_category(
        middleware(), static_cast<PEXA_Config_LogCategory>(category));
}

class LoggerBridge : public AdminTest {
public:
    LoggerBridge() { reset(); }
    ~LoggerBridge() override { reset(); }

private:
    static void reset() {
        PEXA_Config_Logger_set_verbosity(middleware(), PEXA_CONFIG_LOG_VERBOSITY_ERROR);
        PEXA_Config_Logger_set_print_format(middleware(), PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT);
    }
};

TEST_F(LoggerBridge, WithoutACompleteLoggerTheDevicePrintsWithOneNewline) {
    constexpr struct {
        const char* text;
        const char* output;
    } cases[] = {{"text", "text\n"}, {"text\n", "text\n"}, {"", ""},
                 {"\n", "\n"},       {"100%s", "100%s\n"}, {nullptr, ""}};
    for (const auto& row : cases) {
        const PEXA_Config_LogMessage message{row.text, PEXA_CONFIG_LOG_LEVEL_ERROR};
        EXPECT_EQ(row.output, printed([&] {
                      QEL_KX_Orvane_writeDevice(&QEL_KX_Orvane_localDevice, &message);
                  }));
    }
    EXPECT_EQ("", printed([] { QEL_KX_Orvane_writeDevice(nullptr, nullptr); }));
}

TEST_F(LoggerBridge, ACompleteLoggerPublishesWhatTheMiddlewareSays) {
    Tool tool;
    std::unique_ptr<QEL_KX_Options, BareLogger::Delete> options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), domain);
    QEL_KX_Orvane_setOptions(options.get());
    ASSERT_NE(nullptr, QEL_KX_Orvane_getInstance());
    DDS_DataReader* const reader = tool.reader<QEL_KX_LogMessage>();
    const PEXA_Config_LogMessage hidden{"filtered out", PEXA_CONFIG_LOG_LEVEL_DEBUG};
    const PEXA_Config_LogMessage remote{"from the middleware", PEXA_CONFIG_LOG_LEVEL_STATUS_REMOTE};
    EXPECT_EQ("", printed([&] {
                  QEL_KX_Orvane_writeDevice(&QEL_KX_Orvane_localDevice, &hidden);
                  QEL_KX_Orvane_writeDevice(&QEL_KX_Orvane_localDevice, &remote);
              }));
    const auto taken = take<QEL_KX_LogMessage>(reader, 1);
    EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_Orvane_finalizeInstance());
    ASSERT_EQ(1U, taken.size());
    EXPECT_EQ(600, taken[0]->level);
    EXPECT_STREQ("com.qel.pexa.config.Logger", taken[0]->category);
    EXPECT_STREQ("from the middleware", taken[0]->message);
}

TEST_F(LoggerBridge, AMaskedLoggerIsSilentAndGetsItsVerbositiesBack) {
    constexpr PEXA_Config_LogVerbosity before[] = {0, 1, 3, 7, 31};
    for (int category = 0; category < 5; ++category) {
        PEXA_Config_Logger_set_verbosity_by_category(
            middleware(), static_cast<PEXA_Config_LogCategory>(category), before[category]);
    }
    PEXA_Config_LogVerbosity saved[5];
    QEL_KX_Orvane_maskSystemVerbosity(saved);
    for (int category = 0; category < 5; ++category) {
        EXPECT_EQ(before[category], saved[category]);
        EXPECT_EQ(0U, verbosity_of(category));
    }
    QEL_KX_Orvane_unmaskSystemVerbosity(saved);
    for (int category = 0; category < 5; ++category) {
        EXPECT_EQ(before[category], verbosity_of(category));
    }
}

TEST_F(LoggerBridge, TheStateMirrorsVerbositiesAndPrintFormatWithoutBeingPublished) {
    BareLogger bare;
    PEXA_Config_Logger_set_verbosity_by_category(middleware(), PEXA_CONFIG_LOG_CATEGORY_API, 0x1F);
    PEXA_Config_Logger_set_print_format(middleware(), PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG);
    QEL_KX_DDSEntities_gInitialStateSent = 1;
    QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(&bare.logger);
    QEL_KX_Orvane_updateQELLoggerPrintFormatState(&bare.logger);
    for (int category = 0; category < 5; ++category) {
        EXPECT_EQ(category, bare.state->qelLoggerVerbosities[category].category);
        EXPECT_EQ(category == 4 ? 5 : 1, bare.state->qelLoggerVerbosities[category].verbosity);
    }
    EXPECT_EQ(4, bare.state->qelLoggerPrintFormat);
    EXPECT_EQ(0, faults::calls("DDS_DataWriter_write_untypedI"));
}

TEST_F(LoggerBridge, OnlyTheCommunicationCategoryReachesTheWriteThread) {
    QEL_KX_DDSEntities_gInitialStateSent = 0;
    BareLogger bare;
    LogMessageWriteThread thread{};
    thread.logger = middleware();
    bare.logger.logMessageWriteThread = &thread;
    QEL_KX_Orvane_setQELLoggerVerbosityByCategory(&bare.logger, PEXA_CONFIG_LOG_CATEGORY_ENTITIES,
                                                  0x7);
    EXPECT_EQ(0U, thread.communicationsLogVerbosity);
    EXPECT_EQ(0x7U, verbosity_of(PEXA_CONFIG_LOG_CATEGORY_ENTITIES));
    QEL_KX_Orvane_setQELLoggerVerbosityByCategory(&bare.logger,
                                                  PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, 0xF);
    EXPECT_EQ(0xFU, thread.communicationsLogVerbosity);
    EXPECT_EQ(0xFU, verbosity_of(PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION));
    EXPECT_EQ(4, bare.state->qelLoggerVerbosities[1].verbosity);
    EXPECT_EQ(3, bare.state->qelLoggerVerbosities[3].verbosity);
}

TEST_F(LoggerBridge, AStateThatCannotBeWrittenIsAWarning) {
    BareLogger bare;
    QEL_KX_DDSEntities_gInitialStateSent = 1;
    const std::string no_writer =
        line("KX Error", "QEL_KX_Orvane_writeState", "could not get KX state data writer");
    EXPECT_EQ(no_writer + line("KX Warning", "QEL_KX_Orvane_setQELLoggerVerbosityByCategory",
                               "Unable to write Verbosity State"),
              printed([&] {
                  QEL_KX_Orvane_setQELLoggerVerbosityByCategory(&bare.logger,
                                                                PEXA_CONFIG_LOG_CATEGORY_API, 0x3);
              }));
    EXPECT_EQ(
        no_writer + line("KX Warning", "QEL_KX_Orvane_setQELLoggerPrintFormat",
                         "Unable to write PrintFormat State"),
        printed([&] { EXPECT_EQ(0, QEL_KX_Orvane_setQELLoggerPrintFormat(&bare.logger, 3606)); }));
    EXPECT_EQ(2, bare.state->qelLoggerVerbosities[4].verbosity);
    EXPECT_EQ(2, bare.state->qelLoggerPrintFormat);
}

TEST_F(LoggerBridge, WithoutAMiddlewareLoggerEachOperationSaysSo) {
    BareLogger bare;
    QEL_KX_DDSEntities_gInitialStateSent = 0;
    PEXA_Config_LogVerbosity saved[5] = {9, 9, 9, 9, 9};
    const auto expect_report = [](const char* context, auto action) {
        faults::add({.function = "PEXA_Config_Logger_get_instance", .call = 0});
        const std::string output = printed(action);
        faults::reset();
        EXPECT_NE(std::string::npos,
                  output.find(line("KX Error", context, "Unable to get QEL Logger")))
            << output;
    };
    expect_report("QEL_KX_Orvane_maskSystemVerbosity",
                  [&] { QEL_KX_Orvane_maskSystemVerbosity(saved); });
    EXPECT_EQ(0U, saved[4]);
    expect_report("QEL_KX_Orvane_unmaskSystemVerbosity",
                  [&] { QEL_KX_Orvane_unmaskSystemVerbosity(saved); });
    expect_report("QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState",
                  [&] { QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(&bare.logger); });
    expect_report("QEL_KX_Orvane_updateQELLoggerPrintFormatState",
                  [&] { QEL_KX_Orvane_updateQELLoggerPrintFormatState(&bare.logger); });
    expect_report("QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState", [&] {
        QEL_KX_Orvane_setQELLoggerVerbosityByCategory(&bare.logger, PEXA_CONFIG_LOG_CATEGORY_API,
                                                      0x3);
    });
    expect_report("QEL_KX_Orvane_setQELLoggerPrintFormat",
                  [&] { EXPECT_EQ(0, QEL_KX_Orvane_setQELLoggerPrintFormat(&bare.logger, 3606)); });
    EXPECT_EQ(1U, verbosity_of(4)) << "the middleware was left alone";
}

}  // namespace
}  // namespace admin_test
