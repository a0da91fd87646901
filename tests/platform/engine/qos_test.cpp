#include <gtest/gtest.h>

#include "platform/engine/cyclone/qos_conversion.hpp"
#include "tests/platform/engine/note_node.hpp"

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
}

}  // namespace
}  // namespace pexa::engine
