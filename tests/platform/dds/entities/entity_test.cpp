#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

using pexa::dds::OwnedQos;

constexpr DDS_ReturnCode_t refused = DDS_RETCODE_PRECONDITION_NOT_MET;

DDS_DomainParticipantFactory* factory() {
    return DDS_DomainParticipantFactory_get_instance();
}

DDS_DataWriter* default_writer(DDS_Publisher* publisher, DDS_Topic* topic) {
    return DDS_Publisher_create_datawriter(publisher, topic, DDS_QOS_DEFAULT, nullptr,
                                           DDS_STATUS_MASK_NONE);
}

DDS_DataReader* default_reader(DDS_Subscriber* subscriber, DDS_Topic* topic) {
    return DDS_Subscriber_create_datareader(subscriber, DDS_Topic_as_topicdescription(topic),
                                            DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
}

DDS_Topic* default_topic(const ProbeNode& node, const std::string& name,
                         const char* type = "Probe") {
    return DDS_DomainParticipant_create_topic(node.participant, name.c_str(), type, DDS_QOS_DEFAULT,
                                              nullptr, DDS_STATUS_MASK_NONE);
}

/// A node whose participant leaves new entities disabled.
class DisabledEntities : public testing::Test {
protected:
    DisabledEntities() {
        OwnedQos<DDS_DomainParticipantQos> qos;
        EXPECT_EQ(DDS_DomainParticipant_get_qos(node_.participant, &qos.get()), DDS_RETCODE_OK);
        qos.get().entity_factory.autoenable_created_entities = 0;
        EXPECT_EQ(DDS_DomainParticipant_set_qos(node_.participant, &qos.get()), DDS_RETCODE_OK);
        publisher_ = DDS_DomainParticipant_create_publisher(node_.participant, DDS_QOS_DEFAULT,
                                                            nullptr, DDS_STATUS_MASK_NONE);
        subscriber_ = DDS_DomainParticipant_create_subscriber(node_.participant, DDS_QOS_DEFAULT,
                                                              nullptr, DDS_STATUS_MASK_NONE);
    }

    ProbeNode node_;
    DDS_Publisher* publisher_;
    DDS_Subscriber* subscriber_;
};

TEST_F(DisabledEntities, AWriterExistsButDoesNotTakePartUntilItIsEnabled) {
    DDS_DataWriter* writer = default_writer(publisher_, node_.topic);
    ASSERT_NE(writer, nullptr);
    DDS_Entity* entity = DDS_DataWriter_as_entity(writer);
    DDS_PublicationMatchedStatus status{};
    const DDS_InstanceHandle_t handle = DDS_Entity_get_instance_handle(entity);
    EXPECT_EQ(DDS_Entity_is_enabled(entity), 0);
    EXPECT_EQ(DDS_InstanceHandle_is_valid(&handle), 0);
    EXPECT_EQ(write(writer, {1, 1}), DDS_RETCODE_NOT_ENABLED);
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &patience), DDS_RETCODE_NOT_ENABLED);
    EXPECT_EQ(DDS_DataWriter_get_publication_matched_status(writer, &status),
              DDS_RETCODE_NOT_ENABLED);
    EXPECT_EQ(DDS_Entity_enable(entity), refused) << "its publisher is disabled";

    EXPECT_EQ(DDS_Entity_enable(DDS_Publisher_as_entity(publisher_)), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Entity_is_enabled(entity), 1) << "the publisher enables what it contains";
    EXPECT_EQ(DDS_Entity_enable(entity), DDS_RETCODE_OK) << "again";
    EXPECT_EQ(write(writer, {1, 1}), DDS_RETCODE_OK);

    DDS_Topic* topic = default_topic(node_, topic_of_this_test() + "_disabled");
    EXPECT_EQ(default_writer(publisher_, topic), nullptr) << "its topic is disabled";
    EXPECT_EQ(DDS_Entity_enable(DDS_Topic_as_entity(topic)), DDS_RETCODE_OK);
    EXPECT_NE(default_writer(publisher_, topic), nullptr);
}

