#include <cstring>
#include <set>
#include <string>

#include "pexa/string.h"
#include "pexa/thread_settings.h"
#include "platform/dds/qos/conversion.hpp"
#include "tests/platform/engine/every_policy.hpp"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace pexa::dds {
namespace {

using engine::Qos;
using orvane::test::Reports;
using Participant = DDS_DomainParticipantQos;
using Writer = DDS_DataWriterQos;
using Reader = DDS_DataReaderQos;

/// A record of which every policy differs from its default.
template <typename Record>
void change_everything(Record& record) {
    ASSERT_EQ(from_engine(engine::every_policy(), record), Status::ok);
    if constexpr (requires { record.entity_factory; }) {
        record.entity_factory.autoenable_created_entities = 0;
    }
    if constexpr (requires { record.wire_protocol; }) {
        record.wire_protocol = {1, 2, 3};
    }
}

template <typename Record>
class QosRecord : public testing::Test {};

using Records = testing::Types<DDS_DomainParticipantFactoryQos, Participant, DDS_TopicQos,
                               DDS_PublisherQos, DDS_SubscriberQos, Writer, Reader>;
TYPED_TEST_SUITE(QosRecord, Records);

TYPED_TEST(QosRecord, IsTheSameAfterTheWayThroughTheEngine) {
    OwnedQos<TypeParam> record;
    OwnedQos<TypeParam> back;
    Qos qos;
    ASSERT_EQ(from_engine(engine::every_policy(), record.get()), Status::ok);
    ASSERT_EQ(to_engine(record.get(), qos), Status::ok);
    ASSERT_EQ(from_engine(qos, back.get()), Status::ok);
    EXPECT_TRUE(equal_qos(back.get(), record.get()));
    Qos nothing_but_properties;
    nothing_but_properties.properties = qos.properties;
    ASSERT_EQ(from_engine(nothing_but_properties, back.get()), Status::ok);
    EXPECT_TRUE(equal_qos(back.get(), record.get())) << "what the engine does not say stays";
}

TYPED_TEST(QosRecord, LetsAnEnabledEntityChangeWhatTheStandardAllows) {
    const std::set<std::string> immutable = {
        "durability",       "durability_service", "liveliness",
        "reliability",      "destination_order",  "history",
        "resource_limits",  "ownership",          "presentation",
        "participant_name", "property",           "batch"};
    Reports reports;
    const OwnedQos<TypeParam> current;
    OwnedQos<TypeParam> changed;
    change_everything(changed.get());
    for (const PolicyRow& row : policies_of<TypeParam>().rows) {
        OwnedQos<TypeParam> wanted;
        ASSERT_EQ(row.policy->copy(row.locate(&wanted.get()), row.locate(&changed.get())),
                  Status::ok);
        EXPECT_EQ(equal_qos(current.get(), wanted.get()), row.name == std::string("wire_protocol"))
            << row.name;
        static_cast<void>(reports.take());
        const bool is_immutable = immutable.contains(row.name);
        EXPECT_EQ(check_qos_change("test", current.get(), wanted.get()),
                  is_immutable ? Status::immutable_policy : Status::ok)
            << row.name;
        if (is_immutable) {
            EXPECT_EQ(reports.take().back(),
                      "test:policy cannot change while enabled: " + std::string(row.name));
        }
    }
}

TYPED_TEST(QosRecord, CopiesDeeplyOrNotAtAll) {
    const Reports silence;
    OwnedQos<TypeParam> source;
    OwnedQos<TypeParam> expected;
    change_everything(source.get());
    change_everything(expected.get());
    OwnedQos<TypeParam> destination;
    ASSERT_EQ(destination.assign(source.get()), Status::ok);
    ASSERT_EQ(destination.assign(destination.get()), Status::ok);
    if constexpr (!std::is_same_v<TypeParam, DDS_DomainParticipantFactoryQos>) {
        const OwnedQos<TypeParam> defaults;
        orvane::test::sweep(orvane::test::heap_allocation, [&] {
            OwnedQos<TypeParam> kept;
            const bool copied = kept.assign(source.get()) == Status::ok;
            EXPECT_TRUE(equal_qos(kept.get(), copied ? source.get() : defaults.get()));
            return copied;
        });
        orvane::test::sweep(orvane::test::heap_allocation, [values = engine::every_policy()] {
            OwnedQos<TypeParam> record;
            return from_engine(values, record.get()) == Status::ok;
        });
    }
    // It is finalised a second time when it goes out of scope.
    qos_record::finalize(policies_of<TypeParam>(), &source.get());
    EXPECT_TRUE(equal_qos(destination.get(), expected.get()));
}

TEST(Qos, SequencesMayBeOfAnyState) {
    OwnedQos<DDS_PublisherQos> qos;
    DDS_Octet bytes[] = {9, 8};
    DDS_Octet* pointers[] = {&bytes[1], &bytes[0]};
    ASSERT_TRUE(DDS_OctetSeq_loan_discontiguous(&qos.get().group_data.value, pointers, 2, 2));
    std::memset(&qos.get().partition, 0x55, sizeof qos.get().partition);
    Qos values;
    ASSERT_EQ(to_engine(qos.get(), values), Status::ok);
    EXPECT_EQ(values.group_data, (engine::Bytes{std::byte{8}, std::byte{9}}));
    EXPECT_TRUE(values.partition->empty());
    ASSERT_TRUE(DDS_OctetSeq_unloan(&qos.get().group_data.value));
}

TEST(ThreadSettings, DifferWhenAnyMemberDoesAndStayAsTheyAreWhenACopyFails) {
    const DDS_Long cpus[] = {3, 1};
    DDS_ThreadSettings_t filled;
    DDS_ThreadSettings_t standard;
    DDS_ThreadSettings_t other;
    for (DDS_ThreadSettings_t* settings : {&filled, &standard, &other}) {
        DDS_ThreadSettings_t_initialize(settings);
    }
    filled.mask = DDS_THREAD_SETTINGS_STDIO | DDS_THREAD_SETTINGS_PRIORITY_ENFORCE;
    filled.cpu_rotation = DDS_THREAD_SETTINGS_CPU_RR_ROTATION;
    ASSERT_TRUE(DDS_LongSeq_from_array(&filled.cpu_list, cpus, 2));

    void (*const changes[])(DDS_ThreadSettings_t&) = {
        [](DDS_ThreadSettings_t& s) { s.mask = DDS_THREAD_SETTINGS_FLOATING_POINT; },
        [](DDS_ThreadSettings_t& s) { s.priority = 8; },
        [](DDS_ThreadSettings_t& s) { s.stack_size = 1; },
        [](DDS_ThreadSettings_t& s) { s.cpu_rotation = DDS_THREAD_SETTINGS_CPU_NO_ROTATION; },
        [](DDS_ThreadSettings_t& s) { *DDS_LongSeq_get_reference(&s.cpu_list, 1) = 2; },
        [](DDS_ThreadSettings_t& s) { DDS_LongSeq_set_length(&s.cpu_list, 1); },
    };
    for (const auto change : changes) {
        ASSERT_TRUE(DDS_ThreadSettings_t_copy(&other, &filled));
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&filled, &other));
        change(other);
        EXPECT_FALSE(DDS_ThreadSettings_is_equal(&filled, &other));
    }
    EXPECT_TRUE(DDS_ThreadSettings_t_copy(&filled, &filled));
    EXPECT_EQ(DDS_LongSeq_get_length(&filled.cpu_list), 2);
    const Reports silence;
    orvane::test::sweep(orvane::test::heap_allocation, [&] {
        DDS_ThreadSettings_t copy;
        DDS_ThreadSettings_t_initialize(&copy);
        const bool copied = DDS_ThreadSettings_t_copy(&copy, &filled) != 0;
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&copy, copied ? &filled : &standard));
        DDS_ThreadSettings_t_finalize(&copy);
        return copied;
    });
    for (DDS_ThreadSettings_t* settings : {&filled, &standard, &other}) {
        DDS_ThreadSettings_t_finalize(settings);
    }
}

