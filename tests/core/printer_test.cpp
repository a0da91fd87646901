#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "orvane/admin.h"
#include "orvane/core.h"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

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
        {"text", "where", 300, DDS_RETCODE_OK, "KX Error: where: text\n"},
        {"hello", "", 600, DDS_RETCODE_OK, "KX Info: : hello\n"},
        {"ends itself\n", "where", -5, DDS_RETCODE_OK, "KX Silent: where: ends itself\n"},
        {"\n", "where", 600, DDS_RETCODE_OK, "KX Info: where: \n"},
        {"100 %s %n", "%d", 600, DDS_RETCODE_OK, "KX Info: %d: 100 %s %n\n"},
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
}

TEST(Printer, NamesEveryLevel) {
    constexpr struct {
        DDS_Long level;
        const char* name;
    } names[] = {{100, "KX Fatal"},  {200, "KX Severe"}, {300, "KX Error"}, {400, "KX Warning"},
                 {500, "KX Notice"}, {600, "KX Info"},   {700, "KX Debug"}, {800, "KX Trace"},
                 {350, "KX Silent"}, {0, "KX Silent"},   {-5, "KX Silent"}};
    for (const auto& row : names) {
        char buffer[QEL_KX_LEVEL_NAME_SIZE + 1];
        std::memset(buffer, '#', sizeof(buffer));
        EXPECT_EQ(QEL_KX_translateFromKXLogLevelToString(row.level, buffer), DDS_RETCODE_OK);
        EXPECT_STREQ(buffer, row.name);
        EXPECT_EQ(buffer[QEL_KX_LEVEL_NAME_SIZE], '#') << "wrote beyond the promised size";
    }
    EXPECT_EQ(QEL_KX_translateFromKXLogLevelToString(100, nullptr), DDS_RETCODE_BAD_PARAMETER);
}

TEST(Printer, KeepsLinesOfSeveralThreadsApart) {
    const std::string message(300, 'x');
    const std::string output = output_of([&] {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([&] {
                for (int count = 0; count < 500; ++count) {
                    QEL_KX_Orvane_printMessage(message.c_str(), "where", 600);
                }
            });
        }
    });
    std::string expected;
    for (int count = 0; count < 1500; ++count) {
        expected += line("where", message, "Info");
    }
    EXPECT_TRUE(output == expected);
}

}  // namespace
}  // namespace orvane::test
