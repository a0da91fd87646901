#include <unistd.h>

#include <iterator>
#include <sstream>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

Words split(const std::string& command) {
    std::istringstream stream{command};
    return {std::istream_iterator<std::string>{stream}, {}};
}

/// Two hosts of the test's own: network namespaces with a link between them.
class BetweenTwoHosts : public testing::Test {
protected:
    void SetUp() override {
        const std::string obstacle = failure_of_ip("netns add " + hosts_[0]);
        if (!obstacle.empty()) {
            GTEST_SKIP() << "no network namespace can be made here: " << obstacle;
        }
        for (const std::string& command :
             {"netns add " + hosts_[1],
              "link add wire netns " + hosts_[0] + " type veth peer name wire netns " + hosts_[1],
              "-n " + hosts_[0] + " address add 10.77.0.1/24 dev wire",
              "-n " + hosts_[1] + " address add 10.77.0.2/24 dev wire"}) {
            ASSERT_EQ(failure_of_ip(command), "");
        }
        for (const std::string& host : hosts_) {
            ASSERT_EQ(failure_of_ip("-n " + host + " link set lo up"), "");
            ASSERT_EQ(failure_of_ip("-n " + host + " link set wire up"), "");
        }
    }
    /// Removes the namespaces with all that is in them.
    ~BetweenTwoHosts() override {
        failure_of_ip("netns delete " + hosts_[0]);
        failure_of_ip("netns delete " + hosts_[1]);
    }

    /// What starts a program on a host, 0 or 1.
    Words launcher(std::size_t host) const {
        Words command = split("ip netns exec " + hosts_[host] + " env");
        command.emplace_back(
            "CYCLONEDDS_URI=<Domain><General><Interfaces><NetworkInterface name=\"wire\"/>"
            "</Interfaces></General></Domain>");
        return command;
    }

private:
    /// Runs `ip`. @return its message when it fails, else nothing
    static std::string failure_of_ip(const std::string& arguments) {
        ChildProcess process{split("ip " + arguments)};
        return process.wait_for_end() == "exit 0" ? ""
                                                  : "ip " + arguments + ": " + process.transcript();
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
