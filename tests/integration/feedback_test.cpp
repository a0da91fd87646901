#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

constexpr int messages = ORVANE_FLOOD_MESSAGES;
constexpr std::chrono::minutes longest{5};

std::vector<long> memory_readings(const Output& output) {
    const std::string mark = std::string{answer_mark} + "memory ";
    std::vector<long> readings;
    for (const std::string& line : output.out) {
        if (line.starts_with(mark)) {
            readings.push_back(std::stol(line.substr(mark.size())));
        }
    }
    return readings;
}

TEST(Feedback, PublishingAMillionMessagesNeitherFeedsItselfNorTakesMemory) {
    constexpr const char* diagnostics = "com.qel.pexa.config.Logger";
    Viewer viewer{{"--category", "com.qel.*"}};
    ChildProcess peer{peer_command("flood", {std::to_string(messages)})};
    ASSERT_TRUE(viewer.wait_for(1, diagnostics, longest)) << peer.transcript();
    const std::size_t before = viewer.messages(diagnostics).size();

    ASSERT_TRUE(peer.send_line("go"));
    ASSERT_TRUE(viewer.wait_for(1, "com.qel.end", longest)) << peer.transcript();
    // The middleware reports some hundred lines about itself in that time. If the publication of
    // each message were reported too, there would be at least as many lines as messages.
    EXPECT_LT(viewer.messages(diagnostics).size() - before, messages / 10);

    // The end may be seen before the peer has told its second reading.
    const auto has_told = [](const Output& output) { return memory_readings(output).size() == 2; };
    ASSERT_TRUE(peer.wait_until(has_told, longest)) << peer.transcript();
    const std::vector<long> memory = memory_readings(peer.output());
    // The engine may hold another receive buffer of 1 MiB at the end than at the beginning.
    EXPECT_LT(memory[1] - memory[0], 2 << 20) << "bytes more after the other nine tenths";
    peer.close_input();
    EXPECT_EQ(peer.wait_for_end(longest), "exit 0") << peer.transcript();
}

}  // namespace
}  // namespace orvane::tests
