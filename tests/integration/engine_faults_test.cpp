#include <unistd.h>

#include <algorithm>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

TEST(Unloading, LeavesTheEngineTheCodeThatItCallsAndTheLibraryReadyForAnotherLoad) {
    ChildProcess application{{ORVANE_UNLOADING_APPLICATION, domain(), ORVANE_LIBRARY}};
    for (const std::string round : {"1", "2"}) {
        application.send_line("");
        ASSERT_TRUE(application.wait_for_line("> loaded " + round)) << application.transcript();
        // Its endpoints come and go while the library is loaded and while it is not.
        Viewer viewer;
        EXPECT_TRUE(viewer.wait_until([](const auto& messages) { return !messages.empty(); }))
            << application.transcript();
        application.send_line("");
        ASSERT_TRUE(application.wait_for_line("> unloaded " + round)) << application.transcript();
    }
    application.close_input();
    EXPECT_EQ(application.wait_for_end(), "exit 0") << application.transcript();
}

TEST(FileDescriptors, AreEnoughOrTheLoggerIsRefusedWithALine) {
    for (const char* limit : {"6", "7", "8", "9", "12"}) {
        ChildProcess logger{
            peer_command("log", {}, {"sh", "-c", "ulimit -n $0; exec \"$@\"", limit})};
        EXPECT_EQ(logger.wait_for_end(), "exit 1") << limit << '\n' << logger.transcript();
        const std::vector<std::string> lines = logger.output().error;
        EXPECT_TRUE(!lines.empty() && lines[0].starts_with("pexac: domain ")) << limit;
    }
}

TEST(Threads, AreEnoughOrTheLoggerIsRefusedWithALine) {
    const auto log_with = [](const std::string& limit) {
        Words launcher{"prlimit", "--nproc=" + limit};
        if (geteuid() == 0) {
            // The limit does not hold for root. Another user may have no right to read the program.
            launcher.insert(launcher.end(), {"setpriv", "--reuid", "60123", "--inh-caps",
                                             "+dac_override", "--ambient-caps", "+dac_override"});
        }
        return peer_command("log", {}, launcher);
    };
    ChildProcess refused{log_with("4")};
    EXPECT_EQ(refused.wait_for_end(), "exit 1") << refused.transcript();
    const std::vector<std::string> lines = refused.output().error;
    EXPECT_TRUE(!lines.empty() && lines[0].find(" threads, and ") != std::string::npos)
        << refused.transcript();

    ChildProcess logger{log_with("4000")};
    logger.close_input();
    EXPECT_EQ(logger.wait_for_end(), "exit 0") << logger.transcript();
}

/// Runs a shell script in a network of its own with one interface, "gone".
class InterfaceDisappears : public testing::Test {
protected:
    void SetUp() override {
        ChildProcess probe{{"unshare", "--net", "true"}};
        if (probe.wait_for_end() != "exit 0") {
            GTEST_SKIP() << "no network namespace can be made here: " << probe.transcript();
        }
    }

    /// @return what runs the script, with a program as its arguments, in that network
    static Words launcher(const std::string& script) {
        const std::string network =
            "ip link add gone type veth peer name other\n"
            "ip address add 10.78.0.1/24 dev gone\n"
            "ip link set gone up\nip link set other up\nunset CYCLONEDDS_URI\n";
        return {"unshare", "--net", "sh", "-ec", network + script, "sh"};
    }
};

TEST_F(InterfaceDisappears, AndTheLoggerEnds) {
    ChildProcess logger{peer_command(
        "log", {},
        launcher("ip link set lo up\n"
                 "(echo identity; read line; ip link delete gone; echo finish) | \"$@\""))};
    ASSERT_TRUE(logger.wait_until([](const Output& output) { return !output.out.empty(); }))
        << logger.transcript();
    logger.send_line("");
    EXPECT_TRUE(logger.wait_for_line("> finish 0")) << logger.transcript();
    EXPECT_EQ(logger.wait_for_end(), "exit 0") << logger.transcript();
}

TEST_F(InterfaceDisappears, AndTheToolObeysASignalAlsoWhereTheEngineHangs) {
    // Without the loopback interface nothing wakes the engine's threads.
    ChildProcess tool{tool_in_domain(
        {"tail"}, launcher("\"$@\" &\n"
                           "while ! ip maddress | grep -q 239.255; do sleep 0.05; done\n"
                           "ip link delete gone; kill -TERM $!; wait $!"))};
    EXPECT_EQ(tool.wait_for_end(), "exit 0") << tool.transcript();
    EXPECT_TRUE(std::ranges::any_of(tool.output().error, [](const std::string& line) {
        return line.starts_with("orvane: 0 messages");
    })) << tool.transcript();
}

}  // namespace
}  // namespace orvane::tests
