// A QoS with a value that is no default in every policy.
#pragma once

#include "platform/engine/engine.hpp"

namespace pexa::engine {

/// The values of docs/qos-profiles-example.xml.
inline Qos every_policy() {
    constexpr Nanoseconds second = 1'000'000'000;
    Qos qos;
    qos.user_data = Bytes{std::byte{0}, std::byte{0xff}, std::byte{'a'}, std::byte{'a'}};
    qos.topic_data = qos.group_data = qos.user_data;
    qos.entity_name = "navigation";
    qos.properties = {{"first", "1"}, {"second", "2"}};
    qos.durability = DurabilityKind::transient_local;
    qos.durability_service = {second, {HistoryKind::keep_all, 11}, {30, 12, 13}};
    qos.presentation = {AccessScope::topic, true, true};
    qos.deadline = 3 * second + 4;
    qos.latency_budget = 5;
    qos.ownership = OwnershipKind::exclusive;
    qos.ownership_strength = 5;
    qos.liveliness = {LivelinessKind::manual_by_topic, 6 * second};
    qos.time_based_filter = 2 * second;
    qos.partition = {"north", "south-*"};
    qos.reliability = {ReliabilityKind::reliable, infinite};
    qos.transport_priority = -9;
    qos.lifespan = 7 * second;
    qos.destination_order = DestinationOrderKind::by_source_timestamp;
    qos.history = {HistoryKind::keep_all, 7};
    qos.resource_limits = {90, 10, 8};
    qos.autodispose_unregistered_instances = false;
    qos.batching = true;
    qos.reader_data_lifecycle = {4 * second, 5 * second};
    return qos;
}

}  // namespace pexa::engine
