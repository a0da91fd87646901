#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

TEST(CommandLine, RefusesWrongUsageAndNamesWhatIsValid) {
    const std::string levels = "FATAL, SEVERE, ERROR, WARNING, NOTICE, INFO, DEBUG, TRACE";
    const struct {
        Words arguments;
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
        EXPECT_EQ(tool.wait_for_end(), "exit 2") << tool.transcript();
        EXPECT_TRUE(tool.output().out.empty()) << tool.transcript();
        EXPECT_NE(tool.transcript().find(each.says), std::string::npos)
            << "expected: " << each.says << "\ngot: " << tool.transcript();
    }
}

TEST(CommandLine, FollowsASilentDomainForTheTimeAskedFor) {
    const auto start = std::chrono::steady_clock::now();
    ChildProcess tool{
        tool_in_domain({"tail", "--for", "0.5", "--json", "--level", "-5", "--category", "nav.*"})};
    EXPECT_EQ(tool.wait_for_end(), "exit 0") << tool.transcript();
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds{500});
    EXPECT_TRUE(tool.transcript().starts_with("[stderr] orvane: 0 messages of 0 applications in "))
        << tool.transcript();
}

}  // namespace
}  // namespace orvane::tests
