#include <cstdio>

#include <gtest/gtest.h>

#include "tests/types/sample.hpp"

namespace {

/// What `print` writes on standard output.
template <typename Print>
std::string printed(Print print) {
    testing::internal::CaptureStdout();
    print();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

TEST(Printing, ShowsMembersOneLevelDeeperThanTheDescription) {
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    EXPECT_EQ(
        printed([&] { QEL_KX_LogMessagePluginSupport_print_data(message.get(), "record", 1); }),
        "   record:\n"
        "      hostAndAppId:\n"
        "         rtps_host_id: 16909060\n"
        "         rtps_app_id: 168496141\n"
        "      level: 300\n"
        "      category: \"net\"\n"
        "      message: \"hi\"\n");
    EXPECT_EQ(printed([] { QEL_KX_LogMessageTypeSupport_print_data(nullptr); }), "\nNULL\n");
}

TEST(Printing, OfAUnionShowsTheSelectedBranch) {
    Sample<QEL_KX_ADMIN_Command> command;
    set_pairs(*command, 1);
    const auto print = [&] {
        return printed(
            [&] { QEL_KX_ADMIN_CommandPluginSupport_print_data(command.get(), nullptr, 0); });
    };
    EXPECT_EQ(print(),
              "\n"
              "   _d: QEL_KX_SET_QEL_LOGGER_LEVEL (1)\n"
              "   _u.categoryAndVerbosity:\n"
              "      [0]:\n"
              "         category: QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM (0)\n"
              "         verbosity: QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR (1)\n");
    command->_d = QEL_KX_SET_LOG_LEVEL;
    command->_u.filterLevel = 7;
    EXPECT_EQ(print(), "\n   _d: QEL_KX_SET_LOG_LEVEL (0)\n   _u.filterLevel: 7\n");
    // No enumerator has this number, so that it can only be written as one.
    const DDS_Long nothing = 17;
    std::memcpy(&command->_d, &nothing, sizeof nothing);
    EXPECT_EQ(print(), "\n   _d: 17\n");
}

TEST(Printing, OfAnArrayShowsAllElements) {
    Sample<QEL_KX_ADMIN_State> state;
    fill(*state);
    const std::string text = printed(
        [&] { QEL_KX_ADMIN_StatePluginSupport_print_data(state.get(), "state of a logger", 0); });
    EXPECT_NE(text.find("   state: QEL_KX_STATE_OPERATIONAL (1)\n"), std::string::npos);
    EXPECT_NE(text.find("   qelLoggerVerbosities:\n      [0]:\n"), std::string::npos);
    EXPECT_NE(text.find("      [4]:\n"
                        "         category: QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API (4)\n"
                        "         verbosity: QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL (5)\n"
                        "   qelLoggerPrintFormat: "),
              std::string::npos);
}

TEST(Printing, OfAnEnumerationTakesOneLine) {
    const QEL_KX_ADMIN_CommandResult result = QEL_KX_COMMAND_RESULT_ERROR;
    EXPECT_EQ(
        printed([&] { QEL_KX_ADMIN_CommandResultPluginSupport_print_data(&result, "result", 1); }),
        "   result: QEL_KX_COMMAND_RESULT_ERROR (2)\n");
}

}  // namespace
