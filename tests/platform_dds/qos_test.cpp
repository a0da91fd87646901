#include <cstring>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "../platform_core/heap_faults.hpp"
#include "../platform_core/reports.hpp"
#include "dds/qos_conversion.hpp"
#include "dds/qos_duration.hpp"
#include "pexa/string.h"
#include "qos_property.hpp"

namespace pexa::dds {
namespace {

constexpr engine::Nanoseconds second = 1'000'000'000;

template <typename Record>
struct PolicyCase {
    const char* policy;
    void (*change)(Record& qos);
    /// Whether the changed value is what the engine gets; NULL when the engine gets nothing.
    bool (*reached)(const engine::Qos& qos);
    DDS_ReturnCode_t once_enabled;
};

template <typename Record>
using PolicyCases = std::vector<PolicyCase<Record>>;

template <typename Record>
void append(PolicyCases<Record>& cases, PolicyCases<Record> more) {
    cases.insert(cases.end(), more.begin(), more.end());
}

void set_octets(DDS_OctetSeq& octets) {
    const DDS_Octet bytes[] = {0, 1, 255};
    ASSERT_TRUE(DDS_OctetSeq_from_array(&octets, bytes, 3));
}

bool are_the_octets(const std::optional<engine::Bytes>& bytes) {
    return bytes == engine::Bytes{std::byte{0}, std::byte{1}, std::byte{255}};
}

template <typename Record>
PolicyCases<Record> endpoint_cases() {
    return {
        {"durability", [](Record& q) { q.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS; },
         [](const engine::Qos& e) {
             return e.durability == engine::DurabilityKind::transient_local;
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"deadline",
         [](Record& q) {
             q.deadline.period = {2, 5};
         },
         [](const engine::Qos& e) { return e.deadline == 2 * second + 5; }, DDS_RETCODE_OK},
        {"latency_budget",
         [](Record& q) {
             q.latency_budget.duration = {0, 7};
         },
         [](const engine::Qos& e) { return e.latency_budget == 7; }, DDS_RETCODE_OK},
        {"liveliness",
         [](Record& q) {
             q.liveliness = {DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS, {3, 1}};
         },
         [](const engine::Qos& e) {
             return e.liveliness == engine::LivelinessPolicy{
                                        engine::LivelinessKind::manual_by_topic, 3 * second + 1};
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"reliability",
         [](Record& q) {
             q.reliability = {DDS_RELIABLE_RELIABILITY_QOS, {4, 0}};
         },
         [](const engine::Qos& e) {
             return e.reliability ==
                    engine::ReliabilityPolicy{engine::ReliabilityKind::reliable, 4 * second};
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"destination_order",
         [](Record& q) { q.destination_order.kind = DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS; },
         [](const engine::Qos& e) {
             return e.destination_order == engine::DestinationOrderKind::by_source_timestamp;
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"history",
         [](Record& q) {
             q.history = {DDS_KEEP_ALL_HISTORY_QOS, 8};
         },
         [](const engine::Qos& e) {
             return e.history == engine::HistoryPolicy{engine::HistoryKind::keep_all, 8};
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"resource_limits",
         [](Record& q) {
             q.resource_limits = {90, 9, 10};
         },
         [](const engine::Qos& e) {
             return e.resource_limits == engine::ResourceLimitsPolicy{90, 9, 10};
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"ownership", [](Record& q) { q.ownership.kind = DDS_EXCLUSIVE_OWNERSHIP_QOS; },
         [](const engine::Qos& e) { return e.ownership == engine::OwnershipKind::exclusive; },
         DDS_RETCODE_IMMUTABLE_POLICY},
    };
}

template <typename Record>
PolicyCases<Record> topic_and_writer_cases() {
    return {
        {"durability_service",
         [](Record& q) {
             q.durability_service = {{5, 0}, DDS_KEEP_ALL_HISTORY_QOS, 6, 70, 7, 8};
         },
         [](const engine::Qos& e) {
             return e.durability_service ==
                    engine::DurabilityServicePolicy{
                        5 * second, {engine::HistoryKind::keep_all, 6}, {70, 7, 8}};
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"transport_priority", [](Record& q) { q.transport_priority.value = -9; },
         [](const engine::Qos& e) { return e.transport_priority == -9; }, DDS_RETCODE_OK},
        {"lifespan",
         [](Record& q) {
             q.lifespan.duration = {6, 0};
         },
         [](const engine::Qos& e) { return e.lifespan == 6 * second; }, DDS_RETCODE_OK},
    };
}

template <typename Record>
PolicyCases<Record> user_data_case() {
    return {{"user_data", [](Record& q) { set_octets(q.user_data.value); },
             [](const engine::Qos& e) { return are_the_octets(e.user_data); }, DDS_RETCODE_OK}};
}

template <typename Record>
PolicyCases<Record> factory_case() {
    return {{"entity_factory", [](Record& q) { q.entity_factory.autoenable_created_entities = 0; },
             nullptr, DDS_RETCODE_OK}};
}

template <typename Record>
PolicyCases<Record> group_cases() {
    PolicyCases<Record> cases{
        {"presentation",
         [](Record& q) {
             q.presentation = {DDS_GROUP_PRESENTATION_QOS, 1, 1};
         },
         [](const engine::Qos& e) {
             return e.presentation ==
                    engine::PresentationPolicy{engine::AccessScope::group, true, true};
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"partition",
         [](Record& q) {
             ASSERT_TRUE(DDS_StringSeq_ensure_length(&q.partition.name, 2, 2));
             DDS_String_replace(DDS_StringSeq_get_reference(&q.partition.name, 0), "left");
             DDS_String_replace(DDS_StringSeq_get_reference(&q.partition.name, 1), "");
         },
         [](const engine::Qos& e) {
             return e.partition == std::vector<std::string>{"left", ""};
         },
         DDS_RETCODE_OK},
        {"group_data", [](Record& q) { set_octets(q.group_data.value); },
         [](const engine::Qos& e) { return are_the_octets(e.group_data); }, DDS_RETCODE_OK},
    };
    append(cases, factory_case<Record>());
    return cases;
}

template <typename Record>
PolicyCases<Record> cases_of();

template <>
PolicyCases<DDS_DomainParticipantFactoryQos> cases_of() {
    return factory_case<DDS_DomainParticipantFactoryQos>();
}

template <>
PolicyCases<DDS_DomainParticipantQos> cases_of() {
    using Record = DDS_DomainParticipantQos;
    PolicyCases<Record> cases{
        {"participant_name",
         [](Record& q) { DDS_String_replace(&q.participant_name.name, "controller"); },
         [](const engine::Qos& e) { return e.entity_name == "controller"; },
         DDS_RETCODE_IMMUTABLE_POLICY},
        {"property",
         [](Record& q) {
             add_property(q.property.value, "dds.sec.auth", "builtin");
             add_property(q.property.value, "empty", "");
         },
         [](const engine::Qos& e) {
             return e.properties ==
                    decltype(e.properties){{"dds.sec.auth", "builtin"}, {"empty", ""}};
         },
         DDS_RETCODE_IMMUTABLE_POLICY},
    };
    append(cases, user_data_case<Record>());
    append(cases, factory_case<Record>());
    return cases;
}

template <>
PolicyCases<DDS_TopicQos> cases_of() {
    auto cases = endpoint_cases<DDS_TopicQos>();
    append(cases, topic_and_writer_cases<DDS_TopicQos>());
    append(cases,
           {{"topic_data", [](DDS_TopicQos& q) { set_octets(q.topic_data.value); },
             [](const engine::Qos& e) { return are_the_octets(e.topic_data); }, DDS_RETCODE_OK}});
    return cases;
}

template <>
PolicyCases<DDS_PublisherQos> cases_of() {
    return group_cases<DDS_PublisherQos>();
}

template <>
PolicyCases<DDS_SubscriberQos> cases_of() {
    return group_cases<DDS_SubscriberQos>();
}

template <>
PolicyCases<DDS_DataWriterQos> cases_of() {
    using Record = DDS_DataWriterQos;
    auto cases = endpoint_cases<Record>();
    append(cases, topic_and_writer_cases<Record>());
    append(cases, user_data_case<Record>());
    append(cases,
           {{"ownership_strength", [](Record& q) { q.ownership_strength.value = 11; },
             [](const engine::Qos& e) { return e.ownership_strength == 11; }, DDS_RETCODE_OK},
            {"writer_data_lifecycle",
             [](Record& q) { q.writer_data_lifecycle.autodispose_unregistered_instances = 0; },
             [](const engine::Qos& e) { return e.autodispose_unregistered_instances == false; },
             DDS_RETCODE_OK}});
    return cases;
}

template <>
PolicyCases<DDS_DataReaderQos> cases_of() {
    using Record = DDS_DataReaderQos;
    auto cases = endpoint_cases<Record>();
    append(cases, user_data_case<Record>());
    append(cases, {{"time_based_filter",
                    [](Record& q) {
                        q.time_based_filter.minimum_separation = {0, 13};
                    },
                    [](const engine::Qos& e) { return e.time_based_filter == 13; }, DDS_RETCODE_OK},
                   {"reader_data_lifecycle",
                    [](Record& q) {
                        q.reader_data_lifecycle = {{1, 0}, {2, 0}};
                    },
                    [](const engine::Qos& e) {
                        return e.reader_data_lifecycle ==
                               engine::ReaderDataLifecyclePolicy{second, 2 * second};
                    },
                    DDS_RETCODE_OK}});
    return cases;
}

template <typename Record>
class QosRecord : public testing::Test {};

using Records =
    testing::Types<DDS_DomainParticipantFactoryQos, DDS_DomainParticipantQos, DDS_TopicQos,
                   DDS_PublisherQos, DDS_SubscriberQos, DDS_DataWriterQos, DDS_DataReaderQos>;
TYPED_TEST_SUITE(QosRecord, Records);

TYPED_TEST(QosRecord, takes_every_policy_to_the_engine_and_back) {
    std::set<std::string> untested;
    for (const PolicyRow& row : policies_of<TypeParam>().rows) {
        untested.insert(row.name);
    }
    for (const auto& [policy, change, reached, once_enabled] : cases_of<TypeParam>()) {
        SCOPED_TRACE(policy);
        ASSERT_EQ(untested.erase(policy), 1U);
        const OwnedQos<TypeParam> defaults;
        OwnedQos<TypeParam> changed;
        change(changed.get());
        EXPECT_FALSE(equal_qos(changed.get(), defaults.get()));
        EXPECT_EQ(check_qos("test", changed.get()), DDS_RETCODE_OK);

        engine::Qos values;
        ASSERT_EQ(to_engine(changed.get(), values), DDS_RETCODE_OK);
        OwnedQos<TypeParam> back;
        ASSERT_EQ(from_engine(values, back.get()), DDS_RETCODE_OK);
        if (reached == nullptr) {
            EXPECT_TRUE(equal_qos(back.get(), defaults.get()));
        } else {
            EXPECT_TRUE(reached(values));
            EXPECT_TRUE(equal_qos(back.get(), changed.get()));
        }
    }
    untested.erase("wire_protocol");
    EXPECT_TRUE(untested.empty()) << *untested.begin();
}

TYPED_TEST(QosRecord, lets_an_enabled_entity_change_what_the_standard_allows) {
    const Reports silence;
    for (const auto& [policy, change, reached, once_enabled] : cases_of<TypeParam>()) {
        SCOPED_TRACE(policy);
        const OwnedQos<TypeParam> current;
        OwnedQos<TypeParam> wanted;
        EXPECT_EQ(check_qos_change("test", current.get(), wanted.get()), DDS_RETCODE_OK);
        change(wanted.get());
        EXPECT_EQ(check_qos_change("test", current.get(), wanted.get()), once_enabled);
    }
}

template <typename Record>
void change_everything(Record& record) {
    for (const auto& policy_case : cases_of<Record>()) {
        policy_case.change(record);
    }
}

TYPED_TEST(QosRecord, keeps_policies_that_the_engine_says_nothing_of) {
    OwnedQos<TypeParam> record;
    OwnedQos<TypeParam> expected;
    change_everything(record.get());
    change_everything(expected.get());
    engine::Qos nothing_but_properties;
    nothing_but_properties.properties = {{"dds.sec.auth", "builtin"}, {"empty", ""}};
    ASSERT_EQ(from_engine(nothing_but_properties, record.get()), DDS_RETCODE_OK);
    EXPECT_TRUE(equal_qos(record.get(), expected.get()));
}

TYPED_TEST(QosRecord, copies_deeply_over_whatever_the_destination_owns) {
    const long before = heap_faults::live_blocks();
    {
        OwnedQos<TypeParam> source;
        OwnedQos<TypeParam> destination;
        change_everything(source.get());
        change_everything(destination.get());
        ASSERT_EQ(destination.assign(source.get()), DDS_RETCODE_OK);
        qos_record::finalize(policies_of<TypeParam>(), &source.get());
        OwnedQos<TypeParam> expected;
        change_everything(expected.get());
        EXPECT_TRUE(equal_qos(destination.get(), expected.get()));
        // Finalised a second time when it goes out of scope.
    }
    EXPECT_EQ(heap_faults::live_blocks(), before);
}

template <typename Record>
constexpr bool owns_memory = !std::is_same_v<Record, DDS_DomainParticipantFactoryQos>;

TYPED_TEST(QosRecord, survives_any_failing_allocation) {
    if constexpr (owns_memory<TypeParam>) {
        const Reports silence;
        OwnedQos<TypeParam> source;
        change_everything(source.get());
        engine::Qos values;
        ASSERT_EQ(to_engine(source.get(), values), DDS_RETCODE_OK);
        const OwnedQos<TypeParam> defaults;
        heap_faults::sweep([&] {
            OwnedQos<TypeParam> kept;
            const DDS_ReturnCode_t result = kept.assign(source.get());
            EXPECT_TRUE(
                equal_qos(kept.get(), result == DDS_RETCODE_OK ? source.get() : defaults.get()));
            return result == DDS_RETCODE_OK;
        });
        heap_faults::sweep([&] {
            OwnedQos<TypeParam> record;
            const DDS_ReturnCode_t result = from_engine(values, record.get());
            EXPECT_TRUE(result == DDS_RETCODE_OK || result == DDS_RETCODE_OUT_OF_RESOURCES);
            return result == DDS_RETCODE_OK;
        });
    }
}

TEST(Qos, starts_with_the_defaults_of_the_standard) {
    const OwnedQos<DDS_DataWriterQos> writer;
    const OwnedQos<DDS_DataReaderQos> reader;
    const OwnedQos<DDS_TopicQos> topic;
    engine::Qos values;
    ASSERT_EQ(to_engine(writer.get(), values), DDS_RETCODE_OK);
    EXPECT_EQ(values.durability, engine::DurabilityKind::volatile_data);
    EXPECT_EQ(values.durability_service, engine::DurabilityServicePolicy());
    EXPECT_EQ(values.deadline, engine::infinite);
    EXPECT_EQ(values.latency_budget, 0);
    EXPECT_EQ(values.liveliness, engine::LivelinessPolicy());
    EXPECT_EQ(values.reliability,
              (engine::ReliabilityPolicy{engine::ReliabilityKind::reliable, second / 10}));
    EXPECT_EQ(values.destination_order, engine::DestinationOrderKind::by_reception_timestamp);
    EXPECT_EQ(values.history, (engine::HistoryPolicy{engine::HistoryKind::keep_last, 1}));
    EXPECT_EQ(values.resource_limits, (engine::ResourceLimitsPolicy{-1, -1, -1}));
    EXPECT_EQ(values.transport_priority, 0);
    EXPECT_EQ(values.lifespan, engine::infinite);
    EXPECT_EQ(values.user_data, engine::Bytes());
    EXPECT_EQ(values.ownership, engine::OwnershipKind::shared);
    EXPECT_EQ(values.ownership_strength, 0);
    EXPECT_EQ(values.autodispose_unregistered_instances, true);

    EXPECT_EQ(reader.get().reliability.kind, DDS_BEST_EFFORT_RELIABILITY_QOS);
    EXPECT_EQ(topic.get().reliability.kind, DDS_BEST_EFFORT_RELIABILITY_QOS);
    EXPECT_EQ(to_nanoseconds(reader.get().time_based_filter.minimum_separation), 0);
    EXPECT_EQ(to_nanoseconds(reader.get().reader_data_lifecycle.autopurge_nowriter_samples_delay),
              engine::infinite);
    EXPECT_EQ(to_nanoseconds(reader.get().reader_data_lifecycle.autopurge_disposed_samples_delay),
              engine::infinite);

    const OwnedQos<DDS_PublisherQos> publisher;
    EXPECT_EQ(publisher.get().presentation.access_scope, DDS_INSTANCE_PRESENTATION_QOS);
    EXPECT_EQ(publisher.get().presentation.coherent_access, 0);
    EXPECT_EQ(publisher.get().presentation.ordered_access, 0);
    EXPECT_EQ(publisher.get().partition.name.length, 0);
    EXPECT_EQ(publisher.get().entity_factory.autoenable_created_entities, 1);
    const OwnedQos<DDS_DomainParticipantQos> participant;
    EXPECT_EQ(participant.get().participant_name.name, nullptr);
    EXPECT_EQ(participant.get().property.value.length, 0);
    EXPECT_EQ(participant.get().wire_protocol.rtps_host_id, 0U);
    EXPECT_EQ(participant.get().entity_factory.autoenable_created_entities, 1);
}

TEST(Qos, operations_refuse_null_and_stand_a_second_end) {
    Reports reports;
    DDS_TopicQos qos;
    ASSERT_EQ(DDS_TopicQos_initialize(&qos), DDS_RETCODE_OK);
    set_octets(qos.topic_data.value);
    EXPECT_EQ(DDS_TopicQos_copy(&qos, &qos), DDS_RETCODE_OK);
    EXPECT_EQ(qos.topic_data.value.length, 3);

    EXPECT_EQ(DDS_TopicQos_initialize(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_TopicQos_copy(nullptr, &qos), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_TopicQos_copy(&qos, nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_TopicQos_finalize(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(
        reports.take(),
        (std::vector<std::string>{
            "DDS_TopicQos_initialize:bad parameter: self", "DDS_TopicQos_copy:bad parameter: self",
            "DDS_TopicQos_copy:bad parameter: from", "DDS_TopicQos_finalize:bad parameter: self"}));
    EXPECT_EQ(DDS_TopicQos_finalize(&qos), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_TopicQos_finalize(&qos), DDS_RETCODE_OK);
}

TEST(Qos, reads_lent_and_uninitialised_sequences) {
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

TEST(Duration, keeps_its_value_in_nanoseconds_up_to_infinity) {
    const struct {
        DDS_Duration_t duration;
        engine::Nanoseconds nanoseconds;
    } cases[] = {
        {{0, 0}, 0},
        {{0, 999'999'999}, 999'999'999},
        {{1, 1}, second + 1},
        {{0x7ffffffe, 999'999'999}, 0x7ffffffe * second + 999'999'999},
        {{DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC}, engine::infinite},
    };
    for (const auto& [duration, nanoseconds] : cases) {
        EXPECT_TRUE(is_valid(duration));
        EXPECT_EQ(to_nanoseconds(duration), nanoseconds);
        EXPECT_EQ(to_duration(nanoseconds).sec, duration.sec);
        EXPECT_EQ(to_duration(nanoseconds).nanosec, duration.nanosec);
    }
    EXPECT_EQ(to_duration(0x7fffffff * second).nanosec, DDS_DURATION_INFINITE_NSEC);
}

}  // namespace
}  // namespace pexa::dds
