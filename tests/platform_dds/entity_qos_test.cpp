#include <cstring>

#include <gtest/gtest.h>

#include "probe_node.hpp"

namespace {

using pexa::dds::OwnedQos;

DDS_DomainParticipantFactory* factory() {
    return DDS_DomainParticipantFactory_get_instance();
}

TEST(EntityQos, EachEntityKeepsWhatItWasCreatedWith) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer([](DDS_DataWriterQos& qos) {
        qos.lifespan.duration = {3, 4};
    });
    OwnedQos<DDS_DataWriterQos> qos;
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &qos.get()), DDS_RETCODE_OK);
    EXPECT_EQ(qos.get().history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(qos.get().lifespan.duration.sec, 3);
    EXPECT_EQ(qos.get().lifespan.duration.nanosec, 4u);
}

TEST(EntityQos, ContradictionsAreRefusedAtCreationAndChange) {
    const ProbeNode node;
    DDS_DataReader* reader = node.reader();
    OwnedQos<DDS_DataReaderQos> qos;
    ASSERT_EQ(DDS_DataReader_get_qos(reader, &qos.get()), DDS_RETCODE_OK);
    qos.get().history = {DDS_KEEP_LAST_HISTORY_QOS, 5};
    qos.get().resource_limits.max_samples_per_instance = 4;
    EXPECT_EQ(DDS_DataReader_set_qos(reader, &qos.get()), DDS_RETCODE_INCONSISTENT_POLICY);
    EXPECT_EQ(DDS_Subscriber_set_default_datareader_qos(node.subscriber, &qos.get()),
              DDS_RETCODE_INCONSISTENT_POLICY);
    EXPECT_EQ(
        DDS_Subscriber_create_datareader(node.subscriber, DDS_Topic_as_topicdescription(node.topic),
                                         &qos.get(), nullptr, DDS_STATUS_MASK_NONE),
        nullptr);
}

TEST(EntityQos, AnEnabledEntityChangesOnlyWhatMayChange) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    OwnedQos<DDS_DataWriterQos> qos;
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &qos.get()), DDS_RETCODE_OK);
    qos.get().lifespan.duration = {9, 0};
    EXPECT_EQ(DDS_DataWriter_set_qos(writer, &qos.get()), DDS_RETCODE_OK);
    qos.get().durability.kind = DDS_VOLATILE_DURABILITY_QOS;
    EXPECT_EQ(DDS_DataWriter_set_qos(writer, &qos.get()), DDS_RETCODE_IMMUTABLE_POLICY);
    OwnedQos<DDS_DataWriterQos> kept;
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &kept.get()), DDS_RETCODE_OK);
    EXPECT_EQ(kept.get().lifespan.duration.sec, 9);
    EXPECT_EQ(kept.get().durability.kind, DDS_TRANSIENT_LOCAL_DURABILITY_QOS);
}