/// Stores a number that is no enumerator.
template <typename Kind>
void put(Kind& kind, int number) {
    std::memcpy(&kind, &number, sizeof kind);
}

using Change = void (*)(Writer&, Reader&);

/// Checks records that are changed from their defaults.
Status check(Change change) {
    OwnedQos<Writer> writer;
    OwnedQos<Reader> reader;
    change(writer.get(), reader.get());
    const Status status = check_qos("Entity_set_qos", writer.get());
    return status != Status::ok ? status : check_qos("Entity_set_qos", reader.get());
}

constexpr DDS_Duration_t too_short = {-1, 0};
constexpr DDS_Duration_t malformed = {1, 1'000'000'000};
constexpr DDS_Duration_t one = {1, 0};
constexpr DDS_Duration_t longer = {1, 1};
constexpr DDS_ResourceLimitsQosPolicy five = {-1, -1, 5};
constexpr DDS_ResourceLimitsQosPolicy four_of_five = {4, -1, 5};
constexpr DDS_DurabilityServiceQosPolicy service = {{}, {}, 6, -1, -1, 5};

const std::pair<Change, const char*> faults[] = {
    {[](auto& w, auto&) { w.history.depth = 0; }, "policy history: depth 0 is below 1"},
    {[](auto&, auto& r) { put(r.history.kind, 2); }, "policy history: kind 2 is no enumerator"},
    {[](auto& w, auto&) { put(w.durability.kind, -1); },
     "policy durability: kind -1 is no enumerator"},
    {[](auto&, auto& r) { r.deadline.period = too_short; },
     "policy deadline: period -1 s 0 ns is no duration"},
    {[](auto& w, auto&) { w.lifespan.duration = malformed; },
     "policy lifespan: duration 1 s 1000000000 ns is no duration"},
    {[](auto& w, auto&) { w.resource_limits.max_samples = 0; },
     "policy resource_limits: max_samples 0 is neither positive nor unlimited"},
    {[](auto& w, auto&) { w.resource_limits.max_instances = -2; },
     "policy resource_limits: max_instances -2 is neither positive nor unlimited"},
    {[](auto&, auto& r) { r.resource_limits = four_of_five; },
     "policy resource_limits: max_samples 4 is below max_samples_per_instance 5"},
    {[](auto& w, auto&) { w.history.depth = 6, w.resource_limits = five; },
     "policies: history.depth 6 is above resource_limits.max_samples_per_instance 5"},
    {[](auto& w, auto&) { w.durability_service = service; },
     "policy durability_service: history_depth 6 is above max_samples_per_instance 5"},
    {[](auto&, auto& r) {
         r.time_based_filter.minimum_separation = longer, r.deadline.period = one;
     },
     "policies: deadline.period 1 s is below time_based_filter.minimum_separation 1.000000001 s"},
};

TEST(QosConsistency, NamesWhatIsInconsistent) {
    Reports reports;
    for (const auto& [change, report] : faults) {
        EXPECT_EQ(check(change), Status::inconsistent_policy) << report;
        EXPECT_EQ(reports.take().back(), std::string("Entity_set_qos:inconsistent ") + report);
    }
    OwnedQos<Participant> two_properties;
    DDS_PropertySeq& properties = two_properties.get().property.value;
    ASSERT_TRUE(DDS_PropertySeq_ensure_length(&properties, 2, 2));
    for (int i = 0; i < 2; ++i) {
        DDS_String_replace(&DDS_PropertySeq_get_reference(&properties, i)->name, "name");
    }
    EXPECT_EQ(check_qos("Entity_set_qos", two_properties.get()), Status::inconsistent_policy);
    DDS_String_replace(&DDS_PropertySeq_get_reference(&properties, 1)->name, "");
    EXPECT_EQ(check_qos("Entity_set_qos", two_properties.get()), Status::inconsistent_policy);
    // What just fits, and a depth that does not count.
    const Change changes[] = {
        [](auto& w, auto&) { w.history.depth = 5, w.resource_limits = five; },
        [](auto& w, auto&) { w.history.kind = DDS_KEEP_ALL_HISTORY_QOS, w.history.depth = 0; },
        [](auto&, auto& r) { r.time_based_filter.minimum_separation = r.deadline.period = one; },
    };
    for (const Change change : changes) {
        EXPECT_EQ(check(change), Status::ok);
    }
}

}  // namespace
}  // namespace pexa::dds
