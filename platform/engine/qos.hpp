/// @file qos.hpp
/// @brief QoS policies as values.
///
/// Durations are in nanoseconds, `infinite` allowed; counts may be `unlimited`. Enumerators have
/// the DDS numbers.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/engine/values.hpp"

namespace pexa::engine {

enum class DurabilityKind : int { volatile_data, transient_local, transient, persistent };
enum class HistoryKind : int { keep_last, keep_all };
enum class OwnershipKind : int { shared, exclusive };
enum class LivelinessKind : int { automatic, manual_by_participant, manual_by_topic };
enum class ReliabilityKind : int { best_effort, reliable };
enum class DestinationOrderKind : int { by_reception_timestamp, by_source_timestamp };
enum class AccessScope : int { instance, topic, group };
/// Which writers a reader disregards.
enum class IgnoreLocalKind : int { none, same_participant, same_process };

struct HistoryPolicy {
    HistoryKind kind = HistoryKind::keep_last;
    std::int32_t depth = 1;
    bool operator==(const HistoryPolicy&) const = default;
};

struct ResourceLimitsPolicy {
    std::int32_t max_samples = unlimited;
    std::int32_t max_instances = unlimited;
    std::int32_t max_samples_per_instance = unlimited;
    bool operator==(const ResourceLimitsPolicy&) const = default;
};

struct DurabilityServicePolicy {
    Nanoseconds cleanup_delay = 0;
    HistoryPolicy history;
    ResourceLimitsPolicy limits;
    bool operator==(const DurabilityServicePolicy&) const = default;
};

struct PresentationPolicy {
    AccessScope access_scope = AccessScope::instance;
    bool coherent_access = false;
    bool ordered_access = false;
    bool operator==(const PresentationPolicy&) const = default;
};

struct LivelinessPolicy {
    LivelinessKind kind = LivelinessKind::automatic;
    Nanoseconds lease_duration = infinite;
    bool operator==(const LivelinessPolicy&) const = default;
};

struct ReliabilityPolicy {
    ReliabilityKind kind = ReliabilityKind::best_effort;
    Nanoseconds max_blocking_time = 100'000'000;
    bool operator==(const ReliabilityPolicy&) const = default;
};

struct ReaderDataLifecyclePolicy {
    Nanoseconds autopurge_nowriter_samples_delay = infinite;
    Nanoseconds autopurge_disposed_samples_delay = infinite;
    bool operator==(const ReaderDataLifecyclePolicy&) const = default;
};

using Bytes = std::vector<std::byte>;

/// The policies of any entity. A policy that is absent, or does not apply to the kind of entity,
/// leaves the engine's default (for endpoints first what the topic has).
struct Qos {
    std::optional<Bytes> user_data;
    std::optional<Bytes> topic_data;
    std::optional<Bytes> group_data;
    /// Name of a participant, publisher, subscriber or endpoint, seen by discovery tools.
    std::optional<std::string> entity_name;
    /// Name and value; DDS Security is configured here, on the participant. Names are unique.
    std::vector<std::pair<std::string, std::string>> properties;
    std::optional<DurabilityKind> durability;
    /// Of writers, the history and limits in it are replaced by those of `history` and
    /// `resource_limits`: they decide what a late reader gets.
    std::optional<DurabilityServicePolicy> durability_service;
    std::optional<PresentationPolicy> presentation;
    std::optional<Nanoseconds> deadline;
    std::optional<Nanoseconds> latency_budget;
    std::optional<OwnershipKind> ownership;
    std::optional<std::int32_t> ownership_strength;
    /// Of participants: automatic, and the time after which others take a silent one for gone.
    std::optional<LivelinessPolicy> liveliness;
    std::optional<Nanoseconds> time_based_filter;
    std::optional<std::vector<std::string>> partition;
    std::optional<ReliabilityPolicy> reliability;
    std::optional<std::int32_t> transport_priority;
    std::optional<Nanoseconds> lifespan;
    std::optional<DestinationOrderKind> destination_order;
    std::optional<HistoryPolicy> history;
    std::optional<ResourceLimitsPolicy> resource_limits;
    /// Whether unregistering an instance also disposes it.
    std::optional<bool> autodispose_unregistered_instances;
    std::optional<ReaderDataLifecyclePolicy> reader_data_lifecycle;
    std::optional<IgnoreLocalKind> ignore_local;
    /// Writers only, at creation: samples are collected to share packets. They are sent when the
    /// packet is full, before the history would drop one of them, at the first write after
    /// some milliseconds, and at flush(). Not reported by get_qos(). The first such writer
    /// overrides the engine's own configuration of batching, and what the application creates
    /// directly on the engine at that very moment batches, too.
    std::optional<bool> batching;

    bool operator==(const Qos&) const = default;
};

}  // namespace pexa::engine
