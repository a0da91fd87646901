#include <gtest/gtest.h>

#include "platform/engine/cyclone/qos_conversion.hpp"
#include "tests/platform/engine/node.hpp"

namespace pexa::engine {
namespace {

Qos every_policy() {
    Qos qos;
    qos.user_data = Bytes{std::byte{1}, std::byte{0}};
    qos.topic_data = Bytes{std::byte{2}};
    qos.group_data = Bytes{};
    qos.entity_name = "name";
    qos.properties = {{"first", "1"}, {"second", ""}};
    qos.durability = DurabilityKind::transient;
    qos.durability_service = {
        5 * millisecond, {HistoryKind::keep_last, 6}, ResourceLimitsPolicy{30, 20, 10}};
    qos.presentation = {AccessScope::topic, true, true};
    qos.deadline = 7 * millisecond;
    qos.latency_budget = 8 * millisecond;
    qos.ownership = OwnershipKind::exclusive;
    qos.ownership_strength = -9;
    qos.liveliness = {LivelinessKind::manual_by_participant, 10 * millisecond};
    qos.time_based_filter = 1 * millisecond;
    qos.partition = {"a", "b*", ""};
    qos.reliability = {ReliabilityKind::reliable, infinite};
    qos.transport_priority = 11;
    qos.lifespan = 12 * millisecond;
    qos.destination_order = DestinationOrderKind::by_source_timestamp;
    qos.history = {HistoryKind::keep_last, 13};
    qos.resource_limits = {16, 15, 14};
    qos.autodispose_unregistered_instances = false;
    qos.reader_data_lifecycle = {17 * millisecond, 18 * millisecond};
    return qos;
}

TEST(QosConversion, KeepsEveryPolicyAndAddsNone) {
    EXPECT_EQ(cyclone::from_cyclone(cyclone::to_cyclone(every_policy()).get()), every_policy());
    EXPECT_EQ(cyclone::from_cyclone(cyclone::to_cyclone(Qos{}).get()), Qos{});
    // One at a time, so that no policy can stand in for another.
    const Qos all = every_policy();
    const auto alone = [&all](auto member) {
        Qos one;
        one.*member = all.*member;
        EXPECT_EQ(cyclone::from_cyclone(cyclone::to_cyclone(one).get()), one);
    };
    const auto each_alone = [&](auto... members) { (alone(members), ...); };
    each_alone(&Qos::user_data, &Qos::topic_data, &Qos::group_data, &Qos::entity_name,
               &Qos::properties, &Qos::durability, &Qos::durability_service, &Qos::presentation,
               &Qos::deadline, &Qos::latency_budget, &Qos::ownership, &Qos::ownership_strength,
               &Qos::liveliness, &Qos::time_based_filter, &Qos::partition, &Qos::reliability,
               &Qos::transport_priority, &Qos::lifespan, &Qos::destination_order, &Qos::history,
               &Qos::resource_limits, &Qos::autodispose_unregistered_instances,
               &Qos::reader_data_lifecycle);
}

}  // namespace
}  // namespace pexa::engine