TEST(EntityQos, ADefaultAppliesToWhatIsCreatedLater) {
    const ProbeNode node;
    OwnedQos<DDS_DataWriterQos> wanted;
    wanted.get().transport_priority.value = 7;
    ASSERT_EQ(DDS_Publisher_set_default_datawriter_qos(node.publisher, &wanted.get()),
              DDS_RETCODE_OK);
    OwnedQos<DDS_DataWriterQos> given;
    ASSERT_EQ(DDS_Publisher_get_default_datawriter_qos(node.publisher, &given.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(given.get().transport_priority.value, 7);
    DDS_DataWriter* writer = DDS_Publisher_create_datawriter(
        node.publisher, node.topic, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &given.get()), DDS_RETCODE_OK);
    EXPECT_EQ(given.get().transport_priority.value, 7);

    ASSERT_EQ(DDS_Publisher_set_default_datawriter_qos(node.publisher, DDS_QOS_DEFAULT),
              DDS_RETCODE_OK);
    ASSERT_EQ(DDS_Publisher_get_default_datawriter_qos(node.publisher, &given.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(given.get().transport_priority.value, 0);
}

TEST(EntityQos, TheParticipantsDefaultsApplyToTopicsPublishersAndSubscribers) {
    const ProbeNode node;
    OwnedQos<DDS_TopicQos> topic_qos;
    topic_qos.get().durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    OwnedQos<DDS_PublisherQos> publisher_qos;
    publisher_qos.get().entity_factory.autoenable_created_entities = 0;
    OwnedQos<DDS_SubscriberQos> subscriber_qos;
    subscriber_qos.get().entity_factory.autoenable_created_entities = 0;
    DDS_DomainParticipant* participant = node.participant;
    ASSERT_EQ(DDS_DomainParticipant_set_default_topic_qos(participant, &topic_qos.get()),
              DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DomainParticipant_set_default_publisher_qos(participant, &publisher_qos.get()),
              DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DomainParticipant_set_default_subscriber_qos(participant, &subscriber_qos.get()),
              DDS_RETCODE_OK);

    const std::string name = topic_of_this_test() + "_new";
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant, name.c_str(), "Probe", DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    OwnedQos<DDS_TopicQos> of_topic;
    ASSERT_EQ(DDS_Topic_get_qos(topic, &of_topic.get()), DDS_RETCODE_OK);
    EXPECT_EQ(of_topic.get().durability.kind, DDS_TRANSIENT_LOCAL_DURABILITY_QOS);
    DDS_Publisher* publisher = DDS_DomainParticipant_create_publisher(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataWriter* writer = DDS_Publisher_create_datawriter(publisher, topic, DDS_QOS_DEFAULT,
                                                             nullptr, DDS_STATUS_MASK_NONE);
    EXPECT_EQ(DDS_Entity_is_enabled(DDS_DataWriter_as_entity(writer)), 0);
    DDS_Subscriber* subscriber = DDS_DomainParticipant_create_subscriber(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    OwnedQos<DDS_SubscriberQos> of_subscriber;
    ASSERT_EQ(DDS_Subscriber_get_qos(subscriber, &of_subscriber.get()), DDS_RETCODE_OK);
    EXPECT_EQ(of_subscriber.get().entity_factory.autoenable_created_entities, 0);
}

TEST(EntityQos, TheParticipantShowsItsPlaceOnTheWire) {
    const ProbeNode node;
    OwnedQos<DDS_DomainParticipantQos> qos;
    ASSERT_EQ(DDS_DomainParticipant_get_qos(node.participant, &qos.get()), DDS_RETCODE_OK);
    const DDS_InstanceHandle_t handle =
        DDS_Entity_get_instance_handle(DDS_DomainParticipant_as_entity(node.participant));
    const DDS_UnsignedLong words[] = {qos.get().wire_protocol.rtps_host_id,
                                      qos.get().wire_protocol.rtps_app_id,
                                      qos.get().wire_protocol.rtps_instance_id};
    for (unsigned i = 0; i < 12; ++i) {
        EXPECT_EQ(handle.keyHash.value[i], (words[i / 4] >> (24 - 8 * (i % 4))) & 0xff) << i;
    }
}

TEST(QosProfiles, WithoutLoadedProfilesThereAreNoNamesAndNoQos) {
    DDS_StringSeq names{};
    ASSERT_EQ(DDS_StringSeq_ensure_length(&names, 1, 1), 1);
    EXPECT_EQ(DDS_DomainParticipantFactory_get_qos_profiles(factory(), &names, "library"),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_StringSeq_get_length(&names), 0);
    EXPECT_EQ(DDS_DomainParticipantFactory_get_qos_profile_libraries(factory(), &names),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_StringSeq_get_length(&names), 0);
    DDS_StringSeq_finalize(&names);

    OwnedQos<DDS_DataWriterQos> qos;
    qos.get().transport_priority.value = 7;
    EXPECT_EQ(DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
                  factory(), &qos.get(), "library", "profile", nullptr),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(qos.get().transport_priority.value, 7) << "left as it was";
}

}  // namespace
