#include <gtest/gtest.h>

#include "tests/engine/node.hpp"
#include "tests/engine/peer.hpp"

namespace pexa::engine {
namespace {

TEST(Matching, TellsBothSidesOfTheOther) {
    const Node from;
    const Node to;
    Qos qos = keep_everything();
    qos.user_data = Bytes{std::byte{1}, std::byte{2}};
    const EntityId reader = to.reader(qos);
    qos.user_data = Bytes{std::byte{3}};
    const EntityId writer = from.writer(qos);
    ASSERT_TRUE(await_reader(writer));
    ASSERT_TRUE(await_writer(reader));
    std::vector<LocalHandle> of_writer;
    std::vector<LocalHandle> of_reader;
    ASSERT_EQ(get_matched_subscriptions(writer, of_writer), Status::ok);
    ASSERT_EQ(get_matched_publications(reader, of_reader), Status::ok);
    ASSERT_EQ(of_writer.size(), 1U);
    ASSERT_EQ(of_reader.size(), 1U);

    EndpointData data;
    Guid guid;
    Guid participant_guid;
    ASSERT_EQ(get_matched_subscription(writer, of_writer[0], data), Status::ok);
    ASSERT_EQ(get_guid(reader, guid), Status::ok);
    ASSERT_EQ(get_guid(to.participant, participant_guid), Status::ok);
    EXPECT_EQ(data.guid, guid);
    EXPECT_EQ(data.participant_guid, participant_guid);
    EXPECT_EQ(data.topic_name, topic_of_this_test());
    EXPECT_EQ(data.type_name, "test::Note");
    EXPECT_EQ(data.qos.user_data, (Bytes{std::byte{1}, std::byte{2}}));

    ASSERT_EQ(get_matched_publication(reader, of_reader[0], data), Status::ok);
    ASSERT_EQ(get_guid(writer, guid), Status::ok);
    EXPECT_EQ(data.guid, guid);
    EXPECT_EQ(data.qos.user_data, Bytes{std::byte{3}});
    EXPECT_EQ(data.qos.durability, DurabilityKind::transient_local);

    EXPECT_EQ(get_matched_publication(reader, of_reader[0] + 1, data), Status::bad_parameter);
    EXPECT_EQ(get_matched_subscriptions(reader, of_writer), Status::illegal_operation);
    std::uint32_t domain = 0;
    EXPECT_EQ(get_domain_id(reader, domain), Status::ok);
    EXPECT_EQ(domain, std::uint32_t{ORVANE_TEST_DOMAIN});
}

TEST(Matching, EndsWhenTheOtherProcessEnds) {
    const Node node;
    const EntityId reader = node.reader();
    {
        Peer peer;
        peer.ask("writer " + topic_of_this_test() + " 0");
        ASSERT_TRUE(await_writer(reader));
    }
    ASSERT_EQ(set_status_condition(reader, subscription_matched_status), Status::ok);
    SubscriptionMatched matched;
    ASSERT_EQ(get_status(reader, matched), Status::ok);
    while (matched.current_count > 0 && await(reader) == Status::ok) {
        ASSERT_EQ(get_status(reader, matched), Status::ok);
    }
    EXPECT_EQ(matched.current_count, 0);
    EXPECT_EQ(matched.total_count, 1);
    std::vector<LocalHandle> handles{1};
    EXPECT_EQ(get_matched_publications(reader, handles), Status::ok);
    EXPECT_TRUE(handles.empty());
}

TEST(Matching, FollowsPartitions) {
    const Node node;
    Qos of_a;
    of_a.partition = {"a", "c"};
    Qos of_b;
    of_b.partition = {"b"};
    Qos of_any;
    of_any.partition = {"*"};
    const auto subscriber = [&](const Qos& qos) {
        return create_subscriber(node.participant, qos).entity;
    };
    const EntityId publisher = create_publisher(node.participant, of_a).entity;
    const EntityId writer = create_writer(publisher, node.topic, keep_everything()).entity;
    const EntityId same = create_reader(subscriber(of_a), node.topic, keep_everything()).entity;
    const EntityId other = create_reader(subscriber(of_b), node.topic, keep_everything()).entity;
    const EntityId any = create_reader(subscriber(of_any), node.topic, keep_everything()).entity;
    ASSERT_TRUE(await_reader(writer, 2));
    ASSERT_EQ(write_note(writer, 1, "for a"), Status::ok);
    EXPECT_EQ(summary(take_some(same, 1)), "1:for a");
    EXPECT_EQ(summary(take_some(any, 1)), "1:for a");
    SubscriptionMatched matched;
    ASSERT_EQ(get_status(other, matched), Status::ok);
    EXPECT_EQ(matched.total_count, 0);
}

}  // namespace
}  // namespace pexa::engine
