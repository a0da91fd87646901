#include <gtest/gtest.h>

#include "tests/engine/node.hpp"

namespace pexa::engine {
namespace {

TEST(Delivery, GivesALateReaderTheHistoryOfTheWriterUnchanged) {
    struct Case {
        int depth;  // 0 keeps all
        const char* expected;
    };
    for (const Case& testcase : {Case{2, "1:b 1:c"}, Case{0, "1:a 1:b 1:c"}}) {
        SCOPED_TRACE(testcase.depth);
        // Type objects of their own, so that samples are converted as if they came from outside.
        const Node from;
        const Node to;
        Qos qos = keep_everything();
        if (testcase.depth > 0) {
            qos.history = HistoryPolicy{HistoryKind::keep_last, testcase.depth};
        }
        const EntityId writer = from.writer(qos);
        for (const char* text : {"a", "b", "c"}) {
            ASSERT_EQ(write_note(writer, 1, text, 1'234'567'890'123'456'789), Status::ok);
        }
        const EntityId reader = to.reader();
        ASSERT_EQ(wait_for_historical_data(reader, patience), Status::ok);
        std::vector<Sample> samples;
        ASSERT_EQ(read_or_take(reader, Access::take, {}, unlimited, samples), Status::ok);
        ASSERT_EQ(summary(samples), testcase.expected);
        const auto bytes = samples.back().payload.bytes();
        EXPECT_EQ(Buffer(bytes.begin(), bytes.end()), note(1, "c"));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bytes.data()) % 8, 0U);
        EXPECT_EQ(samples.back().payload.key_hash(), note_hash(1));
        EXPECT_EQ(samples.back().info.source_timestamp, 1'234'567'890'123'456'789);
    }
}

TEST(Delivery, OfBatchedSamplesEndsWithTheFlush) {
    const Node node;
    const EntityId reader = node.reader();
    Qos qos = keep_everything();
    qos.batching = true;
    const EntityId writer = node.writer(qos);
    ASSERT_EQ(write_note(writer, 1, "first"), Status::ok);
    ASSERT_EQ(write_note(writer, 1, "second"), Status::ok);
    flush(writer);
    EXPECT_EQ(wait_for_acknowledgments(writer, patience), Status::ok);
    EXPECT_EQ(summary(take_some(reader, 2)), "1:first 1:second");
}

TEST(Delivery, KeepsPayloadsAliveWhenTheirEntitiesAreGone) {
    std::vector<Sample> samples;
    Payload key;
    {
        const Node node;
        const EntityId reader = node.reader();
        const EntityId writer = node.writer();
        ASSERT_EQ(write_note(writer, 5, "outlives"), Status::ok);
        ASSERT_EQ(get_key(reader, note_hash(5), key), Status::ok);
        samples = take_some(reader, 1);
    }
    const std::vector<Sample> copies = samples;
    samples.clear();
    EXPECT_EQ(summary(copies), "5:outlives");
    EXPECT_EQ(Buffer(key.bytes().begin(), key.bytes().end()), note_key(5));
}

}  // namespace
}  // namespace pexa::engine