TEST_F(DisabledEntities, AReaderGivesNothing) {
    DDS_DataReader* reader = default_reader(subscriber_, node_.topic);
    ASSERT_NE(reader, nullptr);
    ProbeSeq sequence;
    EXPECT_EQ(sequence.receive(reader, take_anything), DDS_RETCODE_NOT_ENABLED);
    EXPECT_EQ(DDS_DataReader_create_readcondition(reader, 1, 1, 1), nullptr);
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    DDS_Condition* status = DDS_StatusCondition_as_condition(
        DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader)));
    EXPECT_EQ(DDS_Condition_get_trigger_value(status), 0);
    EXPECT_EQ(DDS_WaitSet_attach_condition(wait_set, status), refused);
    EXPECT_EQ(DDS_WaitSet_delete(wait_set), DDS_RETCODE_OK);
}

TEST(EnablingAParticipant, BringsEverythingInItIntoOperation) {
    const OwnedQos<DDS_DomainParticipantFactoryQos> standard;
    OwnedQos<DDS_DomainParticipantFactoryQos> qos;
    qos.get().entity_factory.autoenable_created_entities = 0;
    ASSERT_EQ(DDS_DomainParticipantFactory_set_qos(factory(), &qos.get()), DDS_RETCODE_OK);
    {
        ProbeNode node;
        DDS_DataWriter* writer = node.writer();
        DDS_DataReader* reader = node.reader();
        OwnedQos<DDS_DomainParticipantQos> of_disabled;
        EXPECT_EQ(DDS_DomainParticipant_get_qos(node.participant, &of_disabled.get()),
                  DDS_RETCODE_OK);
        EXPECT_EQ(of_disabled.get().wire_protocol.rtps_host_id, 0U);
        EXPECT_EQ(DDS_DomainParticipant_assert_liveliness(node.participant),
                  DDS_RETCODE_NOT_ENABLED);
        ASSERT_EQ(DDS_Entity_enable(DDS_DomainParticipant_as_entity(node.participant)),
                  DDS_RETCODE_OK);
        EXPECT_EQ(write(writer, {1, 10}), DDS_RETCODE_OK);
        EXPECT_EQ(summary(await_samples(reader, 1)), "1:10");
        EXPECT_EQ(DDS_DomainParticipant_assert_liveliness(node.participant), DDS_RETCODE_OK);
    }
    ASSERT_EQ(DDS_DomainParticipantFactory_set_qos(factory(), DDS_QOS_DEFAULT), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DomainParticipantFactory_get_qos(factory(), &qos.get()), DDS_RETCODE_OK);
    EXPECT_TRUE(pexa::dds::equal_qos(qos.get(), standard.get()));
}

TEST(Deletion, WhatIsInUseOrContainsSomethingOrIsForeignStays) {
    const int endpoints = attached_endpoints();
    const ProbeNode node;
    const ProbeNode other(topic_of_this_test() + "_other");
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    EXPECT_GE(attached_endpoints(), endpoints + 2);

    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory(), node.participant),
              refused);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_publisher(node.participant, node.publisher), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_subscriber(node.participant, node.subscriber), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(node.participant, node.topic), refused);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(node.participant, "Probe"), refused);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(node.participant, "Unknown"),
              DDS_RETCODE_BAD_PARAMETER);

    EXPECT_EQ(DDS_Publisher_delete_datawriter(other.publisher, writer), refused);
    EXPECT_EQ(DDS_Subscriber_delete_datareader(other.subscriber, reader), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_publisher(other.participant, node.publisher), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(other.participant, node.topic), refused);
    EXPECT_EQ(default_writer(other.publisher, node.topic), nullptr);

    EXPECT_EQ(DDS_Publisher_delete_datawriter(node.publisher, writer), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(node.participant, node.topic), refused)
        << "the reader still uses it";
    EXPECT_EQ(DDS_Subscriber_delete_datareader(node.subscriber, reader), DDS_RETCODE_OK);
    EXPECT_EQ(attached_endpoints(), endpoints);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(node.participant, node.topic), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(node.participant, "Probe"), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_publisher(node.participant, node.publisher),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_subscriber(node.participant, node.subscriber),
              DDS_RETCODE_OK);
}

