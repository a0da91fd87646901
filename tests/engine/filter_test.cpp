#include <gtest/gtest.h>

#include "tests/engine/node.hpp"
#include "tests/engine/peer.hpp"

namespace pexa::engine {
namespace {

ContentFilter shorter_than(std::size_t limit) {
    return [limit](std::span<const std::byte> payload) { return text_of(payload).size() < limit; };
}

TEST(ContentFilter, KeepsWhatItAcceptsAndEveryEnd) {
    const Node node;
    const EntityId filtered = create_topic(node.participant, topic_of_this_test().c_str(),
                                           std::make_shared<NoteType>(), {}, shorter_than(5))
                                  .entity;
    const EntityId reader = create_reader(node.subscriber, filtered, keep_everything()).entity;
    Peer peer;
    peer.ask("writer " + topic_of_this_test() + " 0");
    ASSERT_EQ(peer.ask("write 1 4"), "0");
    ASSERT_EQ(peer.ask("write 1 5"), "0");
    ASSERT_EQ(peer.ask("write 2 60000"), "0");
    ASSERT_EQ(peer.ask("write 1 3"), "0");
    ASSERT_EQ(peer.ask("acknowledged"), "0");
    EXPECT_EQ(summary(take_some(reader, 2)), "1:" + text_of_size(4) + " 1:" + text_of_size(3));

    ASSERT_EQ(peer.ask("dispose 1"), "0");
    const std::vector<Sample> ended = take_some(reader, 1);
    ASSERT_EQ(ended.size(), 1U);
    EXPECT_EQ(ended[0].info.instance_state, instance_disposed);
}

TEST(ContentFilter, CanBeReplacedWhileAReaderUsesIt) {
    const Node node;
    const EntityId filtered = create_topic(node.participant, topic_of_this_test().c_str(),
                                           std::make_shared<NoteType>(), {}, shorter_than(2))
                                  .entity;
    const EntityId reader = create_reader(node.subscriber, filtered, keep_everything()).entity;
    const EntityId writer = node.writer();
    ASSERT_TRUE(await_writer(reader));
    const auto write_all = [writer] {
        for (const char* text : {"a", "bb", "ccc"}) {
            EXPECT_EQ(write_note(writer, 1, text), Status::ok);
        }
    };
    write_all();
    ASSERT_EQ(set_content_filter(filtered, shorter_than(3)), Status::ok);
    write_all();

    EXPECT_EQ(summary(take_some(reader, 3)), "1:a 1:a 1:bb");
}

TEST(ContentFilter, IsOfReadersOnly) {
    const Node node;
    const EntityId filtered = create_topic(node.participant, topic_of_this_test().c_str(),
                                           std::make_shared<NoteType>(), {}, shorter_than(2))
                                  .entity;
    EXPECT_EQ(create_writer(node.publisher, filtered, {}).status, Status::illegal_operation);
    EXPECT_EQ(set_content_filter(node.topic, shorter_than(2)), Status::illegal_operation);
    EXPECT_EQ(set_content_filter(filtered, nullptr), Status::bad_parameter);
    EXPECT_EQ(set_content_filter(node.participant, shorter_than(2)), Status::bad_parameter);
}

TEST(Topic, IsNotDeletedWhileAnEndpointUsesIt) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    EXPECT_EQ(delete_entity(node.topic), Status::precondition_not_met);
    EXPECT_EQ(delete_entity(reader), Status::ok);
    EXPECT_EQ(delete_entity(node.topic), Status::precondition_not_met);
    EXPECT_EQ(write_note(writer, 1, "still works"), Status::ok);
    EXPECT_EQ(delete_entity(node.publisher), Status::ok);
    EXPECT_EQ(delete_entity(node.topic), Status::ok);
    EXPECT_EQ(delete_entity(node.topic), Status::bad_parameter);
}

TEST(Topic, HasOneTypeAndOneSetOfPoliciesPerName) {
    const Node node;
    const std::string name = topic_of_this_test();
    Qos different;
    different.lifespan = millisecond;
    EXPECT_EQ(create_topic(node.participant, name.c_str(), std::make_shared<NoteType>(), different)
                  .status,
              Status::inconsistent_policy);
    EXPECT_EQ(create_topic(node.participant, nullptr, std::make_shared<NoteType>(), {}).status,
              Status::bad_parameter);
    EXPECT_EQ(create_topic(node.participant, name.c_str(), nullptr, {}).status,
              Status::bad_parameter);
    EXPECT_EQ(create_topic(node.publisher, name.c_str(), std::make_shared<NoteType>(), {}).status,
              Status::illegal_operation);
    EXPECT_EQ(create_writer(node.publisher, node.publisher, {}).status, Status::bad_parameter);
    EXPECT_EQ(create_reader(node.subscriber, node.publisher, {}).status, Status::bad_parameter);
}

}  // namespace
}  // namespace pexa::engine
