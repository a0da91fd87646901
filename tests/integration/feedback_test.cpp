#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/viewer.hpp"

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
    Viewer viewer{ORVANE_TEST_DOMAIN, {"--category", "com.qel.*"}};
    ChildProcess peer{
        {ORVANE_FLOODING_PEER, std::to_string(ORVANE_TEST_DOMAIN), std::to_string(messages)}};
    ASSERT_TRUE(viewer.wait_for(1, diagnostics, longest)) << peer.transcript();
    const std::size_t before = viewer.messages(diagnostics).size();

    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(peer.send_line("go"));
    ASSERT_TRUE(viewer.wait_for(1, "com.qel.end", longest)) << peer.transcript();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;

    // What the middleware reports of itself in that time is some hundred lines a second. A single
    // line for each message that is published would be as many as the messages.
    const std::size_t reported = viewer.messages(diagnostics).size() - before;
    EXPECT_LT(reported, messages / 10);

    const std::vector<long> memory = memory_readings(peer.output());
    ASSERT_EQ(memory.size(), 2u) << peer.transcript();
#if ORVANE_MEASURES_MEMORY
    EXPECT_LT(memory[1] - memory[0], 2048) << "KiB more after the other nine tenths";
#endif
    std::cout << messages << " messages in " << elapsed.count() << " s, " << reported
              << " diagnostics, memory " << memory[0] << " then " << memory[1] << " KiB\n";
    peer.close_input();
    EXPECT_EQ(peer.wait_for_end(longest), "exit 0");
}

}  // namespace
}  // namespace orvane::tests
