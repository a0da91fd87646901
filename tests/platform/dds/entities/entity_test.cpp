#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

/// A node whose participant leaves new entities disabled.
class DisabledEntities : public testing::Test {
protected:
    DisabledEntities() {
        OwnedQos<DDS_DomainParticipantQos> qos;
        EXPECT_EQ(DDS_DomainParticipant_get_qos(node_.participant(), &qos.get()), ok);
        qos.get().entity_factory.autoenable_created_entities = 0;
        EXPECT_EQ(DDS_DomainParticipant_set_qos(node_.participant(), &qos.get()), ok);
    }

    ProbeNode node_;
};

TEST_F(DisabledEntities, AWriterExistsButDoesNotTakePartUntilItIsEnabled) {
    DDS_Publisher* publisher = node_.make_publisher();
    DDS_DataWriter* writer = node_.default_writer(publisher);
    ASSERT_NE(writer, nullptr);
    DDS_Entity* entity = DDS_DataWriter_as_entity(writer);
    DDS_PublicationMatchedStatus status{};
    EXPECT_EQ(DDS_Entity_is_enabled(entity), 0);
    EXPECT_TRUE(equal(DDS_Entity_get_instance_handle(entity), DDS_HANDLE_NIL));
    EXPECT_EQ(write(writer, 1, 1), not_enabled);
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &patience), not_enabled);
    EXPECT_EQ(DDS_DataWriter_get_publication_matched_status(writer, &status), not_enabled);
    EXPECT_EQ(DDS_Entity_enable(entity), refused) << "its publisher is disabled";

    EXPECT_EQ(DDS_Entity_enable(DDS_Publisher_as_entity(publisher)), ok);
    EXPECT_EQ(DDS_Entity_is_enabled(entity), 1) << "the publisher enables what it contains";
    EXPECT_EQ(DDS_Entity_enable(entity), ok) << "again";
    EXPECT_EQ(write(writer, 1, 1), ok);

    DDS_Topic* topic = node_.make_topic(topic_of_this_test() + "_disabled");
    EXPECT_EQ(node_.default_writer(publisher, topic), nullptr) << "its topic is disabled";
    EXPECT_EQ(DDS_Entity_enable(DDS_Topic_as_entity(topic)), ok);
    EXPECT_NE(node_.default_writer(publisher, topic), nullptr);
}

TEST_F(DisabledEntities, AReaderGivesNothing) {
    DDS_DataReader* reader = node_.default_reader(node_.make_subscriber());
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(ProbeSeq().receive(reader), not_enabled);
    EXPECT_EQ(DDS_DataReader_create_readcondition(reader, 1, 1, 1), nullptr);
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    DDS_Condition* status = DDS_StatusCondition_as_condition(
        DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader)));
    EXPECT_EQ(DDS_Condition_get_trigger_value(status), 0);
    EXPECT_EQ(DDS_WaitSet_attach_condition(wait_set, status), refused);
    EXPECT_EQ(DDS_WaitSet_delete(wait_set), ok);
}

TEST(EnablingAParticipant, BringsEverythingInItIntoOperation) {
    const OwnedQos<DDS_DomainParticipantFactoryQos> standard;
    OwnedQos<DDS_DomainParticipantFactoryQos> qos;
    qos.get().entity_factory.autoenable_created_entities = 0;
    ASSERT_EQ(DDS_DomainParticipantFactory_set_qos(ProbeNode::factory(), &qos.get()), ok);
    {
        ProbeNode node;
        DDS_DataWriter* writer = node.writer();
        DDS_DataReader* reader = node.reader();
        OwnedQos<DDS_DomainParticipantQos> of_disabled;
        EXPECT_EQ(DDS_DomainParticipant_get_qos(node.participant(), &of_disabled.get()), ok);
        EXPECT_EQ(of_disabled.get().wire_protocol.rtps_host_id, 0U);
        EXPECT_EQ(DDS_DomainParticipant_assert_liveliness(node.participant()), not_enabled);
        ASSERT_EQ(DDS_Entity_enable(DDS_DomainParticipant_as_entity(node.participant())), ok);
        EXPECT_EQ(write(writer, 1, 10), ok);
        EXPECT_EQ(summary(await_samples(reader, 1)), "1:10");
        EXPECT_EQ(DDS_DomainParticipant_assert_liveliness(node.participant()), ok);
    }
    ASSERT_EQ(DDS_DomainParticipantFactory_set_qos(ProbeNode::factory(), DDS_QOS_DEFAULT), ok);
    ASSERT_EQ(DDS_DomainParticipantFactory_get_qos(ProbeNode::factory(), &qos.get()), ok);
    EXPECT_TRUE(pexa::dds::equal_qos(qos.get(), standard.get()));
}

