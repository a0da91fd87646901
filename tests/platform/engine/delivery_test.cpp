#include <dds/dds.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/platform/engine/node.hpp"

namespace {
int flushes = 0;
}

extern "C" {
void __real_dds_write_flush(dds_entity_t writer);
void __wrap_dds_write_flush(dds_entity_t writer) {
    ++flushes;
    __real_dds_write_flush(writer);
}
}

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

TEST(Delivery, SendsWhatIsCollectedBeforeTheHistoryWouldDropIt) {
    const Node node;
    Qos qos = keep_everything();
    qos.batching = true;
    qos.history = HistoryPolicy{HistoryKind::keep_last, 3};
    const EntityId writer = node.writer(qos);
    const int before = flushes;
    for (int sample = 0; sample < 9; ++sample) {
        ASSERT_EQ(write_note(writer, 1, "text"), Status::ok);
    }
    EXPECT_GE(flushes, before + 3);
}

TEST(Delivery, SendsWhatIsCollectedBeforeAnythingThatWaits) {
    const Node node;
    Qos qos = keep_everything();
    qos.batching = true;
    const EntityId writer = node.writer(qos);
    ASSERT_EQ(write_note(writer, 1, "first"), Status::ok);
    const int before = flushes;
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    ASSERT_EQ(write_note(writer, 1, "second"), Status::ok);
    EXPECT_EQ(flushes, before + 1);
    EXPECT_EQ(wait_for_acknowledgments(writer, patience), Status::ok);
    EXPECT_EQ(flushes, before + 2);

    const EntityId other = node.writer(keep_everything());
    ASSERT_EQ(write_note(other, 1, "alone"), Status::ok);
    EXPECT_EQ(flushes, before + 2) << "of a writer that does not batch";
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
