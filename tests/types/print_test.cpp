#include "tests/types/sample.hpp"

namespace orvane::types {
namespace {

using test::output_of;

template <typename T>
std::string printed(const T& sample, const char* description, DDS_UnsignedLong indent) {
    return output_of([&] { PluginSupport<T>::print_data(&sample, description, indent); });
}

TEST(Printing, ShowsMembersOneLevelDeeperThanTheDescription) {
    EXPECT_EQ(printed(*Filled<QEL_KX_LogMessage>(), "record", 1),
              "   record:\n"
              "      hostAndAppId:\n"
              "         rtps_host_id: 16909060\n"
              "         rtps_app_id: 168496141\n"
              "      level: 300\n"
              "      category: \"net\"\n"
              "      message: \"hi\"\n");
    EXPECT_EQ(output_of([] { QEL_KX_LogMessageTypeSupport_print_data(nullptr); }), "\nNULL\n");
}

TEST(Printing, OfAUnionShowsTheSelectedBranch) {
    Sample<QEL_KX_ADMIN_Command> command;
    set_pairs(*command, 1);
    EXPECT_EQ(printed(*command, nullptr, 0),
              "\n"
              "   _d: QEL_KX_SET_QEL_LOGGER_LEVEL (1)\n"
              "   _u.categoryAndVerbosity:\n"
              "      [0]:\n"
              "         category: QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM (0)\n"
              "         verbosity: QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR (1)\n");
    command->_d = QEL_KX_SET_LOG_LEVEL;
    command->_u.filterLevel = 7;
    EXPECT_EQ(printed(*command, nullptr, 0),
              "\n   _d: QEL_KX_SET_LOG_LEVEL (0)\n   _u.filterLevel: 7\n");
    // No enumerator has this number, so that it can only be written as one.
    const DDS_Long nothing = 17;
    std::memcpy(&command->_d, &nothing, sizeof nothing);
    EXPECT_EQ(printed(*command, nullptr, 0), "\n   _d: 17\n");
}

TEST(Printing, OfAnArrayShowsAllElements) {
    const std::string text = printed(*Filled<QEL_KX_ADMIN_State>(), "state of a logger", 0);
    EXPECT_NE(text.find("   state: QEL_KX_STATE_OPERATIONAL (1)\n"), std::string::npos);
    EXPECT_NE(text.find("   qelLoggerVerbosities:\n      [0]:\n"), std::string::npos);
    EXPECT_NE(text.find("      [4]:\n"
                        "         category: QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API (4)\n"
                        "         verbosity: QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL (5)\n"
                        "   qelLoggerPrintFormat: "),
              std::string::npos);
}

TEST(Printing, OfAValueTakesOneLine) {
    EXPECT_EQ(printed(QEL_KX_COMMAND_RESULT_ERROR, "result", 1),
              "   result: QEL_KX_COMMAND_RESULT_ERROR (2)\n");
    EXPECT_EQ(output_of([] {
                  QELPrint_string(nullptr, "message", 2);
                  QELPrint_enum(6, nullptr, nullptr, 1);
              }),
              "      message: NULL\n   6\n");
}

}  // namespace
}  // namespace orvane::types
