#include <cstring>
#include <functional>
#include <string>

#include "pexa/string.h"
#include "platform/dds/qos/conversion.hpp"
#include "tests/support/text.hpp"

namespace pexa::dds {
namespace {

using Check = std::function<Status()>;
using Participant = DDS_DomainParticipantQos;
using Topic = DDS_TopicQos;
using Publisher = DDS_PublisherQos;
using Writer = DDS_DataWriterQos;
using Reader = DDS_DataReaderQos;

/// Checks a record that is changed from its defaults.
template <typename Record>
Check with(std::function<void(Record&)> change) {
    return [change] {
        OwnedQos<Record> qos;
        change(qos.get());
        return check_qos("Entity_set_qos", qos.get());
    };
}

/// Stores a number that is no enumerator.
template <typename Kind>
void put(Kind& kind, int number) {
    static_assert(sizeof kind == sizeof number);
    std::memcpy(&kind, &number, sizeof kind);
}

Check with_properties(const char* first, const char* second) {
    return with<Participant>([=](Participant& qos) {
        ASSERT_TRUE(DDS_PropertySeq_ensure_length(&qos.property.value, 2, 2));
        DDS_Property_t* properties = DDS_PropertySeq_get_contiguous_buffer(&qos.property.value);
        DDS_String_replace(&properties[0].name, first);
        DDS_String_replace(&properties[1].name, second);
    });
}

const std::pair<Check, const char*> faults[] = {
    {with<Writer>([](auto& q) { q.history.depth = 0; }), "policy history: depth below 1"},
    {with<Reader>([](auto& q) { put(q.history.kind, 2); }), "policy history: unknown kind"},
    {with<Topic>([](auto& q) { put(q.durability.kind, -1); }), "policy durability: unknown kind"},
    {with<Publisher>([](auto& q) { put(q.presentation.access_scope, 3); }),
     "policy presentation: unknown kind"},
    {with<Reader>([](auto& q) {
         q.deadline.period = {-1, 0};
     }),
     "policy deadline: not a duration"},
    {with<Writer>([](auto& q) {
         q.lifespan.duration = {1, 1'000'000'000};
     }),
     "policy lifespan: not a duration"},
    {with<Writer>([](auto& q) { q.resource_limits.max_samples = 0; }),
     "policy resource_limits: a limit neither positive nor unlimited"},
    {with<Writer>([](auto& q) { q.resource_limits.max_instances = -2; }),
     "policy resource_limits: a limit neither positive nor unlimited"},
    {with<Reader>([](auto& q) {
         q.resource_limits = {4, -1, 5};
     }),
     "policy resource_limits: max_samples below max_samples_per_instance"},
    {with<Topic>([](auto& q) {
         q.history.depth = 6, q.resource_limits = {-1, -1, 5};
     }),
     "policies: history.depth above resource_limits.max_samples_per_instance"},
    {with<Topic>([](auto& q) { q.durability_service = {{}, {}, 6, -1, -1, 5}; }),
     "policy durability_service: history_depth above max_samples_per_instance"},
    {with<Topic>([](auto& q) { q.durability_service = {{}, {}, 0, 0, -1, -1}; }),
     "policy durability_service: depth below 1"},
    {with<Reader>([](auto& q) {
         q.deadline = {{1, 0}}, q.time_based_filter = {{1, 1}};
     }),
     "policies: deadline.period below time_based_filter.minimum_separation"},
    {with_properties("", "name"), "policy property: a property without name"},
    {with_properties("name", "name"), "policy property: two properties of the same name"},
};

TEST(QosConsistency, NamesWhatIsInconsistent) {
    orvane::test::Reports reports;
    for (const auto& [check, report] : faults) {
        EXPECT_EQ(check(), Status::inconsistent_policy) << report;
        const auto texts = reports.take();
        ASSERT_FALSE(texts.empty());
        EXPECT_EQ(texts.back(), std::string("Entity_set_qos:inconsistent ") + report);
    }
}

TEST(QosConsistency, AcceptsPoliciesThatJustFitAndADepthThatDoesNotCount) {
    const Check checks[] = {
        with<Writer>([](auto& q) {
            q.resource_limits = {5, 1, 5}, q.history.depth = 5;
        }),
        with<Writer>([](auto& q) {
            q.history = {DDS_KEEP_ALL_HISTORY_QOS, 0};
        }),
        with<Reader>([](auto& q) {
            q.deadline = {{1, 5}}, q.time_based_filter = {{1, 5}};
        }),
    };
    for (const Check& check : checks) {
        EXPECT_EQ(check(), Status::ok);
    }
}

}  // namespace
}  // namespace pexa::dds
