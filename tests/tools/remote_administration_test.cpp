#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <utility>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

/// The engine's default lease of a participant: so long it counts as alive without a sign of life.
constexpr std::chrono::seconds lease{10};

/// What a subcommand that ends by itself has printed. A busy host may need longer than a user would
/// wait.
Output output_of(Words arguments, const std::string& ending) {
    arguments.insert(arguments.end(), {"--timeout", "30"});
    ChildProcess tool{tool_in_domain(std::move(arguments))};
    EXPECT_EQ(tool.wait_for_end(), ending) << tool.transcript();
    return tool.output();
}

bool contains(const std::vector<std::string>& lines, const std::string& first,
              const std::string& second = "") {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(first) != std::string::npos && line.find(second) != std::string::npos;
    });
}

std::string host_name() {
    char name[HOST_NAME_MAX + 1] = {};
    gethostname(name, sizeof(name) - 1);
    return name;
}

/// Two loggers, and `orvane list --watch` with its output in a pipe.
class RemoteAdministration : public testing::Test {
protected:
    void SetUp() override {
        // The first State that is read may be one of a logger that is not ready yet.
        ASSERT_TRUE(watch_for(pump_id_ + " pump", " OPERATIONAL"));
        ASSERT_TRUE(watch_for(planner_id_ + " planner", " OPERATIONAL"));
    }

    bool watch_for(const std::string& first, const std::string& second = "") {
        return watch_.wait_until(
            [&](const Output& output) { return contains(output.out, first, second); });
    }

    ChildProcess watch_{tool_in_domain({"list", "--watch"})};
    Application pump_{{"--kind", "pump"}};
    Application planner_{{"--kind", "planner"}};
    std::string pump_id_ = pump_.ask("identity");
    std::string planner_id_ = planner_.ask("identity");
};

TEST_F(RemoteAdministration, ShowsEveryLoggerForPeopleAndForPrograms) {
    const std::vector<std::string> rows = output_of({"list"}, "exit 0").out;
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_TRUE(rows[0].starts_with("KIND "));
    for (Application* each : {&pump_, &planner_}) {
        const std::string kind = each == &pump_ ? "pump     " : "planner  ";
        std::string id = std::to_string(each->process().id());
        id.resize(std::max(id.size(), std::string("PID").size()), ' ');
        EXPECT_TRUE(contains(rows, kind + host_name(),
                             "  " + id + "  " + each->ask("identity") + "  OPERATIONAL  INFO   "))
            << testing::PrintToString(rows);
    }
    EXPECT_TRUE(contains(output_of({"list", "--json"}, "exit 0").out, "\"app\":\"" + pump_id_,
                         "\"host\":\"" + host_name() + "\""));
}

TEST_F(RemoteAdministration, ChangesTheSettingsOfItsTargetsAndShowsThem) {
    const std::string pump = pump_id_ + " pump  ";
    const std::string planner = planner_id_ + " planner  ";
    const struct {
        Words arguments;
        std::vector<std::string> says;
    } cases[] = {
        {{"set-level", "p*", "debug"},
         {pump + "filter level INFO -> DEBUG", planner + "filter level INFO -> DEBUG"}},
        {{"set-level", pump_id_, "650"}, {pump + "filter level DEBUG -> 650"}},
        {{"set-level", "planner", "DEBUG"}, {planner + "filter level DEBUG"}},
        {{"set-level", "planner", "SILENT"}, {planner + "filter level DEBUG -> SILENT"}},
        {{"set-verbosity", "pump", "COMMUNICATION", "status_local", "4", "0", "ENTITIES", "ERROR"},
         {pump + "COMMUNICATION ERROR -> STATUS_LOCAL, API ERROR -> SILENT, ENTITIES ERROR"}},
        {{"set-format", "pl[a-z]*", "Verbose_Timestamped"},
         {planner + "print format DEFAULT -> VERBOSE_TIMESTAMPED"}},
    };
    for (const auto& each : cases) {
        const Output output = output_of(each.arguments, "exit 0");
        EXPECT_EQ(output.error, std::vector<std::string>{});
        EXPECT_TRUE(std::is_permutation(output.out.begin(), output.out.end(), each.says.begin(),
                                        each.says.end()))
            << testing::PrintToString(output.out);
    }
    EXPECT_TRUE(watch_for("changed  " + pump + "filter level DEBUG -> 650"));
    EXPECT_TRUE(watch_for("changed  " + planner + "print format DEFAULT"));
}

