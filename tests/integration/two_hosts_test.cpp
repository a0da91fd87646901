#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/two_hosts.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;

class BetweenTwoHosts : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string obstacle = TwoHosts::obstacle(); !obstacle.empty()) {
            GTEST_SKIP() << "no network namespace can be made here: " << obstacle;
        }
        hosts_ = std::make_unique<TwoHosts>();
    }

    /// What a command of the tool prints on the second host, behind how it ended.
    std::string tool(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(),
                         {"--domain", std::to_string(domain_id), "--timeout", "20"});
        ChildProcess process{tool_command(arguments, hosts_->launcher(1))};
        process.wait_for_end(patience);
        return process.transcript();
    }

    std::unique_ptr<TwoHosts> hosts_;
};

TEST_F(BetweenTwoHosts, LoggersAreToldApartByTheirHosts) {
    Application there{domain_id, {"--kind", "rover"}, hosts_->launcher(0)};
    Application here{domain_id, {"--kind", "base"}, hosts_->launcher(1)};
    Viewer viewer{domain_id, {}, hosts_->launcher(1)};
    ASSERT_TRUE(connect(there, viewer)) << viewer.process().transcript();
    ASSERT_TRUE(connect(here, viewer)) << viewer.process().transcript();
    const std::string rover = there.ask("identity");
    const std::string base = here.ask("identity");
    EXPECT_NE(rover.substr(0, 8), base.substr(0, 8));

    ASSERT_EQ(there.ask("log 600 1000 500"), "log");
    EXPECT_TRUE(await_all(there, viewer)) << there.process().transcript();
    EXPECT_EQ(difference(there.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(there.diagnostics(), std::vector<std::string>{});

    EXPECT_EQ(tool({"set-level", rover, "DEBUG"}),
              rover + " rover  filter level INFO -> DEBUG\nexit 0");
    EXPECT_EQ(tool({"set-level", "*", "INFO"}).find("exit 1"), std::string::npos);
}

}  // namespace
}  // namespace orvane::tests
