#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

TEST(EntityQos, AnEntityChangesOnlyWhatMayChangeAndRefusesContradictions) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    OwnedQos<DDS_DataWriterQos> qos;
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &qos.get()), ok);
    EXPECT_EQ(qos.get().history.kind, DDS_KEEP_ALL_HISTORY_QOS) << "as it was created";
    qos.get().lifespan.duration = {9, 0};
    EXPECT_EQ(DDS_DataWriter_set_qos(writer, &qos.get()), ok);
    qos.get().durability.kind = DDS_VOLATILE_DURABILITY_QOS;
    EXPECT_EQ(DDS_DataWriter_set_qos(writer, &qos.get()), DDS_RETCODE_IMMUTABLE_POLICY);
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &qos.get()), ok);
    EXPECT_EQ(qos.get().lifespan.duration.sec, 9);
    EXPECT_EQ(qos.get().durability.kind, DDS_TRANSIENT_LOCAL_DURABILITY_QOS);

    DDS_DataReader* reader = node.reader();
    OwnedQos<DDS_DataReaderQos> wrong;
    ASSERT_EQ(DDS_DataReader_get_qos(reader, &wrong.get()), ok);
    wrong.get().history = {DDS_KEEP_LAST_HISTORY_QOS, 5};
    wrong.get().resource_limits.max_samples_per_instance = 4;
    EXPECT_EQ(DDS_DataReader_set_qos(reader, &wrong.get()), DDS_RETCODE_INCONSISTENT_POLICY);
    EXPECT_EQ(DDS_Subscriber_set_default_datareader_qos(node.subscriber(), &wrong.get()),
              DDS_RETCODE_INCONSISTENT_POLICY);
    EXPECT_EQ(DDS_Subscriber_create_datareader(node.subscriber(), node.description(), &wrong.get(),
                                               nullptr, 0),
              nullptr);
}

/// Sets a default, looks at what is created with it, and sets the standard's again.
template <typename Record, typename Parent, typename Make, typename GetOfMade>
void expect_default_used(Parent* parent, DDS_ReturnCode_t (*set)(Parent*, const Record*),
                         void (*change)(Record&), Make make, GetOfMade get_of_made) {
    OwnedQos<Record> wanted;
    const OwnedQos<Record> standard;
    change(wanted.get());
    OwnedQos<Record> found;
    ASSERT_EQ(set(parent, &wanted.get()), ok);
    ASSERT_EQ(get_of_made(make("first"), &found.get()), ok);
    EXPECT_TRUE(pexa::dds::equal_qos(found.get(), wanted.get()));
    ASSERT_EQ(set(parent, DDS_QOS_DEFAULT), ok);
    ASSERT_EQ(get_of_made(make("second"), &found.get()), ok);
    EXPECT_TRUE(pexa::dds::equal_qos(found.get(), standard.get()));
}

TEST(EntityQos, ADefaultAppliesToWhatIsCreatedLater) {
    const ProbeNode node;
    DDS_DomainParticipant* participant = node.participant();
    expect_default_used<DDS_TopicQos>(
        participant, DDS_DomainParticipant_set_default_topic_qos,
        [](DDS_TopicQos& qos) { qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS; },
        [&](const std::string& name) { return node.make_topic(topic_of_this_test() + name); },
        DDS_Topic_get_qos);
    expect_default_used<DDS_PublisherQos>(
        participant, DDS_DomainParticipant_set_default_publisher_qos,
        [](DDS_PublisherQos& qos) { qos.entity_factory.autoenable_created_entities = 0; },
        [&](const char*) { return node.make_publisher(); }, DDS_Publisher_get_qos);
    expect_default_used<DDS_SubscriberQos>(
        participant, DDS_DomainParticipant_set_default_subscriber_qos,
        [](DDS_SubscriberQos& qos) { qos.presentation.ordered_access = 1; },
        [&](const char*) { return node.make_subscriber(); }, DDS_Subscriber_get_qos);
    expect_default_used<DDS_DataWriterQos>(
        node.publisher(), DDS_Publisher_set_default_datawriter_qos,
        [](DDS_DataWriterQos& qos) { qos.transport_priority.value = 7; },
        [&](const char*) { return node.default_writer(); }, DDS_DataWriter_get_qos);
    expect_default_used<DDS_DataReaderQos>(
        node.subscriber(), DDS_Subscriber_set_default_datareader_qos,
        [](DDS_DataReaderQos& qos) { qos.history.depth = 3; },
        [&](const char*) { return node.default_reader(); }, DDS_DataReader_get_qos);
}

}  // namespace
