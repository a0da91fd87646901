#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/two_hosts.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;
const std::string domain = std::to_string(domain_id);

class BetweenTwoHosts : public testing::TestWithParam<Link> {
protected:
    void SetUp() override {
        if (!hosts_.failure().empty()) {
            GTEST_SKIP() << "two network namespaces with a link cannot be made here: "
                         << hosts_.failure();
        }
    }

    /// What a command of the tool prints on the host without the logger, behind how it ended.
    std::string tool(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--domain", domain, "--timeout", "20"});
        ChildProcess process{tool_command(arguments, hosts_.launcher(1))};
        const std::string ending = process.wait_for_end(patience);
        return ending + '\n' + process.transcript();
    }

    TwoHosts hosts_{GetParam()};
};

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_P(BetweenTwoHosts, EveryMessageOfAProfileThatKeepsAllArrives) {
    constexpr std::size_t count = 3'000;
    Viewer viewer{domain_id, {}, hosts_.launcher(1)};
    Application application{domain_id,
                            {"--profile", "delivery", "keep_all"},
                            hosts_.launcher(0, {"PEXA_QOS_PROFILES=" ORVANE_KEEP_ALL_PROFILE})};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    ASSERT_EQ(application.ask("log 600 " + std::to_string(count) + " 1000"), "log");
    EXPECT_TRUE(await_all(application, viewer)) << application.process().transcript();
    EXPECT_EQ(difference(application.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});
}

TEST_P(BetweenTwoHosts, EveryCommandIsAnswered) {
    constexpr int rounds = 5;
    Application application{domain_id, {"--kind", "rover"}, hosts_.launcher(0)};
    ASSERT_NE(application.ask("identity"), "no answer");

    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const std::string raised = tool({"set-level", "rover", "DEBUG"});
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        EXPECT_TRUE(contains(raised, "exit 0") && contains(raised, "DEBUG")) << raised;
        std::cout << "set-level took " << elapsed.count() << " s\n";
        const std::string verbosity = tool({"set-verbosity", "rover", "API", "SILENT"});
        EXPECT_TRUE(contains(verbosity, "exit 0") && contains(verbosity, "SILENT")) << verbosity;
        const std::string lowered = tool({"set-level", "rover", "INFO"});
        EXPECT_TRUE(contains(lowered, "exit 0") && contains(lowered, "INFO")) << lowered;
    }
    const std::string list = tool({"list"});
    EXPECT_TRUE(contains(list, "rover") && contains(list, "SILENT")) << list;
}

INSTANTIATE_TEST_SUITE_P(Links, BetweenTwoHosts, testing::Values(Link::veth, Link::lossy),
                         [](const testing::TestParamInfo<Link>& test) {
                             return test.param == Link::veth ? "veth" : "lossy";
                         });

}  // namespace
}  // namespace orvane::tests