TEST_F(RemoteAdministration, ListsTheLoggersWhenNoneIsOfTheTarget) {
    ChildProcess tool{tool_in_domain({"set-level", "valve", "INFO", "--timeout", "6"})};
    EXPECT_EQ(tool.wait_for_end(), "exit 1") << tool.transcript();
    for (const std::string& line : {std::string{"is 'valve'; there are:"},
                                    pump_id_ + "  OPERATIONAL", planner_id_ + "  OPERATIONAL"}) {
        EXPECT_TRUE(contains(tool.output().error, line)) << tool.transcript();
    }
}

TEST_F(RemoteAdministration, SeesLoggersEndAndTellsTheKilledFromTheFinished) {
    EXPECT_EQ(planner_.ask("finish"), "finish 0");
    EXPECT_TRUE(watch_for("gone     " + planner_id_ + " planner  ended")) << watch_.transcript();

    const auto killed = std::chrono::steady_clock::now();
    pump_.process().send_signal(SIGKILL);
    EXPECT_TRUE(watch_for("gone     " + pump_id_ + " pump  lost")) << watch_.transcript();
    const std::chrono::duration<double> unnoticed = std::chrono::steady_clock::now() - killed;
    // A busy host may look some time after the lease has ended.
    EXPECT_LE(unnoticed, 2 * lease);

    watch_.send_signal(SIGINT);
    EXPECT_EQ(watch_.wait_for_end(), "exit 0");
}

TEST(RemoteAdministrationOfNobody, ListsNothingWithSuccessAndSetsNothingWithout) {
    ChildProcess list{tool_in_domain({"list"})};
    EXPECT_EQ(list.wait_for_end(), "exit 0") << list.transcript();
    EXPECT_TRUE(list.output().out.empty()) << list.transcript();
    ChildProcess set{tool_in_domain({"set-level", "*", "INFO"})};
    EXPECT_EQ(set.wait_for_end(), "exit 1") << set.transcript();
    EXPECT_TRUE(contains(set.output().error, "there is none at all")) << set.transcript();
}

TEST(Tool, FailsWhenItsOutputCannotBeWritten) {
    Application pump{{"--kind", "pump"}};
    ASSERT_EQ(pump.ask("log 300 1 0"), "log");
    for (const char* command : {"tail", "list --timeout 30", "list --watch --timeout 30",
                                "set-level pump INFO --timeout 30"}) {
        ChildProcess tool{{"/bin/sh", "-c",
                           "exec '" + tool_command({}).front() + "' " + command + " --domain " +
                               domain() + " > /dev/full"}};
        EXPECT_EQ(tool.wait_for_end(), "exit 1") << tool.transcript();
        EXPECT_TRUE(contains(tool.output().error, "could not write: No space left on device"))
            << tool.transcript();
    }
}

TEST(CommandLine, RefusesWrongUsageAndNamesWhatIsValid) {
    const std::string levels = "FATAL, SEVERE, ERROR, WARNING, NOTICE, INFO, DEBUG, TRACE";
    const struct {
        Words arguments;
        std::string says;
    } cases[] = {
        {{"tail", "--level", "LOUD"}, "'LOUD' is no level: one of " + levels + " or a number"},
        {{"tail", "--app", "pump#x"}, "'pump#x' is no target: a number from 1 on expected behind"},
        {{"tail", "--exclude", ""}, "'' is no target: HOST:APP in hexadecimal, KIND, KIND@HOST or"},
        {{"tail", "--time", "utc"},
         "'utc' is no form of times: one of clock, relative, delta, iso"},
        {{"tail", "--domain", "233"}, "--domain: Value 233 not in range "},
        {{"tail", "--count", "0"}, "--count: Value 0 not in range "},
        {{"tail", "--for", "-1"}, "seconds, 0 or more"},
        {{"tail", "--for", "nan"}, "seconds, 0 or more"},
        {{"list", "--timeout", "soon"}, "'soon' is no time: seconds, 0 or more, expected"},
        {{"set-level", "", "INFO"}, "'' is no target: HOST:APP in hexadecimal, KIND,"},
        {{"set-level", "pump", "LOUD"},
         "'LOUD' is no level: one of SILENT, " + levels + " or a number from 0 on expected"},
        {{"set-level", "pump", "--", "-1"}, "'-1' is no level: one of SILENT, " + levels},
        {{"set-level", "pump", "INFO", "--domain", "-1"}, "--domain: Value -1 not"},
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