TEST(LookUp, FindsEntitiesByNameAndDomainAndFromEachOther) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const std::string name = topic_of_this_test();
    DDS_TopicDescription* found =
        DDS_DomainParticipant_lookup_topicdescription(node.participant, name.c_str());
    EXPECT_EQ(DDS_Topic_narrow(found), node.topic);
    EXPECT_EQ(DDS_TopicDescription_get_name(found), name);
    EXPECT_STREQ(DDS_TopicDescription_get_type_name(found), "Probe");
    EXPECT_EQ(DDS_TopicDescription_get_participant(found), node.participant);
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(node.participant, "unknown"), nullptr);
    EXPECT_EQ(DDS_Publisher_lookup_datawriter(node.publisher, name.c_str()), writer);
    EXPECT_EQ(DDS_Publisher_lookup_datawriter(node.publisher, "unknown"), nullptr);
    EXPECT_EQ(DDS_Subscriber_lookup_datareader(node.subscriber, name.c_str()), reader);
    EXPECT_EQ(DDS_DomainParticipantFactory_lookup_participant(factory(), ORVANE_TEST_DOMAIN),
              node.participant);
    EXPECT_EQ(DDS_DomainParticipantFactory_lookup_participant(factory(), 61), nullptr);

    EXPECT_EQ(DDS_DataWriter_get_topic(writer), node.topic);
    EXPECT_EQ(DDS_DataWriter_get_publisher(writer), node.publisher);
    EXPECT_EQ(DDS_DataReader_get_topicdescription(reader), found);
    EXPECT_EQ(DDS_DataReader_get_subscriber(reader), node.subscriber);
    EXPECT_EQ(DDS_Publisher_get_participant(node.publisher), node.participant);
    EXPECT_EQ(DDS_Subscriber_get_participant(node.subscriber), node.participant);
    EXPECT_EQ(DDS_DomainParticipant_get_participant_factoryI(node.participant), factory());
    EXPECT_EQ(DDS_DomainParticipant_get_domain_id(node.participant), ORVANE_TEST_DOMAIN);
    EXPECT_EQ(DDS_DataWriter_compare_typeI(writer, "Probe"), 0) << "the type's name counts";
    EXPECT_EQ(DDS_DataReader_compare_typeI(reader, probe_type_name), 1);
}

TEST(Types, ANameBelongsToOneType) {
    const ProbeNode node;
    const TULVTypePlugin same = probe_plugin();
    const TULVTypePlugin other = keyless_probe_plugin();
    TULVTypePlugin incomplete = probe_plugin();
    incomplete.serialize_key = nullptr;
    TULVTypePlugin wrong_kind = probe_plugin();
    wrong_kind.pluginKind = 0;
    const struct {
        const char* name;
        const TULVTypePlugin* plugin;
        const void* properties;
        DDS_ReturnCode_t expected;
    } cases[] = {
        {"Probe", &same, nullptr, DDS_RETCODE_OK},
        {"Another", &same, nullptr, DDS_RETCODE_OK},
        {"Probe", &other, nullptr, refused},
        {"", &same, nullptr, DDS_RETCODE_BAD_PARAMETER},
        {"New", &same, &same, DDS_RETCODE_BAD_PARAMETER},
        {"New", &incomplete, nullptr, DDS_RETCODE_BAD_PARAMETER},
        {"New", &wrong_kind, nullptr, DDS_RETCODE_BAD_PARAMETER},
        {"New", nullptr, nullptr, DDS_RETCODE_BAD_PARAMETER},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(DDS_DomainParticipant_register_type(node.participant, one.name, one.plugin,
                                                      one.properties),
                  one.expected)
            << one.name;
    }
    EXPECT_EQ(default_topic(node, ""), nullptr);
    EXPECT_EQ(default_topic(node, topic_of_this_test()), nullptr) << "the name is taken";
    EXPECT_EQ(default_topic(node, "t", "Unknown"), nullptr);
}

TEST(Types, AnEndpointThatThePluginRefusesIsNotMade) {
    const ProbeNode node;
    refuse_endpoints(true);
    EXPECT_EQ(default_writer(node.publisher, node.topic), nullptr);
    EXPECT_EQ(default_reader(node.subscriber, node.topic), nullptr);
    refuse_endpoints(false);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(node.participant, node.topic), DDS_RETCODE_OK)
        << "nothing uses the topic";
}

}  // namespace
