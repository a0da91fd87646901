#include <gtest/gtest.h>

#include "platform/engine/engine.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

namespace engine = pexa::engine;

TEST(WrappedParticipants, WorkLikeOthersAndStayTheApplications) {
    DDS_DomainParticipantFactory* factory = ProbeNode::factory();
    engine::Qos engine_qos;
    engine_qos.entity_name = "the application's";
    const engine::EntityId own = engine::create_participant(ORVANE_TEST_DOMAIN, engine_qos).entity;
    engine::Guid guid{};
    ASSERT_EQ(engine::get_guid(own, guid), pexa::Status::ok);
    DDS_DomainParticipant* participant =
        DDS_DomainParticipantFactory_wrap_participant(factory, own);
    ASSERT_NE(participant, nullptr);
    EXPECT_EQ(DDS_DomainParticipant_get_domain_id(participant), ORVANE_TEST_DOMAIN);
    OwnedQos<DDS_DomainParticipantQos> qos;
    ASSERT_EQ(DDS_DomainParticipant_get_qos(participant, &qos.get()), ok);
    EXPECT_STREQ(qos.get().participant_name.name, "the application's");
    EXPECT_EQ(qos.get().wire_protocol.rtps_host_id >> 24, std::to_integer<unsigned>(guid[0]));

    const TULVTypePlugin plugin = probe_plugin();
    ASSERT_EQ(DDS_DomainParticipant_register_type(participant, "Probe", &plugin, nullptr), ok);
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(participant, topic_of_this_test().c_str(),
                                                          "Probe", nullptr, nullptr, 0);
    {
        const ProbeNode node;
        DDS_DataWriter* writer = DDS_Publisher_create_datawriter(
            DDS_DomainParticipant_create_publisher(participant, nullptr, nullptr, 0), topic,
            nullptr, nullptr, 0);
        DDS_DataReader* reader = node.reader([](DDS_DataReaderQos& wanted) {
            wanted.durability.kind = DDS_VOLATILE_DURABILITY_QOS;
        });
        ASSERT_TRUE(await_reader(writer));
        ASSERT_EQ(write(writer, 1, 10), ok);
        EXPECT_EQ(summary(await_samples(reader, 1)), "1:10");
    }
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory, participant), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), ok);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory, participant), ok);
    for (const engine::EntityId id : {engine::create_publisher(own, {}).entity, 0, -1}) {
        EXPECT_EQ(DDS_DomainParticipantFactory_wrap_participant(factory, id), nullptr) << id;
    }
    EXPECT_TRUE(engine::is_participant(own));
    EXPECT_EQ(engine::delete_entity(own), pexa::Status::ok);
    EXPECT_EQ(DDS_DomainParticipantFactory_wrap_participant(factory, own), nullptr);
}

TEST(Factory, IsMadeAnewAfterItWasFinalized) {
    ASSERT_NE(ProbeNode::factory(), nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), ok);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), ok) << "there is none";
    ASSERT_NE(ProbeNode::factory(), nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_create_participant(ProbeNode::factory(), -1, nullptr,
                                                              nullptr, 0),
              nullptr);
}

}  // namespace
