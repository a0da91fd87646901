#include <unistd.h>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

/// Two hosts of the test's own: network namespaces with a link between them.
class BetweenTwoHosts : public testing::Test {
protected:
    void SetUp() override {
        const std::string obstacle = failure_of("ip netns add $0");
        if (!obstacle.empty()) {
            GTEST_SKIP() << "no network namespace can be made here: " << obstacle;
        }
        ASSERT_EQ(failure_of(R"(ip netns add $1
            ip link add wire netns $0 type veth peer name wire netns $1
            ip -n $0 address add 10.77.0.1/24 dev wire
            ip -n $1 address add 10.77.0.2/24 dev wire
            for host in $0 $1; do
                ip -n $host link set lo up
                ip -n $host link set wire up
            done)"),
                  "");
    }
    /// Removes the namespaces with all that is in them.
    ~BetweenTwoHosts() override {
        failure_of("ip netns delete $0");
        failure_of("ip netns delete $1");
    }

    /// What starts a program on a host, 0 or 1.
    Words launcher(std::size_t host) const {
        return {"ip",
                "netns",
                "exec",
                hosts_[host],
                "env",
                "CYCLONEDDS_URI=<Domain><General><Interfaces><NetworkInterface name=\"wire\"/>"
                "</Interfaces></General></Domain>"};
    }

private:
    /// Runs a script with the names of the hosts. @return what it prints when it fails
    std::string failure_of(const std::string& script) const {
        ChildProcess process{{"sh", "-exc", script, hosts_[0], hosts_[1]}};
        return process.wait_for_end() == "exit 0" ? "" : process.transcript();
    }

    const std::string hosts_[2] = {"orvane-a-" + std::to_string(getpid()),
                                   "orvane-b-" + std::to_string(getpid())};
};

TEST_F(BetweenTwoHosts, LoggersAreToldApartByTheirHosts) {
    Application there{{"--kind", "rover"}, launcher(0)};
    Application here{{"--kind", "base"}, launcher(1)};
    Viewer viewer{{}, launcher(1)};
    ASSERT_TRUE(connect(there, viewer)) << viewer.process().transcript();
    ASSERT_TRUE(connect(here, viewer)) << viewer.process().transcript();
    const std::string rover = there.ask("identity");
    EXPECT_NE(rover.substr(0, 8), here.ask("identity").substr(0, 8));

    ASSERT_EQ(there.ask("log 600 1000 500"), "log");
    EXPECT_TRUE(await_all(there, viewer)) << there.process().transcript();
    EXPECT_EQ(difference(there.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(there.diagnostics(), std::vector<std::string>{});

    ChildProcess tool{
        tool_in_domain({"set-level", rover, "DEBUG", "--timeout", "20"}, launcher(1))};
    tool.wait_for_end();
    EXPECT_EQ(tool.transcript(), rover + " rover  filter level INFO -> DEBUG\nexit 0");
}

}  // namespace
}  // namespace orvane::tests
