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

/// The policies of any entity. For an absent policy that topics have, an endpoint has the policy of
/// its topic; in all other cases the engine's default holds. Policies that do not apply to the kind
/// of entity are ignored.
struct Qos {
    std::optional<Bytes> user_data;
    std::optional<Bytes> topic_data;
    std::optional<Bytes> group_data;
    /// Name of a participant, publisher, subscriber or endpoint, seen by discovery tools.
    std::optional<std::string> entity_name;
    /// Name and value; DDS Security is configured here, on the participant. Names are unique.
    std::vector<std::pair<std::string, std::string>> properties;
    std::optional<DurabilityKind> durability;
    /// A writer replaces the history and limits in it by `history` and `resource_limits`, which
    /// decide how many samples a late reader gets. Only where `history` keeps all, a depth above 1
    /// in it stands: samples that all readers have acknowledged are kept so far.
    std::optional<DurabilityServicePolicy> durability_service;
    std::optional<PresentationPolicy> presentation;
    std::optional<Nanoseconds> deadline;
    std::optional<Nanoseconds> latency_budget;
    std::optional<OwnershipKind> ownership;
    std::optional<std::int32_t> ownership_strength;
    /// Of a participant: automatic. Other participants drop it when they have not heard of it for
    /// the lease duration.
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
    /// Writers only, at creation: a batch of samples shares packets. It is sent when a packet is
    /// full, before the history would drop one of its samples, at the first write after some
    /// milliseconds, and at flush(). Not reported by get_qos().
    std::optional<bool> batching;

    bool operator==(const Qos&) const = default;
};

}  // namespace pexa::engine
