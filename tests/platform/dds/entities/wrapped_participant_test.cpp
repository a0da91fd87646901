#include <gtest/gtest.h>

#include "platform/engine/engine.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

using pexa::dds::OwnedQos;
namespace engine = pexa::engine;

DDS_DomainParticipantFactory* factory() {
    return DDS_DomainParticipantFactory_get_instance();
}

TEST(WrappedParticipants, WorkLikeOthersAndStayTheApplications) {
    engine::Qos engine_qos;
    engine_qos.entity_name = "the application's";
    const engine::EntityId own = engine::create_participant(ORVANE_TEST_DOMAIN, engine_qos).entity;
    engine::Guid guid{};
    ASSERT_EQ(engine::get_guid(own, guid), pexa::Status::ok);
    DDS_DomainParticipant* participant =
        DDS_DomainParticipantFactory_wrap_participant(factory(), own);
    ASSERT_NE(participant, nullptr);
    EXPECT_EQ(DDS_DomainParticipant_get_domain_id(participant), ORVANE_TEST_DOMAIN);
    OwnedQos<DDS_DomainParticipantQos> qos;
    ASSERT_EQ(DDS_DomainParticipant_get_qos(participant, &qos.get()), DDS_RETCODE_OK);
    EXPECT_STREQ(qos.get().participant_name.name, "the application's");
    EXPECT_EQ(qos.get().wire_protocol.rtps_host_id >> 24, std::to_integer<unsigned>(guid[0]));

    const TULVTypePlugin plugin = probe_plugin();
    ASSERT_EQ(DDS_DomainParticipant_register_type(participant, "Probe", &plugin, nullptr),
              DDS_RETCODE_OK);
    const std::string name = topic_of_this_test();
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant, name.c_str(), "Probe", DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    DDS_Publisher* publisher = DDS_DomainParticipant_create_publisher(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    OwnedQos<DDS_DataWriterQos> writer_qos;
    writer_qos.get().durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    DDS_DataWriter* writer = DDS_Publisher_create_datawriter(publisher, topic, &writer_qos.get(),
                                                             nullptr, DDS_STATUS_MASK_NONE);
    {
        const ProbeNode node;
        DDS_DataReader* reader = node.reader();
        ASSERT_EQ(write(writer, {1, 10}), DDS_RETCODE_OK);
        EXPECT_EQ(summary(await_samples(reader, 1)), "1:10");
    }
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory(), participant),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory(), participant),
              DDS_RETCODE_OK);
    const engine::EntityId other_kind = engine::create_publisher(own, {}).entity;
    for (const engine::EntityId id : {other_kind, 0, -1}) {
        EXPECT_EQ(DDS_DomainParticipantFactory_wrap_participant(factory(), id), nullptr) << id;
    }
    EXPECT_TRUE(engine::is_participant(own));
    EXPECT_EQ(engine::delete_entity(own), pexa::Status::ok);
    EXPECT_EQ(DDS_DomainParticipantFactory_wrap_participant(factory(), own), nullptr);
}

TEST(Factory, IsMadeAnewAfterItWasFinalized) {
    ASSERT_NE(factory(), nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK) << "there is none";
    ASSERT_NE(factory(), nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_create_participant(factory(), -1, DDS_QOS_DEFAULT,
                                                              nullptr, DDS_STATUS_MASK_NONE),
              nullptr);
}

}  // namespace
