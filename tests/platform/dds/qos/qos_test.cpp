#include <cstring>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "pexa/string.h"
#include "platform/dds/qos/conversion.hpp"
#include "platform/dds/qos/duration.hpp"
#include "tests/platform/dds/qos/qos_property.hpp"
#include "tests/support/heap_faults.hpp"
#include "tests/support/reports.hpp"

namespace pexa::dds {
namespace {

constexpr engine::Nanoseconds second = 1'000'000'000;
const engine::Bytes octets{std::byte{0}, std::byte{1}, std::byte{255}};

/// A value of every policy, each unlike its default.
engine::Qos every_policy() {
    engine::Qos qos;
    qos.user_data = qos.topic_data = qos.group_data = octets;
    qos.entity_name = "controller";
    qos.properties = {{"dds.sec.auth", "builtin"}, {"empty", ""}};
    qos.durability = engine::DurabilityKind::transient_local;
    qos.durability_service = {5 * second, {engine::HistoryKind::keep_all, 6}, {70, 7, 8}};
    qos.presentation = {engine::AccessScope::group, true, true};
    qos.deadline = 2 * second + 5;
    qos.latency_budget = 7;
    qos.ownership = engine::OwnershipKind::exclusive;
    qos.ownership_strength = 11;
    qos.liveliness = {engine::LivelinessKind::manual_by_topic, 3 * second + 1};
    qos.time_based_filter = 13;
    qos.partition = {"left", ""};
    qos.reliability = {engine::ReliabilityKind::reliable, 4 * second};
    qos.transport_priority = -9;
    qos.lifespan = 6 * second;
    qos.destination_order = engine::DestinationOrderKind::by_source_timestamp;
    qos.history = {engine::HistoryKind::keep_all, 8};
    qos.resource_limits = {90, 9, 10};
    qos.autodispose_unregistered_instances = false;
    qos.batching = true;
    qos.reader_data_lifecycle = {second, 2 * second};
    return qos;
}

/// A record with the values of above in all of its policies.
template <typename Record>
void change_everything(Record& record) {
    ASSERT_EQ(from_engine(every_policy(), record), DDS_RETCODE_OK);
    if constexpr (requires { record.entity_factory; }) {
        record.entity_factory.autoenable_created_entities = 0;
    }
}

void set_octets(DDS_OctetSeq& sequence) {
    const DDS_Octet bytes[] = {0, 1, 255};
    ASSERT_TRUE(DDS_OctetSeq_from_array(&sequence, bytes, 3));
}

TEST(Qos, EachMemberOfAPolicyReachesTheEnginesMemberOfTheSameMeaning) {
    OwnedQos<DDS_DataWriterQos> owned_writer;
    DDS_DataWriterQos& writer = owned_writer.get();
    writer.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    writer.durability_service = {{5, 0}, DDS_KEEP_ALL_HISTORY_QOS, 6, 70, 7, 8};
    writer.deadline.period = {2, 5};
    writer.latency_budget.duration = {0, 7};
    writer.liveliness = {DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS, {3, 1}};
    writer.reliability = {DDS_RELIABLE_RELIABILITY_QOS, {4, 0}};
    writer.destination_order.kind = DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS;
    writer.history = {DDS_KEEP_ALL_HISTORY_QOS, 8};
    writer.resource_limits = {90, 9, 10};
    writer.transport_priority.value = -9;
    writer.lifespan.duration = {6, 0};
    writer.ownership.kind = DDS_EXCLUSIVE_OWNERSHIP_QOS;
    writer.ownership_strength.value = 11;
    writer.batch.enable = 1;
    writer.writer_data_lifecycle.autodispose_unregistered_instances = 0;
    set_octets(writer.user_data.value);
    OwnedQos<DDS_DataReaderQos> reader;
    reader.get().time_based_filter.minimum_separation = {0, 13};
    reader.get().reader_data_lifecycle = {{1, 0}, {2, 0}};
    OwnedQos<DDS_PublisherQos> publisher;
    publisher.get().presentation = {DDS_GROUP_PRESENTATION_QOS, 1, 1};
    set_octets(publisher.get().group_data.value);
    DDS_StringSeq& partition = publisher.get().partition.name;
    ASSERT_TRUE(DDS_StringSeq_ensure_length(&partition, 2, 2));
    DDS_String_replace(DDS_StringSeq_get_reference(&partition, 0), "left");
    OwnedQos<DDS_TopicQos> topic;
    set_octets(topic.get().topic_data.value);
    OwnedQos<DDS_DomainParticipantQos> participant;
    DDS_String_replace(&participant.get().participant_name.name, "controller");
    add_property(participant.get().property.value, "dds.sec.auth", "builtin");
    add_property(participant.get().property.value, "empty", "");

    engine::Qos of_reader;
    engine::Qos of_topic;
    engine::Qos all;
    ASSERT_EQ(to_engine(reader.get(), of_reader), DDS_RETCODE_OK);
    ASSERT_EQ(to_engine(topic.get(), of_topic), DDS_RETCODE_OK);
    ASSERT_EQ(to_engine(participant.get(), all), DDS_RETCODE_OK);
    ASSERT_EQ(to_engine(publisher.get(), all), DDS_RETCODE_OK);
    ASSERT_EQ(to_engine(writer, all), DDS_RETCODE_OK);
    all.time_based_filter = of_reader.time_based_filter;
    all.reader_data_lifecycle = of_reader.reader_data_lifecycle;
    all.topic_data = of_topic.topic_data;
    EXPECT_EQ(all, every_policy());
}

template <typename Record>
class QosRecord : public testing::Test {};

using Records =
    testing::Types<DDS_DomainParticipantFactoryQos, DDS_DomainParticipantQos, DDS_TopicQos,
                   DDS_PublisherQos, DDS_SubscriberQos, DDS_DataWriterQos, DDS_DataReaderQos>;
TYPED_TEST_SUITE(QosRecord, Records);

TYPED_TEST(QosRecord, TakesEveryPolicyFromTheEngineAndBack) {
    OwnedQos<TypeParam> defaults;
    OwnedQos<TypeParam> changed;
    change_everything(changed.get());
    for (const PolicyRow& row : policies_of<TypeParam>().rows) {
        EXPECT_EQ(row.operations->equal(row.locate(&changed.get()), row.locate(&defaults.get())),
                  row.name == std::string("wire_protocol"))
            << row.name;
    }
    engine::Qos values;
    ASSERT_EQ(to_engine(changed.get(), values), DDS_RETCODE_OK);
    OwnedQos<TypeParam> back;
    ASSERT_EQ(from_engine(values, back.get()), DDS_RETCODE_OK);
    if constexpr (requires { back.get().entity_factory; }) {
        back.get().entity_factory = changed.get().entity_factory;
    }
    EXPECT_TRUE(equal_qos(back.get(), changed.get()));
    EXPECT_EQ(check_qos("test", changed.get()), DDS_RETCODE_OK);
    // What the engine says nothing of stays.
    engine::Qos nothing_but_properties;
    nothing_but_properties.properties = values.properties;
    ASSERT_EQ(from_engine(nothing_but_properties, back.get()), DDS_RETCODE_OK);
    EXPECT_TRUE(equal_qos(back.get(), changed.get()));
}

TYPED_TEST(QosRecord, LetsAnEnabledEntityChangeWhatTheStandardAllows) {
    const std::set<std::string> immutable = {
        "durability",       "durability_service", "liveliness",
        "reliability",      "destination_order",  "history",
        "resource_limits",  "ownership",          "presentation",
        "participant_name", "property",           "batch"};
    const Reports silence;
    const OwnedQos<TypeParam> current;
    OwnedQos<TypeParam> changed;
    change_everything(changed.get());
    for (const PolicyRow& row : policies_of<TypeParam>().rows) {
        OwnedQos<TypeParam> wanted;
        ASSERT_TRUE(row.operations->copy(row.locate(&wanted.get()), row.locate(&changed.get())));
        EXPECT_EQ(check_qos_change("test", current.get(), wanted.get()),
                  immutable.contains(row.name) ? DDS_RETCODE_IMMUTABLE_POLICY : DDS_RETCODE_OK)
            << row.name;
    }
}

TYPED_TEST(QosRecord, CopiesDeeplyOrNotAtAll) {
    const Reports silence;
    const long before = heap_faults::live_blocks();
    {
        OwnedQos<TypeParam> source;
        OwnedQos<TypeParam> destination;
        OwnedQos<TypeParam> expected;
        change_everything(source.get());
        change_everything(destination.get());
        change_everything(expected.get());
        ASSERT_EQ(destination.assign(source.get()), DDS_RETCODE_OK);
        const OwnedQos<TypeParam> defaults;
        const auto copy = [&] {
            OwnedQos<TypeParam> kept;
            const bool copied = kept.assign(source.get()) == DDS_RETCODE_OK;
            EXPECT_TRUE(equal_qos(kept.get(), copied ? source.get() : defaults.get()));
            return copied;
        };
        const auto convert = [&] {
            OwnedQos<TypeParam> record;
            return from_engine(every_policy(), record.get()) == DDS_RETCODE_OK;
        };
        if constexpr (!std::is_same_v<TypeParam, DDS_DomainParticipantFactoryQos>) {
            heap_faults::sweep(copy);
            heap_faults::sweep(convert);
        }
        qos_record::finalize(policies_of<TypeParam>(), &source.get());
        EXPECT_TRUE(equal_qos(destination.get(), expected.get()));
        // Finalised a second time when it goes out of scope.
    }
    EXPECT_EQ(heap_faults::live_blocks(), before);
}

TEST(Qos, StartsWithTheDefaultsOfTheStandard) {
    engine::Qos expected;
    expected.durability = engine::DurabilityKind::volatile_data;
    expected.durability_service = engine::DurabilityServicePolicy();
    expected.deadline = expected.lifespan = engine::infinite;
    expected.latency_budget = 0;
    expected.liveliness = engine::LivelinessPolicy();
    expected.reliability = {engine::ReliabilityKind::reliable, second / 10};
    expected.destination_order = engine::DestinationOrderKind::by_reception_timestamp;
    expected.history = {engine::HistoryKind::keep_last, 1};
    expected.resource_limits = {-1, -1, -1};
    expected.transport_priority = expected.ownership_strength = 0;
    expected.user_data = engine::Bytes();
    expected.ownership = engine::OwnershipKind::shared;
    expected.autodispose_unregistered_instances = true;
    expected.batching = false;
    engine::Qos of_writer;
    ASSERT_EQ(to_engine(OwnedQos<DDS_DataWriterQos>().get(), of_writer), DDS_RETCODE_OK);
    EXPECT_EQ(of_writer, expected);

    engine::Qos of_reader;
    ASSERT_EQ(to_engine(OwnedQos<DDS_DataReaderQos>().get(), of_reader), DDS_RETCODE_OK);
    EXPECT_EQ(of_reader.reliability->kind, engine::ReliabilityKind::best_effort);
    EXPECT_EQ(of_reader.time_based_filter, 0);
    EXPECT_EQ(of_reader.reader_data_lifecycle, engine::ReaderDataLifecyclePolicy());
    const OwnedQos<DDS_TopicQos> topic;
    EXPECT_EQ(topic.get().reliability.kind, DDS_BEST_EFFORT_RELIABILITY_QOS);
    const OwnedQos<DDS_PublisherQos> publisher;
    EXPECT_EQ(publisher.get().presentation.access_scope, DDS_INSTANCE_PRESENTATION_QOS);
    EXPECT_EQ(publisher.get().partition.name.length, 0);
    EXPECT_EQ(publisher.get().entity_factory.autoenable_created_entities, 1);
    const OwnedQos<DDS_DomainParticipantQos> participant;
    EXPECT_EQ(participant.get().participant_name.name, nullptr);
    EXPECT_EQ(participant.get().property.value.length, 0);
}

TEST(Qos, OperationsStandRepetitionAndSequencesOfAnyState) {
    DDS_TopicQos topic;
    ASSERT_EQ(DDS_TopicQos_initialize(&topic), DDS_RETCODE_OK);
    set_octets(topic.topic_data.value);
    EXPECT_EQ(DDS_TopicQos_copy(&topic, &topic), DDS_RETCODE_OK);
    EXPECT_EQ(topic.topic_data.value.length, 3);
    Reports reports;
    EXPECT_EQ(DDS_TopicQos_copy(&topic, nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(reports.take(), std::vector<std::string>{"DDS_TopicQos_copy:bad parameter: from"});
    EXPECT_EQ(DDS_TopicQos_finalize(&topic), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_TopicQos_finalize(&topic), DDS_RETCODE_OK);

    OwnedQos<DDS_PublisherQos> qos;
    DDS_Octet bytes[] = {9, 8};
    DDS_Octet* pointers[] = {&bytes[1], &bytes[0]};
    ASSERT_TRUE(DDS_OctetSeq_loan_discontiguous(&qos.get().group_data.value, pointers, 2, 2));
    std::memset(&qos.get().partition, 0x55, sizeof qos.get().partition);
    engine::Qos values;
    ASSERT_EQ(to_engine(qos.get(), values), DDS_RETCODE_OK);
    EXPECT_EQ(values.group_data, (engine::Bytes{std::byte{8}, std::byte{9}}));
    EXPECT_EQ(values.partition, std::vector<std::string>());
    ASSERT_TRUE(DDS_OctetSeq_unloan(&qos.get().group_data.value));
}

TEST(Duration, KeepsItsValueInNanosecondsUpToInfinity) {
    const std::pair<DDS_Duration_t, engine::Nanoseconds> cases[] = {
        {{0, 999'999'999}, 999'999'999},
        {{1, 1}, second + 1},
        {{0x7ffffffe, 999'999'999}, 0x7ffffffe * second + 999'999'999},
        {{DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC}, engine::infinite},
    };
    for (const auto& [duration, nanoseconds] : cases) {
        EXPECT_EQ(to_nanoseconds(duration), nanoseconds);
        EXPECT_EQ(to_duration(nanoseconds).sec, duration.sec);
        EXPECT_EQ(to_duration(nanoseconds).nanosec, duration.nanosec);
    }
    EXPECT_EQ(to_duration(0x7fffffff * second).nanosec, DDS_DURATION_INFINITE_NSEC);
}

}  // namespace
}  // namespace pexa::dds
