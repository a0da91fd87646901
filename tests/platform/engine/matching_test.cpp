#include <gtest/gtest.h>

#include "tests/platform/engine/node.hpp"

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

}  // namespace
}  // namespace pexa::engine
