#include <gtest/gtest.h>

#include "tests/engine/lines.hpp"
#include "tests/engine/peer.hpp"

namespace pexa::engine {
namespace {

// Writes many notes and returns the number of packets that left this process meanwhile.
std::ptrdiff_t packets_of_many_notes(EntityId writer, Lines& lines) {
    lines.clear();
    for (std::uint32_t number = 0; number < 100; ++number) {
        EXPECT_EQ(write_note(writer, number, text_of_size(5)), Status::ok);
    }
    flush(writer);
    EXPECT_EQ(wait_for_acknowledgments(writer, patience), Status::ok);
    return lines.count(LogCategory::traffic, "traffic-xmit");
}

TEST(Batching, LetsSmallSamplesSharePackets) {
    Lines lines(log_mask() | log_bit(LogCategory::traffic));
    const Node node;
    const EntityId prompt = node.writer();
    Qos qos = keep_everything();
    qos.batching = true;
    const EntityId batching = node.writer(qos);
    const EntityId prompt_again = node.writer();
    Peer peer;
    ASSERT_EQ(peer.ask("reader " + topic_of_this_test()), "0");
    for (const EntityId writer : {prompt, batching, prompt_again}) {
        ASSERT_TRUE(await_reader(writer));
    }

    EXPECT_GE(packets_of_many_notes(prompt, lines), 100);
    EXPECT_LT(packets_of_many_notes(batching, lines), 50);
    EXPECT_GE(packets_of_many_notes(prompt_again, lines), 100);
    const std::string received = peer.ask("take 300");
    EXPECT_EQ(std::count(received.begin(), received.end(), ':'), 300);
}

}  // namespace
}  // namespace pexa::engine
