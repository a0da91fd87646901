#include <gtest/gtest.h>

#include "tests/engine/node.hpp"
#include "tests/engine/peer.hpp"

namespace pexa::engine {
namespace {

// Takes what a reader has of an instance.
Sample take_one(EntityId reader) {
    std::vector<Sample> samples = take_some(reader, 1);
    EXPECT_EQ(samples.size(), 1U);
    return samples.empty() ? Sample{} : samples.front();
}

TEST(Instance, PassesThroughTheStatesOfItsLife) {
    struct Case {
        const char* what;
        Status (*end)(EntityId, std::uint32_t);
        bool autodispose;
        std::uint32_t state;
        int disposed_generations;
        int no_writers_generations;
    };
    const Case cases[] = {
        {"dispose", dispose_note, true, instance_disposed, 1, 0},
        {"unregister, autodispose", unregister_note, true, instance_disposed, 1, 1},
        {"unregister", unregister_note, false, instance_no_writers, 0, 1},
    };
    for (const Case& testcase : cases) {
        SCOPED_TRACE(testcase.what);
        const Node from;
        const Node to;
        const EntityId reader = to.reader();
        Qos qos = keep_everything();
        qos.autodispose_unregistered_instances = testcase.autodispose;
        const EntityId writer = from.writer(qos);
        ASSERT_TRUE(await_writer(reader));

        ASSERT_EQ(write_note(writer, 4, "born"), Status::ok);
        const Sample born = take_one(reader);
        EXPECT_EQ(born.info.view_state, view_new);
        EXPECT_EQ(born.info.instance_state, instance_alive);

        ASSERT_EQ(testcase.end(writer, 4), Status::ok);
        const Sample ended = take_one(reader);
        EXPECT_FALSE(ended.info.valid_data);
        EXPECT_EQ(ended.info.instance_state, testcase.state);
        EXPECT_EQ(ended.info.view_state, view_not_new);
        EXPECT_EQ(ended.info.instance, note_hash(4));
        EXPECT_EQ(ended.payload.kind(), PayloadKind::key);
        const auto bytes = ended.payload.bytes();
        EXPECT_EQ(Buffer(bytes.begin(), bytes.end()), note_key(4));

        // What comes next belongs to a new life, unless the reader has purged the instance.
        ASSERT_EQ(write_note(writer, 4, "back"), Status::ok);
        const Sample back = take_one(reader);
        EXPECT_EQ(back.info.view_state, view_new);
        EXPECT_EQ(back.info.instance_state, instance_alive);
    }
}

TEST(Instance, EndsForAReaderOfAnotherProcess) {
    const Node node;
    const EntityId reader = node.reader();
    Peer peer;
    peer.ask("writer " + topic_of_this_test() + " 0");
    ASSERT_EQ(peer.ask("write 1 1"), "0");
    ASSERT_EQ(peer.ask("write 2 1"), "0");
    EXPECT_EQ(summary(take_some(reader, 2)), "1:a 2:a");

    ASSERT_EQ(peer.ask("dispose 1"), "0");
    const Sample disposed = take_one(reader);
    EXPECT_EQ(disposed.info.instance, note_hash(1));
    EXPECT_EQ(disposed.info.instance_state, instance_disposed);

    ASSERT_EQ(peer.ask("unregister 2"), "0");
    const Sample unregistered = take_one(reader);
    EXPECT_EQ(unregistered.info.instance, note_hash(2));
    EXPECT_EQ(unregistered.info.instance_state, instance_disposed);
    EXPECT_EQ(unregistered.payload.bytes().size(), note_key(2).size());
}

TEST(Instance, IsReadByItselfWithTheStatesAskedFor) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    for (const char* text : {"a", "b"}) {
        ASSERT_EQ(write_note(writer, 1, text), Status::ok);
        ASSERT_EQ(write_note(writer, 2, text), Status::ok);
    }
    std::vector<Sample> samples;
    const StateMask unread{.sample_states = sample_not_read};
    const StateMask nothing{.instance_states = 0};

    EXPECT_EQ(read_or_take_instance(reader, Access::read, unread, 1, note_hash(2), samples),
              Status::ok);
    EXPECT_EQ(read_or_take_instance(reader, Access::read, unread, unlimited, note_hash(2), samples),
              Status::ok);
    EXPECT_EQ(read_or_take_instance(reader, Access::read, unread, unlimited, note_hash(2), samples),
              Status::no_data);
    EXPECT_EQ(summary(samples), "2:a 2:b");
    EXPECT_EQ(samples[0].info.view_state, view_new);
    EXPECT_EQ(samples[1].info.view_state, view_not_new);

