// An application of ours and examples/fast_dds/peer.cpp, which explains its lines.
#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

TEST(GeneratedTypes, ReadLogsAndStateAndSendEachCommand) {
    Application application{{"--kind", "grinder"}};
    const std::string logger = application.ask("identity");
    ChildProcess peer{{ORVANE_FAST_DDS_PEER, domain()}};
    const auto state = [&](const std::string& settings) {
        return "state " + logger + ' ' + domain() + " 1 grinder " + settings;
    };
    ASSERT_TRUE(peer.wait_for_line(state("600 1 1 1 1 1 0"))) << peer.transcript();

    ASSERT_TRUE(application.say(300, "two", "grüße, 世界"));
    EXPECT_TRUE(peer.wait_for_line("log " + logger + " 300 two grüße, 世界")) << peer.transcript();
    const std::string long_text(4096, 't');
    ASSERT_TRUE(application.say(400, std::string(512, 'c'), long_text));
    EXPECT_TRUE(
        peer.wait_for_line("log " + logger + " 400 " + std::string(512, 'c') + ' ' + long_text));

    const auto command = [&](const std::string& invocation, const std::string& what,
                             std::chrono::milliseconds longest = patience) {
        peer.send_line(invocation + ' ' + logger + ' ' + what);
        return peer.wait_for_line("response " + logger + ' ' + invocation + " 0", longest);
    };
    // No request is kept for a logger that has not met its writer.
    for (int attempt = 1; attempt < 100 && !command(std::to_string(attempt), "format 0",
                                                    std::chrono::milliseconds{300});
         ++attempt) {
    }
    EXPECT_TRUE(command("101", "level 700")) << peer.transcript();
    EXPECT_TRUE(peer.wait_for_line(state("700 1 1 1 1 1 0"))) << peer.transcript();
    EXPECT_TRUE(command("102", "verbosity 1 2")) << peer.transcript();
    EXPECT_TRUE(peer.wait_for_line(state("700 1 2 1 1 1 0"))) << peer.transcript();
    EXPECT_TRUE(command("103", "format 6")) << peer.transcript();
    EXPECT_TRUE(peer.wait_for_line(state("700 1 2 1 1 1 6"))) << peer.transcript();
    EXPECT_EQ(application.ask("finish"), "finish 0");
    peer.close_input();
    EXPECT_EQ(peer.wait_for_end(), "exit 0") << peer.transcript();
}

}  // namespace
}  // namespace orvane::tests
