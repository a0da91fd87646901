#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../platform_core/reports.hpp"
#include "dds/qos_conversion.hpp"
#include "qos_property.hpp"

namespace pexa::dds {
namespace {

/// A change that makes a record inconsistent, and what the report says of it.
struct FaultCase {
    std::function<DDS_ReturnCode_t()> check;
    const char* report;
};

template <typename Record>
FaultCase fault(void (*change)(Record&), const char* report) {
    return {[change] {
                OwnedQos<Record> qos;
                change(qos.get());
                return check_qos("Entity_set_qos", qos.get());
            },
            report};
}

template <typename Kind>
void store_number(Kind& kind, int number) {
    static_assert(sizeof kind == sizeof number);
    std::memcpy(&kind, &number, sizeof number);
}

using Topic = DDS_TopicQos;
using Writer = DDS_DataWriterQos;
using Reader = DDS_DataReaderQos;
using Publisher = DDS_PublisherQos;
using Participant = DDS_DomainParticipantQos;

TEST(Qos, names_what_is_inconsistent) {
    const FaultCase faults[] = {
        fault<Writer>([](Writer& q) { q.history.depth = 0; },
                      "inconsistent policy history: depth below 1"),
        fault<Reader>([](Reader& q) { store_number(q.history.kind, 2); },
                      "inconsistent policy history: unknown kind"),
        fault<Topic>([](Topic& q) { store_number(q.durability.kind, -1); },
                     "inconsistent policy durability: unknown kind"),
        fault<Writer>([](Writer& q) { store_number(q.reliability.kind, 2); },
                      "inconsistent policy reliability: unknown kind"),
        fault<Writer>([](Writer& q) { store_number(q.liveliness.kind, 3); },
                      "inconsistent policy liveliness: unknown kind"),
        fault<Publisher>([](Publisher& q) { store_number(q.presentation.access_scope, 3); },
                         "inconsistent policy presentation: unknown kind"),
        fault<Reader>(
            [](Reader& q) {
                q.deadline.period = {-1, 0};
            },
            "inconsistent policy deadline: not a duration"),
        fault<Writer>(
            [](Writer& q) {
                q.lifespan.duration = {1, 1'000'000'000};
            },
            "inconsistent policy lifespan: not a duration"),
        fault<Writer>(
            [](Writer& q) {
                q.reliability.max_blocking_time = {-1, 0};
            },
            "inconsistent policy reliability: not a duration"),
        fault<Writer>(
            [](Writer& q) {
                q.liveliness.lease_duration = {-1, 0};
            },
            "inconsistent policy liveliness: not a duration"),
        fault<Reader>(
            [](Reader& q) {
                q.reader_data_lifecycle.autopurge_disposed_samples_delay = {-2, 0};
            },
            "inconsistent policy reader_data_lifecycle: not a duration"),
        fault<Writer>([](Writer& q) { q.resource_limits.max_samples = 0; },
                      "inconsistent policy resource_limits: a limit neither positive nor "
                      "unlimited"),
        fault<Writer>([](Writer& q) { q.resource_limits.max_instances = -2; },
                      "inconsistent policy resource_limits: a limit neither positive nor "
                      "unlimited"),
        fault<Reader>(
            [](Reader& q) {
                q.resource_limits = {4, -1, 5};
            },
            "inconsistent policy resource_limits: max_samples below "
            "max_samples_per_instance"),
        fault<Topic>(
            [](Topic& q) {
                q.history.depth = 6;
                q.resource_limits.max_samples_per_instance = 5;
            },
            "inconsistent policies: history.depth above "
            "resource_limits.max_samples_per_instance"),
        fault<Topic>(
            [](Topic& q) {
                q.durability_service.history_depth = 6;
                q.durability_service.max_samples_per_instance = 5;
            },
            "inconsistent policy durability_service: history_depth above "
            "max_samples_per_instance"),
        fault<Reader>(
            [](Reader& q) {
                q.deadline.period = {1, 0};
                q.time_based_filter.minimum_separation = {1, 1};
            },
            "inconsistent policies: deadline.period below time_based_filter.minimum_separation"),
        fault<Participant>([](Participant& q) { add_property(q.property.value, "", "value"); },
                           "inconsistent policy property: a property without name"),
        fault<Participant>(
            [](Participant& q) {
                add_property(q.property.value, "name", "1");
                add_property(q.property.value, "name", "2");
            },
            "inconsistent policy property: two properties of the same name"),
    };
    Reports reports;
    for (const FaultCase& fault : faults) {
        EXPECT_EQ(fault.check(), DDS_RETCODE_INCONSISTENT_POLICY) << fault.report;
        const auto texts = reports.take();
        ASSERT_FALSE(texts.empty());
        EXPECT_EQ(texts.back(), std::string("Entity_set_qos:") + fault.report);
    }
}

TEST(Qos, accepts_policies_that_just_fit_and_a_depth_that_does_not_count) {
    OwnedQos<Writer> qos;
    qos.get().resource_limits = {5, 1, 5};
    qos.get().history.depth = 5;
    EXPECT_EQ(check_qos("test", qos.get()), DDS_RETCODE_OK);
    qos.get().history = {DDS_KEEP_ALL_HISTORY_QOS, 0};
    EXPECT_EQ(check_qos("test", qos.get()), DDS_RETCODE_OK);
    OwnedQos<Reader> reader;
    reader.get().deadline.period = {1, 5};
    reader.get().time_based_filter.minimum_separation = {1, 5};
    EXPECT_EQ(check_qos("test", reader.get()), DDS_RETCODE_OK);
}

TEST(Qos, names_the_policy_that_cannot_change_any_more) {
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

TEST(Qos, ignores_what_a_caller_puts_where_the_port_writes) {
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