    EXPECT_EQ(read_or_take(reader, Access::take, nothing, unlimited, samples), Status::no_data);
    samples.clear();
    EXPECT_EQ(read_or_take(reader, Access::take, {}, unlimited, samples), Status::ok);
    EXPECT_EQ(summary(samples), "1:a 1:b 2:a 2:b");
    EXPECT_EQ(samples[0].info.sample_rank, 1);
    EXPECT_EQ(samples[0].info.sample_state, sample_not_read);
    EXPECT_EQ(samples[2].info.sample_state, sample_read);
    EXPECT_EQ(read_or_take_instance(reader, Access::take, {}, 1, note_hash(3), samples),
              Status::bad_parameter);
    EXPECT_EQ(read_or_take(reader, Access::take, {}, 0, samples), Status::bad_parameter);
}

TEST(Instance, FollowsAnotherInTheOrderOfTheKeys) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId other_reader = node.reader();
    const EntityId writer = node.writer();
    const EntityId other_topic =
        create_topic(node.participant, "other", std::make_shared<NoteType>(), {}).entity;
    const EntityId stranger = create_writer(node.publisher, other_topic, keep_everything()).entity;
    ASSERT_EQ(write_note(stranger, 20, "of another type object"), Status::ok);
    for (const std::uint32_t number : {300U, 2U, 70'000U, 41U}) {
        ASSERT_EQ(write_note(writer, number, std::to_string(number)), Status::ok);
    }
    // An instance without samples in this reader is passed over.
    std::vector<Sample> samples;
    ASSERT_EQ(read_or_take_instance(reader, Access::take, {}, unlimited, note_hash(41), samples),
              Status::ok);
    samples.clear();

    const KeyHash* previous = nullptr;
    KeyHash last{};
    while (read_or_take_next_instance(reader, Access::read, {}, unlimited, previous, samples) ==
           Status::ok) {
        last = samples.back().info.instance;
        previous = &last;
    }
    EXPECT_EQ(summary(samples), "2:2 300:300 70000:70000");

    samples.clear();
    const KeyHash unknown = note_hash(50);
    EXPECT_EQ(read_or_take_next_instance(reader, Access::take, {}, 1, &unknown, samples),
              Status::ok);
    EXPECT_EQ(summary(samples), "300:300");
    samples.clear();
    const KeyHash before = note_hash(40);
    EXPECT_EQ(read_or_take_next_instance(other_reader, Access::take, {}, 1, &before, samples),
              Status::ok);
    EXPECT_EQ(summary(samples), "41:41");
}

TEST(Instance, IsKnownToAWriterFromItsFirstUseToItsUnregistration) {
    const Node node;
    const EntityId writer = node.writer();
    const KeyHash key = note_hash(8);
    Payload payload;
    EXPECT_FALSE(knows_instance(writer, key));
    EXPECT_EQ(get_key(writer, key, payload), Status::bad_parameter);

    const auto fill_key = [](std::span<std::byte> out) {
        const Buffer encoded = note_key(8);
        std::copy(encoded.begin(), encoded.end(), out.begin());
        return true;
    };
    const auto use = [&](int how) {
        if (how == 0) {
            return register_instance(writer, key, note_key(8).size(), fill_key);
        }
        return how == 1 ? write_note(writer, 8, "text") : dispose_note(writer, 8);
    };
    for (const int how : {0, 1, 2}) {
        SCOPED_TRACE(how);
        ASSERT_EQ(use(how), Status::ok);
        EXPECT_TRUE(knows_instance(writer, key));
        ASSERT_EQ(get_key(writer, key, payload), Status::ok);
        EXPECT_EQ(Buffer(payload.bytes().begin(), payload.bytes().end()), note_key(8));
        EXPECT_EQ(payload.kind(), PayloadKind::key);
        ASSERT_EQ(unregister_note(writer, 8), Status::ok);
        EXPECT_FALSE(knows_instance(writer, key));
    }
}

TEST(Instance, IsKnownToAReaderThatHasReceivedIt) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    EXPECT_FALSE(knows_instance(reader, note_hash(9)));
    ASSERT_EQ(write_note(writer, 9, "here"), Status::ok);
    EXPECT_TRUE(knows_instance(reader, note_hash(9)));
    EXPECT_FALSE(knows_instance(reader, note_hash(10)));
    Payload payload;
    ASSERT_EQ(get_key(reader, note_hash(9), payload), Status::ok);
    EXPECT_EQ(Buffer(payload.bytes().begin(), payload.bytes().end()), note_key(9));
    EXPECT_EQ(get_key(reader, note_hash(10), payload), Status::bad_parameter);
}

TEST(Instance, OfAKeylessTypeIsAlwaysTheSame) {
    const Node node(topic_of_this_test(), std::make_shared<NoteType>(false));
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    ASSERT_EQ(write_note(writer, 1, "a"), Status::ok);
    ASSERT_EQ(write_note(writer, 2, "b"), Status::ok);
    const std::vector<Sample> samples = take_some(reader, 2);
    EXPECT_EQ(summary(samples), "0:a 0:b");
    EXPECT_EQ(samples[0].info.sample_rank, 1);
}

}  // namespace
}  // namespace pexa::engine
