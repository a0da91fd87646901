#include <gtest/gtest.h>

#include "tests/platform/engine/node.hpp"

namespace pexa::engine {
namespace {

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

}  // namespace
}  // namespace pexa::engine
