#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dds/qos/conversion.hpp"
#include "tests/platform/dds/qos/qos_property.hpp"
#include "tests/support/reports.hpp"

namespace pexa::dds {
namespace {

/// What checks a record with one change, and what the report says of it.
struct FaultCase {
    std::function<DDS_ReturnCode_t()> check;
    const char* report;
};

template <typename Record, typename Change>
std::function<DDS_ReturnCode_t()> with(Change change) {
    return [change] {
        OwnedQos<Record> qos;
        change(qos.get());
        return check_qos("Entity_set_qos", qos.get());
    };
}

template <typename Record, typename Policy>
Record record_of(Policy Record::*);

/// A record of which one member of a policy has another value.
template <auto Policy, auto Member, typename Value>
FaultCase fault(Value value, const char* report) {
    using Record = decltype(record_of(Policy));
    return {with<Record>([value](Record& q) {
                static_assert(sizeof((q.*Policy).*Member) == sizeof value);
                // Some of the values are no enumerator.
                std::memcpy(&((q.*Policy).*Member), &value, sizeof value);
            }),
            report};
}

using Topic = DDS_TopicQos;
using Writer = DDS_DataWriterQos;
using Reader = DDS_DataReaderQos;
using Participant = DDS_DomainParticipantQos;
using Limits = DDS_ResourceLimitsQosPolicy;

constexpr DDS_Duration_t negative = {-1, 0};
constexpr DDS_Duration_t too_many_nanoseconds = {1, 1'000'000'000};
constexpr const char* bad_limit =
    "inconsistent policy resource_limits: a limit neither positive nor unlimited";

const FaultCase faults[] = {
    fault<&Writer::history, &DDS_HistoryQosPolicy::depth>(
        0, "inconsistent policy history: depth below 1"),
    fault<&Reader::history, &DDS_HistoryQosPolicy::kind>(
        2, "inconsistent policy history: unknown kind"),
    fault<&Topic::durability, &DDS_DurabilityQosPolicy::kind>(
        -1, "inconsistent policy durability: unknown kind"),
    fault<&Writer::reliability, &DDS_ReliabilityQosPolicy::kind>(
        2, "inconsistent policy reliability: unknown kind"),
    fault<&Writer::liveliness, &DDS_LivelinessQosPolicy::kind>(
        3, "inconsistent policy liveliness: unknown kind"),
    fault<&DDS_PublisherQos::presentation, &DDS_PresentationQosPolicy::access_scope>(
        3, "inconsistent policy presentation: unknown kind"),
    fault<&Reader::deadline, &DDS_DeadlineQosPolicy::period>(
        negative, "inconsistent policy deadline: not a duration"),
    fault<&Writer::lifespan, &DDS_LifespanQosPolicy::duration>(
        too_many_nanoseconds, "inconsistent policy lifespan: not a duration"),
    fault<&Writer::reliability, &DDS_ReliabilityQosPolicy::max_blocking_time>(
        negative, "inconsistent policy reliability: not a duration"),
    fault<&Writer::liveliness, &DDS_LivelinessQosPolicy::lease_duration>(
        negative, "inconsistent policy liveliness: not a duration"),
    fault<&Reader::reader_data_lifecycle,
          &DDS_ReaderDataLifecycleQosPolicy::autopurge_disposed_samples_delay>(
        negative, "inconsistent policy reader_data_lifecycle: not a duration"),
    fault<&Writer::resource_limits, &Limits::max_samples>(0, bad_limit),
    fault<&Writer::resource_limits, &Limits::max_instances>(-2, bad_limit),
    {with<Reader>([](Reader& q) {
         q.resource_limits = Limits{4, -1, 5};
     }),
     "inconsistent policy resource_limits: max_samples below max_samples_per_instance"},
    {with<Topic>([](Topic& q) {
         q.history.depth = 6;
         q.resource_limits.max_samples_per_instance = 5;
     }),
     "inconsistent policies: history.depth above resource_limits.max_samples_per_instance"},
    {with<Topic>([](Topic& q) {
         q.durability_service.history_depth = 6;
         q.durability_service.max_samples_per_instance = 5;
     }),
     "inconsistent policy durability_service: history_depth above max_samples_per_instance"},
    {with<Reader>([](Reader& q) {
         q.deadline.period = {1, 0};
         q.time_based_filter.minimum_separation = {1, 1};
     }),
     "inconsistent policies: deadline.period below time_based_filter.minimum_separation"},
    {with<Participant>([](Participant& q) { add_property(q.property.value, "", "value"); }),
     "inconsistent policy property: a property without name"},
    {with<Participant>([](Participant& q) {
         add_property(q.property.value, "name", "1");
         add_property(q.property.value, "name", "2");
     }),
     "inconsistent policy property: two properties of the same name"},
};

TEST(QosConsistency, NamesWhatIsInconsistent) {
    Reports reports;
    for (const FaultCase& fault : faults) {
        EXPECT_EQ(fault.check(), DDS_RETCODE_INCONSISTENT_POLICY) << fault.report;
        const auto texts = reports.take();
        ASSERT_FALSE(texts.empty());
        EXPECT_EQ(texts.back(), std::string("Entity_set_qos:") + fault.report);
    }
}

TEST(QosConsistency, AcceptsPoliciesThatJustFitAndADepthThatDoesNotCount) {
    EXPECT_EQ(with<Writer>([](Writer& q) {
                  q.resource_limits = {5, 1, 5};
                  q.history.depth = 5;
              })(),
              DDS_RETCODE_OK);
    EXPECT_EQ(with<Writer>([](Writer& q) {
                  q.resource_limits = {5, 1, 5};
                  q.history = {DDS_KEEP_ALL_HISTORY_QOS, 0};
              })(),
              DDS_RETCODE_OK);
    EXPECT_EQ(with<Reader>([](Reader& q) {
                  q.deadline.period = q.time_based_filter.minimum_separation = {1, 5};
              })(),
              DDS_RETCODE_OK);
}

TEST(QosConsistency, NamesThePolicyThatCannotChangeAnyMore) {
    Reports reports;
    const OwnedQos<Writer> current;
    OwnedQos<Writer> wanted;
    wanted.get().ownership.kind = DDS_EXCLUSIVE_OWNERSHIP_QOS;
    EXPECT_EQ(check_qos_change("DDS_DataWriter_set_qos", current.get(), wanted.get()),
              DDS_RETCODE_IMMUTABLE_POLICY);
    EXPECT_EQ(reports.take(),
              std::vector<std::string>{
                  "DDS_DataWriter_set_qos:policy cannot change while enabled: ownership"});
}

TEST(QosConsistency, IgnoresWhatACallerPutsWhereThePortWrites) {
    const OwnedQos<Participant> current;
    OwnedQos<Participant> wanted;
    wanted.get().wire_protocol = {1, 2, 3};
    EXPECT_TRUE(equal_qos(current.get(), wanted.get()));
    EXPECT_EQ(check_qos_change("test", current.get(), wanted.get()), DDS_RETCODE_OK);
    OwnedQos<Participant> copy;
    ASSERT_EQ(copy.assign(wanted.get()), DDS_RETCODE_OK);
    EXPECT_EQ(copy.get().wire_protocol.rtps_app_id, 2U);
}

}  // namespace
}  // namespace pexa::dds
