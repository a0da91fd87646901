#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr std::chrono::seconds patience{60};
const std::string domain = std::to_string(ORVANE_TEST_DOMAIN);

TEST(CommandLine, RefusesWrongUsageAndNamesWhatIsValid) {
    const std::string levels = "FATAL, SEVERE, ERROR, WARNING, NOTICE, INFO, DEBUG, TRACE";
    const struct {
        std::vector<std::string> arguments;
        std::string says;
    } cases[] = {
        {{"tail", "--level", "LOUD"}, "'LOUD' is no level: one of " + levels + " or a number"},
        {{"tail", "--app", "1234"}, "'1234' is no application: HOST:APP in hexadecimal"},
        {{"tail", "--domain", "233"}, "0 to 232"},
        {{"tail", "--count", "0"}, "--count: Value 0 not in range 1 to 9223372036854775807\n"},
        {{"tail", "--for", "-1"}, "seconds, 0 or more"},
        {{"tail", "--for", "nan"}, "seconds, 0 or more"},
        {{"list", "--timeout", "soon"}, "'soon' is no time: seconds, 0 or more, expected"},
        {{"set-level", "", "INFO"}, "one of HOST:APP, an application kind, or a pattern"},
        {{"set-level", "pump", "LOUD"},
         "'LOUD' is no level: one of SILENT, " + levels + " or a number from 0 on expected"},
        {{"set-level", "pump", "--", "-1"}, "'-1' is no level: one of SILENT, " + levels},
        {{"set-level", "pump", "INFO", "--domain", "-1"}, "0 to 232"},
        {{"set-verbosity", "pump", "NET", "ERROR"}, "one of PLATFORM, COMMUNICATION, DATABASE, "},
        {{"set-verbosity", "pump", "API"}, "a verbosity for API is missing: one of SILENT, ERROR,"},
        {{"set-verbosity", "pump", "API", "INFO"}, "one of SILENT, ERROR, WARNING, STATUS_LOCAL, "},
        {{"set-verbosity", "pump", "API", "0", "4", "1"}, "the category API is given twice"},
        {{"set-format", "pump", "7"}, "'7' is no print format: one of DEFAULT, TIMESTAMPED, "},
    };
    for (const auto& each : cases) {
        ChildProcess tool{tool_command(each.arguments)};
        EXPECT_EQ(tool.wait_for_end(patience), "exit 2") << tool.transcript();
        EXPECT_TRUE(tool.output().out.empty()) << tool.transcript();
        EXPECT_NE(tool.transcript().find(each.says), std::string::npos)
            << "expected: " << each.says << "\ngot: " << tool.transcript();
    }
}

TEST(CommandLine, ExplainsItselfOnStandardOutput) {
    for (const std::string option : {"--help", "--version"}) {
        ChildProcess tool{tool_command({option})};
        EXPECT_EQ(tool.wait_for_end(patience), "exit 0") << tool.transcript();
        EXPECT_TRUE(tool.output().error.empty()) << tool.transcript();
        EXPECT_NE(tool.transcript().find("orvane "), std::string::npos) << tool.transcript();
    }
}

TEST(CommandLine, FollowsASilentDomainForTheTimeAskedFor) {
    const struct {
        std::vector<std::string> options;
        double seconds;
    } cases[] = {
        {{"--for", "0"}, 0},
        {{"--for", "0.5", "--json", "--level", "-5", "--category", "nav.*", "--count", "7"}, 0.5},
    };
    for (const auto& each : cases) {
        std::vector<std::string> arguments{"tail", "--domain", domain};
        arguments.insert(arguments.end(), each.options.begin(), each.options.end());
        const auto start = std::chrono::steady_clock::now();
        ChildProcess tool{tool_command(arguments)};
        EXPECT_EQ(tool.wait_for_end(patience), "exit 0") << tool.transcript();
        const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - start;
        EXPECT_GE(lasted.count(), each.seconds);
        EXPECT_TRUE(tool.output().out.empty()) << tool.transcript();
        ASSERT_EQ(tool.output().error.size(), 1U) << tool.transcript();
        EXPECT_TRUE(
            tool.output().error.front().starts_with("orvane: 0 messages of 0 applications in "))
            << tool.transcript();
    }
}

}  // namespace
}  // namespace orvane::tests