TEST(Deletion, WhatIsInUseOrContainsSomethingOrIsForeignStays) {
    const int endpoints = attached_endpoints;
    const ProbeNode node;
    const ProbeNode other(topic_of_this_test() + "_other");
    DDS_DomainParticipant* participant = node.participant();
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    EXPECT_GE(attached_endpoints, endpoints + 2);

    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(ProbeNode::factory(), participant),
              refused);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), refused);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(participant, "Probe"), refused);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(participant, "Unknown"), bad_parameter);
    for (const ProbeNode* deleter : {&node, &other}) {
        EXPECT_EQ(deleter->remove(node.publisher()), refused);
        EXPECT_EQ(deleter->remove(node.subscriber()), refused);
        EXPECT_EQ(deleter->remove(node.topic), refused);
    }
    EXPECT_EQ(other.remove(writer), refused);
    EXPECT_EQ(other.remove(reader), refused);
    EXPECT_EQ(other.default_writer(nullptr, node.topic), nullptr);
    EXPECT_EQ(node.default_reader(other.subscriber()), nullptr);

    EXPECT_EQ(node.remove(writer), ok);
    EXPECT_EQ(node.remove(node.topic), refused) << "the reader still uses it";
    EXPECT_EQ(node.remove(reader), ok);
    EXPECT_EQ(attached_endpoints, endpoints);
    EXPECT_EQ(other.remove(node.topic), refused) << "it is another participant's";
    EXPECT_EQ(other.remove(node.publisher()), refused);
    EXPECT_EQ(node.remove(node.topic), ok);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(participant, "Probe"), ok);
    EXPECT_EQ(node.remove(node.publisher()), ok);
    EXPECT_EQ(node.remove(node.subscriber()), ok);
}

TEST(LookUp, FindsEntitiesByNameAndDomainAndFromEachOther) {
    const ProbeNode node;
    DDS_DomainParticipantFactory* factory = ProbeNode::factory();
    DDS_DomainParticipant* participant = node.participant();
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const std::string name = topic_of_this_test();
    DDS_TopicDescription* found =
        DDS_DomainParticipant_lookup_topicdescription(participant, name.c_str());
    EXPECT_EQ(DDS_Topic_narrow(found), node.topic);
    EXPECT_EQ(DDS_TopicDescription_get_name(found), name);
    EXPECT_STREQ(DDS_TopicDescription_get_type_name(found), "Probe");
    EXPECT_EQ(DDS_TopicDescription_get_participant(found), participant);
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(participant, "unknown"), nullptr);
    EXPECT_EQ(DDS_Publisher_lookup_datawriter(node.publisher(), name.c_str()), writer);
    EXPECT_EQ(DDS_Publisher_lookup_datawriter(node.publisher(), "unknown"), nullptr);
    EXPECT_EQ(DDS_Subscriber_lookup_datareader(node.subscriber(), name.c_str()), reader);
    EXPECT_EQ(DDS_DomainParticipantFactory_lookup_participant(factory, ORVANE_TEST_DOMAIN),
              participant);
    EXPECT_EQ(DDS_DomainParticipantFactory_lookup_participant(factory, 61), nullptr);

    EXPECT_EQ(DDS_DataWriter_get_topic(writer), node.topic);
    EXPECT_EQ(DDS_DataWriter_get_publisher(writer), node.publisher());
    EXPECT_EQ(DDS_DataReader_get_topicdescription(reader), found);
    EXPECT_EQ(DDS_DataReader_get_subscriber(reader), node.subscriber());
    EXPECT_EQ(DDS_Publisher_get_participant(node.publisher()), participant);
    EXPECT_EQ(DDS_Subscriber_get_participant(node.subscriber()), participant);
    EXPECT_EQ(DDS_DomainParticipant_get_participant_factoryI(participant), factory);
    EXPECT_EQ(DDS_DomainParticipant_get_domain_id(participant), ORVANE_TEST_DOMAIN);
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
        {"Probe", &same, nullptr, ok},
        {"Another", &same, nullptr, ok},
        {"Probe", &other, nullptr, refused},
        {"", &same, nullptr, bad_parameter},
        {"New", &same, &same, bad_parameter},
        {"New", &incomplete, nullptr, bad_parameter},
        {"New", &wrong_kind, nullptr, bad_parameter},
        {"New", nullptr, nullptr, bad_parameter},
    };
    for (const auto& [name, plugin, properties, expected] : cases) {
        EXPECT_EQ(DDS_DomainParticipant_register_type(node.participant(), name, plugin, properties),
                  expected)
            << name;
    }
    EXPECT_EQ(node.make_topic(""), nullptr);
    EXPECT_EQ(node.make_topic(topic_of_this_test()), nullptr) << "the name is taken";
    EXPECT_EQ(node.make_topic("t", "Unknown"), nullptr);
}

TEST(Types, AnEndpointThatThePluginRefusesIsNotMade) {
    const ProbeNode node;
    refusing_endpoints = true;
    EXPECT_EQ(node.default_writer(), nullptr);
    EXPECT_EQ(node.default_reader(), nullptr);
    refusing_endpoints = false;
    EXPECT_EQ(node.remove(node.topic), ok) << "nothing uses the topic";
}

}  // namespace
