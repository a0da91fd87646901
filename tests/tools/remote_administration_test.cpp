#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/child_process.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;
/// How long the engine takes a participant for alive that no longer says so, if nobody tells it
/// otherwise.
constexpr std::chrono::seconds lease{10};

std::vector<std::string> in_domain(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--domain", std::to_string(domain_id)});
    return tool_command(arguments);
}

/// For commands that end as soon as they have what they wait for: on a busy host that takes longer
/// than a user would wait.
std::vector<std::string> in_domain_patiently(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--timeout", "30"});
    return in_domain(std::move(arguments));
}

bool contains(const std::vector<std::string>& lines, const std::string& text) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

/// `orvane list --watch` with its output in a pipe.
class Watch {
public:
    [[nodiscard]] bool wait_for(const std::string& text, std::chrono::milliseconds longest) {
        return process_.wait_until([&](const Output& output) { return contains(output.out, text); },
                                   longest);
    }
    /// Waits until the logger is ready. A first State that is read early tells that it is still
    /// being made, and a later line that it is operational.
    [[nodiscard]] bool wait_for_operational(const std::string& logger,
                                            std::chrono::milliseconds longest) {
        return process_.wait_until(
            [&](const Output& output) {
                return std::any_of(output.out.begin(), output.out.end(),
                                   [&](const std::string& line) {
                                       return line.find(logger) != std::string::npos &&
                                              line.find(" OPERATIONAL") != std::string::npos;
                                   });
            },
            longest);
    }
    ChildProcess& process() { return process_; }

private:
    ChildProcess process_{in_domain({"list", "--watch"})};
};

class RemoteAdministration : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(watch_.wait_for_operational(pump_id_ + " pump", patience));
        ASSERT_TRUE(watch_.wait_for_operational(planner_id_ + " planner", patience));
    }

    Watch watch_;
    Application pump_{domain_id, {"--kind", "pump"}};
    Application planner_{domain_id, {"--kind", "planner"}};
    std::string pump_id_ = pump_.ask("identity");
    std::string planner_id_ = planner_.ask("identity");
};

TEST_F(RemoteAdministration, ShowsEveryLoggerForPeopleAndForPrograms) {
    ChildProcess table{in_domain_patiently({"list"})};
    EXPECT_EQ(table.wait_for_end(patience), "exit 0") << table.transcript();
    const std::vector<std::string> rows = table.output().out;
    ASSERT_EQ(rows.size(), 3U) << table.transcript();
    EXPECT_TRUE(rows[0].starts_with("LOGGER "));
    EXPECT_TRUE(contains(rows, pump_id_ + "  pump     OPERATIONAL  INFO   "));
    EXPECT_TRUE(contains(rows, planner_id_ + "  planner  OPERATIONAL  INFO   "));

    ChildProcess json{in_domain_patiently({"list", "--json"})};
    EXPECT_EQ(json.wait_for_end(patience), "exit 0") << json.transcript();
    std::vector<std::string> kinds;
    for (const std::string& line : json.output().out) {
        const auto logger = nlohmann::json::parse(line);
        kinds.push_back(logger["kind"]);
        EXPECT_EQ(logger["app"], kinds.back() == "pump" ? pump_id_ : planner_id_);
        EXPECT_EQ(logger["domain"], domain_id);
        EXPECT_EQ(logger["verbosities"]["api"], "ERROR");
    }
    std::sort(kinds.begin(), kinds.end());
    EXPECT_EQ(kinds, (std::vector<std::string>{"planner", "pump"}));
}

TEST_F(RemoteAdministration, ChangesTheSettingsOfThoseWhoAreMeantAndShowsThem) {
    const std::string pump = pump_id_ + " pump  ";
    const std::string planner = planner_id_ + " planner  ";
    const struct {
        std::vector<std::string> arguments;
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
        ChildProcess tool{in_domain_patiently(each.arguments)};
        EXPECT_EQ(tool.wait_for_end(patience), "exit 0") << tool.transcript();
        EXPECT_TRUE(tool.output().error.empty()) << tool.transcript();
        EXPECT_EQ(tool.output().out.size(), each.says.size()) << tool.transcript();
        for (const std::string& line : each.says) {
            EXPECT_TRUE(contains(tool.output().out, line)) << tool.transcript();
        }
    }
    EXPECT_TRUE(watch_.wait_for("changed  " + pump + "filter level DEBUG -> 650", patience));
    EXPECT_TRUE(watch_.wait_for("changed  " + planner + "print format DEFAULT", patience));
}

TEST_F(RemoteAdministration, SaysWhoIsThereWhenNobodyIsMeant) {
    for (const char* target : {"valve", "00000001:00000002"}) {
        ChildProcess tool{in_domain({"set-level", target, "INFO", "--timeout", "6"})};
        EXPECT_EQ(tool.wait_for_end(patience), "exit 1") << tool.transcript();
        EXPECT_TRUE(tool.output().out.empty()) << tool.transcript();
        EXPECT_TRUE(contains(tool.output().error, std::string{"is '"} + target + "'; there are:"));
        EXPECT_TRUE(contains(tool.output().error, pump_id_ + "  pump ")) << tool.transcript();
        EXPECT_TRUE(contains(tool.output().error, planner_id_ + "  planner "));
    }
}

TEST_F(RemoteAdministration, SeesLoggersEndAndTellsTheKilledFromTheFinished) {
    EXPECT_EQ(planner_.ask("finish"), "finish 0");
    EXPECT_TRUE(watch_.wait_for("gone     " + planner_id_ + " planner  ended", patience))
        << watch_.process().transcript();

    const auto killed = std::chrono::steady_clock::now();
    pump_.process().send_signal(SIGKILL);
    EXPECT_TRUE(watch_.wait_for("gone     " + pump_id_ + " pump  lost", patience))
        << watch_.process().transcript();
    const std::chrono::duration<double> unnoticed = std::chrono::steady_clock::now() - killed;
    RecordProperty("unnoticed_seconds", std::to_string(unnoticed.count()));
    // What the lease leaves open is how late a busy host looks.
    EXPECT_LE(unnoticed, 2 * lease);

    watch_.process().send_signal(SIGINT);
    EXPECT_EQ(watch_.process().wait_for_end(patience), "exit 0");
}

TEST(RemoteAdministrationOfNobody, ListsNothingWithSuccessAndSetsNothingWithout) {
    ChildProcess list{in_domain({"list"})};
    EXPECT_EQ(list.wait_for_end(patience), "exit 0") << list.transcript();
    EXPECT_TRUE(list.output().out.empty()) << list.transcript();
    ChildProcess set{in_domain({"set-level", "*", "INFO"})};
    EXPECT_EQ(set.wait_for_end(patience), "exit 1") << set.transcript();
    EXPECT_TRUE(contains(set.output().error, "there is none at all")) << set.transcript();
}

TEST(RemoteAdministrationOfNobody, FailsWhenTheOutputCannotBeWritten) {
    Application pump{domain_id, {"--kind", "pump"}};
    ASSERT_NE(pump.ask("identity"), "no answer");
    for (const char* command : {"list", "list --watch", "set-level pump INFO"}) {
        std::ostringstream line;
        line << "exec '" << tool_command({}).front() << "' " << command << " --timeout 30 --domain "
             << domain_id << " > /dev/full";
        ChildProcess tool{{"/bin/sh", "-c", line.str()}};
        EXPECT_EQ(tool.wait_for_end(patience), "exit 1") << tool.transcript();
        EXPECT_TRUE(contains(tool.output().error, "could not write: No space left on device"))
            << tool.transcript();
    }
}

}  // namespace
}  // namespace orvane::tests
