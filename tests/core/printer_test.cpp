#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "orvane/core.h"
#include "tests/core/faults.hpp"
#include "tests/core/output.hpp"

namespace {

using orvane::test::Fault;
using orvane::test::output_of;

struct Line {
    const char* message;
    const char* context;
    DDS_Long level;
    DDS_ReturnCode_t result;
    const char* output;
};

constexpr const char* null_text =
    "KX Error: QEL_KX_Orvane_printMessage: String passed as parameter is NULL.\n";

constexpr Line lines[] = {
    {"text", "where", 300, DDS_RETCODE_OK, "KX Error: where: text\n"},
    {"text", "where", -5, DDS_RETCODE_OK, "KX Silent: where: text\n"},
    {"hello", "", 600, DDS_RETCODE_OK, "KX Info: : hello\n"},
    {"ends itself\n", "where", 600, DDS_RETCODE_OK, "KX Info: where: ends itself\n"},
    {"\n", "where", 600, DDS_RETCODE_OK, "KX Info: where: \n"},
    {"100 %s %n", "%d", 600, DDS_RETCODE_OK, "KX Info: %d: 100 %s %n\n"},
    {"", "where", 300, DDS_RETCODE_BAD_PARAMETER,
     "KX Error: QEL_KX_Orvane_printMessage: Message to print is empty.\n"},
    {nullptr, "where", 300, DDS_RETCODE_PRECONDITION_NOT_MET, null_text},
    {"text", nullptr, 300, DDS_RETCODE_PRECONDITION_NOT_MET, null_text},
};

TEST(Printer, WritesLevelContextAndMessageAsOneLine) {
    const auto expect_line = [](const Line& line) {
        EXPECT_EQ(output_of([&] {
                      EXPECT_EQ(QEL_KX_Orvane_printMessage(line.message, line.context, line.level),
                                line.result)
                          << line.output;
                  }),
                  line.output);
    };
    for (const Line& line : lines) {
        expect_line(line);
    }
    for (const char* message : {"text", "text\n"}) {
        const Fault fault("QEL_KX_translateFromKXLogLevelToString");
        expect_line(
            {message, "where", 300, DDS_RETCODE_BAD_PARAMETER, "KX Warning: where: text\n"});
    }
}

TEST(Printer, KeepsLinesOfSeveralThreadsApart) {
    constexpr std::size_t lines_per_thread = 500;
    const std::string message(300, 'x');
    const std::string output = output_of([&] {
        std::vector<std::jthread> threads;
        threads.reserve(3);
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&] {
                for (std::size_t line = 0; line < lines_per_thread; ++line) {
                    QEL_KX_Orvane_printMessage(message.c_str(), "where", 600);
                }
            });
        }
    });
    const std::string line = "KX Info: where: " + message + "\n";
    ASSERT_EQ(output.size(), 3 * lines_per_thread * line.size());
    for (std::size_t at = 0; at < output.size(); at += line.size()) {
        ASSERT_EQ(output.compare(at, line.size(), line), 0);
    }
}

}  // namespace
