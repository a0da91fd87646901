#include <gtest/gtest.h>

#include "tests/engine/node.hpp"
#include "tests/engine/peer.hpp"

namespace pexa::engine {
namespace {

TEST(Delivery, KeepsBytesTimestampAndKeyBetweenTwoParticipants) {
    struct Case {
        const char* what;
        bool same_type_object;
    };
    for (const Case& testcase : {Case{"shared sample", true}, Case{"converted sample", false}}) {
        SCOPED_TRACE(testcase.what);
        const auto type = std::make_shared<NoteType>();
        const Node from(topic_of_this_test(), type);
        const Node to(topic_of_this_test(),
                      testcase.same_type_object ? type : std::make_shared<NoteType>());
        const EntityId reader = to.reader();
        const EntityId writer = from.writer();
        ASSERT_TRUE(await_writer(reader));
        const Nanoseconds timestamp = 1'234'567'890'123'456'789;
        ASSERT_EQ(write_note(writer, 7, "odd size", timestamp), Status::ok);

        const std::vector<Sample> samples = take_some(reader, 1);

        ASSERT_EQ(samples.size(), 1U);
        const auto bytes = samples[0].payload.bytes();
        EXPECT_EQ(Buffer(bytes.begin(), bytes.end()), note(7, "odd size"));
        EXPECT_EQ(samples[0].payload.kind(), PayloadKind::data);
        EXPECT_EQ(samples[0].payload.key_hash(), note_hash(7));
        EXPECT_EQ(samples[0].info.instance, note_hash(7));
        EXPECT_EQ(samples[0].info.source_timestamp, timestamp);
        EXPECT_TRUE(samples[0].info.valid_data);
        LocalHandle publication = 0;
        EXPECT_EQ(get_local_handle(writer, publication), Status::ok);
        EXPECT_EQ(samples[0].info.publication, publication);
    }
}

TEST(Delivery, BringsPayloadsOfAnySizeFromAnotherProcess) {
    const Node node;
    const EntityId reader = node.reader();
    Peer peer;
    peer.ask("writer " + topic_of_this_test() + " 0");
    // Whole and partial words, one packet, several fragments, many.
    const std::vector<std::size_t> sizes{1, 4, 1'000, 20'000, 70'003, 1'000'000};
    for (const std::size_t size : sizes) {
        ASSERT_EQ(peer.ask("write " + std::to_string(size) + " " + std::to_string(size)), "0");
    }

    const std::vector<Sample> samples = take_some(reader, sizes.size());

    ASSERT_EQ(samples.size(), sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        EXPECT_EQ(text_of(samples[i].payload.bytes()), text_of_size(sizes[i]));
        EXPECT_EQ(samples[i].info.source_timestamp, static_cast<Nanoseconds>(sizes[i]));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(samples[i].payload.bytes().data()) % 8, 0U);
    }
}

TEST(Delivery, WritesToAnotherProcess) {
    const Node node;
    const EntityId writer = node.writer();
    Peer peer;
    ASSERT_EQ(peer.ask("reader " + topic_of_this_test()), "0");
    ASSERT_EQ(write_note(writer, 1, text_of_size(5)), Status::ok);
    ASSERT_EQ(write_note(writer, 2, text_of_size(100'001)), Status::ok);
    ASSERT_EQ(dispose_note(writer, 3), Status::ok);

    EXPECT_EQ(peer.ask("take 3"), "1:5 2:100001 3:- ");
    EXPECT_EQ(wait_for_acknowledgments(writer, patience), Status::ok);
}

TEST(Delivery, DropsACorruptPayloadAndDeliversTheNext) {
    const Node node;
    const EntityId reader = node.reader();
    Peer peer;
    peer.ask("writer " + topic_of_this_test() + " 0");
    EXPECT_EQ(peer.ask("write 1 3"), "0");
    EXPECT_EQ(peer.ask("corrupt 2"), "0");
    EXPECT_EQ(peer.ask("write 3 3"), "0");

    EXPECT_EQ(summary(take_some(reader, 2)), "1:" + text_of_size(3) + " 3:" + text_of_size(3));
}

TEST(Delivery, GivesALateReaderTheHistoryOfTheWriterInOrder) {
    struct Case {
        int depth;  // 0 keeps all
        const char* expected;
    };
    for (const Case& testcase :
         {Case{1, "1:e"}, Case{3, "1:c 1:d 1:e"}, Case{0, "1:a 1:b 1:c 1:d 1:e"}}) {
        SCOPED_TRACE(testcase.depth);
        const Node from;
        const Node to;
        Qos qos = keep_everything();
        if (testcase.depth > 0) {
            qos.history = HistoryPolicy{HistoryKind::keep_last, testcase.depth};
        }
        const EntityId writer = from.writer(qos);
        for (const char* text : {"a", "b", "c", "d", "e"}) {
            ASSERT_EQ(write_note(writer, 1, text), Status::ok);
        }

        const EntityId reader = to.reader();

        ASSERT_EQ(wait_for_historical_data(reader, patience), Status::ok);
        std::vector<Sample> samples;
        ASSERT_EQ(read_or_take(reader, Access::take, {}, unlimited, samples), Status::ok);
        EXPECT_EQ(summary(samples), testcase.expected);
    }
}

TEST(Delivery, GivesALateReaderOfAnotherProcessTheHistoryOfTheWriter) {
    const Node node;
    Qos qos = keep_everything();
    qos.history = HistoryPolicy{HistoryKind::keep_last, 2};
    const EntityId writer = node.writer(qos);
    for (std::size_t size = 1; size <= 4; ++size) {
        ASSERT_EQ(write_note(writer, 1, text_of_size(size)), Status::ok);
    }
    Peer peer;
    ASSERT_EQ(peer.ask("reader " + topic_of_this_test()), "0");

    EXPECT_EQ(peer.ask("take 2"), "1:3 1:4 ");
}

TEST(Delivery, TimesOutWhenAReliableReaderHasNoRoom) {
    const Node node;
    Qos small = keep_everything();
    small.resource_limits = ResourceLimitsPolicy{1, unlimited, unlimited};
    const EntityId reader = node.reader(small);
    Qos impatient = keep_everything();
    impatient.reliability->max_blocking_time = 50 * millisecond;
    const EntityId writer = node.writer(impatient);
    ASSERT_TRUE(await_writer(reader));
    ASSERT_EQ(write_note(writer, 1, "fits"), Status::ok);

    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(write_note(writer, 1, "waits"), Status::timeout);

    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    EXPECT_EQ(summary(take_some(reader, 1)), "1:fits");
    EXPECT_EQ(write_note(writer, 1, "fits again"), Status::ok);
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

TEST(Delivery, RefusesWhatCannotBeWritten) {
    const Node node;
    const EntityId writer = node.writer();
    const EntityId reader = node.reader();
    const auto fill = [](std::span<std::byte>) { return true; };
    const auto refuse = [](std::span<std::byte>) { return false; };
    const KeyHash key = note_hash(1);

    EXPECT_EQ(write(writer, WriteKind::data, key, 3, fill, 1), Status::bad_parameter);
    EXPECT_EQ(write(writer, WriteKind::data, key, 8, refuse, 1), Status::bad_parameter);
    EXPECT_EQ(write(writer, WriteKind::data, key, 8, fill, -1), Status::bad_parameter);
    EXPECT_EQ(write(writer, WriteKind::data, key, std::size_t{1} << 40U, fill, 1),
              Status::out_of_resources);
    EXPECT_EQ(write(reader, WriteKind::data, key, 8, fill, 1), Status::bad_parameter);
    EXPECT_FALSE(knows_instance(writer, key));
    std::vector<Sample> samples;
    EXPECT_EQ(read_or_take(reader, Access::take, {}, unlimited, samples), Status::no_data);
}

}  // namespace
}  // namespace pexa::engine
