/// @file policy_members.hpp
/// @brief Every policy: when it may change, its members, their defaults by the DDS standard, and
/// their counterparts in the engine's QoS.
#pragma once

#include "platform/dds/qos/policy_builder.hpp"

namespace pexa::dds::policy_tables {

using engine::Qos;
using enum Change;

inline constexpr DDS_Duration_t infinite_duration{DDS_DURATION_INFINITE_SEC,
                                                  DDS_DURATION_INFINITE_NSEC};
inline constexpr DDS_Duration_t zero_duration{0, 0};
inline constexpr DDS_Duration_t hundred_milliseconds{0, 100'000'000};

/// The rows of a policy.
template <typename Record>
constexpr std::nullptr_t rows_of = nullptr;

template <>
inline constexpr auto rows_of<DDS_UserDataQosPolicy> = PolicyRows{
    always,
    owned_member<&DDS_UserDataQosPolicy::value, &Qos::user_data>("value"),
};
template <>
inline constexpr auto rows_of<DDS_TopicDataQosPolicy> = PolicyRows{
    always,
    owned_member<&DDS_TopicDataQosPolicy::value, &Qos::topic_data>("value"),
};
template <>
inline constexpr auto rows_of<DDS_GroupDataQosPolicy> = PolicyRows{
    always,
    owned_member<&DDS_GroupDataQosPolicy::value, &Qos::group_data>("value"),
};
template <>
inline constexpr auto rows_of<DDS_PartitionQosPolicy> = PolicyRows{
    always,
    owned_member<&DDS_PartitionQosPolicy::name, &Qos::partition>("name"),
};
template <>
inline constexpr auto rows_of<DDS_EntityNameQosPolicy> = PolicyRows{
    until_enabled,
    owned_member<&DDS_EntityNameQosPolicy::name, &Qos::entity_name>("name"),
};
template <>
inline constexpr auto rows_of<DDS_PropertyQosPolicy> = PolicyRows{
    until_enabled,
    owned_member<&DDS_PropertyQosPolicy::value, &Qos::properties>("value"),
};
template <>
inline constexpr auto rows_of<DDS_EntityFactoryQosPolicy> = PolicyRows{
    always,
    own_member<&DDS_EntityFactoryQosPolicy::autoenable_created_entities, DDS_BOOLEAN_TRUE>(
        "autoenable_created_entities"),
};
template <>
inline constexpr auto rows_of<DDS_WireProtocolQosPolicy> = PolicyRows{
    never,
    own_member<&DDS_WireProtocolQosPolicy::rtps_host_id, 0U>("rtps_host_id"),
    own_member<&DDS_WireProtocolQosPolicy::rtps_app_id, 0U>("rtps_app_id"),
    own_member<&DDS_WireProtocolQosPolicy::rtps_instance_id, 0U>("rtps_instance_id"),
};
template <>
inline constexpr auto rows_of<DDS_DurabilityQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_DurabilityQosPolicy::kind, DDS_VOLATILE_DURABILITY_QOS, &Qos::durability>("kind"),
};
template <>
inline constexpr auto rows_of<DDS_OwnershipQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_OwnershipQosPolicy::kind, DDS_SHARED_OWNERSHIP_QOS, &Qos::ownership>("kind"),
};
template <>
inline constexpr auto rows_of<DDS_DestinationOrderQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_DestinationOrderQosPolicy::kind, DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS,
           &Qos::destination_order>("kind"),
};
template <>
inline constexpr auto rows_of<DDS_DeadlineQosPolicy> = PolicyRows{
    always,
    member<&DDS_DeadlineQosPolicy::period, infinite_duration, &Qos::deadline>("period"),
};
template <>
inline constexpr auto rows_of<DDS_LatencyBudgetQosPolicy> = PolicyRows{
    always,
    member<&DDS_LatencyBudgetQosPolicy::duration, zero_duration, &Qos::latency_budget>("duration"),
};
template <>
inline constexpr auto rows_of<DDS_TimeBasedFilterQosPolicy> = PolicyRows{
    always,
    member<&DDS_TimeBasedFilterQosPolicy::minimum_separation, zero_duration,
           &Qos::time_based_filter>("minimum_separation"),
};
template <>
inline constexpr auto rows_of<DDS_LifespanQosPolicy> = PolicyRows{
    always,
    member<&DDS_LifespanQosPolicy::duration, infinite_duration, &Qos::lifespan>("duration"),
};
template <>
inline constexpr auto rows_of<DDS_OwnershipStrengthQosPolicy> = PolicyRows{
    always,
    member<&DDS_OwnershipStrengthQosPolicy::value, 0, &Qos::ownership_strength>("value"),
};
template <>
inline constexpr auto rows_of<DDS_TransportPriorityQosPolicy> = PolicyRows{
    always,
    member<&DDS_TransportPriorityQosPolicy::value, 0, &Qos::transport_priority>("value"),
};
template <>
inline constexpr auto rows_of<DDS_WriterDataLifecycleQosPolicy> = PolicyRows{
    always,
    member<&DDS_WriterDataLifecycleQosPolicy::autodispose_unregistered_instances, DDS_BOOLEAN_TRUE,
           &Qos::autodispose_unregistered_instances>("autodispose_unregistered_instances"),
};
template <>
inline constexpr auto rows_of<DDS_BatchQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_BatchQosPolicy::enable, DDS_BOOLEAN_FALSE, &Qos::batching>("enable"),
};
template <>
inline constexpr auto rows_of<DDS_PresentationQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_PresentationQosPolicy::access_scope, DDS_INSTANCE_PRESENTATION_QOS,
           &Qos::presentation, &engine::PresentationPolicy::access_scope>("access_scope"),
    member<&DDS_PresentationQosPolicy::coherent_access, DDS_BOOLEAN_FALSE, &Qos::presentation,
           &engine::PresentationPolicy::coherent_access>("coherent_access"),
    member<&DDS_PresentationQosPolicy::ordered_access, DDS_BOOLEAN_FALSE, &Qos::presentation,
           &engine::PresentationPolicy::ordered_access>("ordered_access"),
};
template <>
inline constexpr auto rows_of<DDS_LivelinessQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_LivelinessQosPolicy::kind, DDS_AUTOMATIC_LIVELINESS_QOS, &Qos::liveliness,
           &engine::LivelinessPolicy::kind>("kind"),
    member<&DDS_LivelinessQosPolicy::lease_duration, infinite_duration, &Qos::liveliness,
           &engine::LivelinessPolicy::lease_duration>("lease_duration"),
};
template <>
inline constexpr auto rows_of<DDS_ReliabilityQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_ReliabilityQosPolicy::kind, DDS_BEST_EFFORT_RELIABILITY_QOS, &Qos::reliability,
           &engine::ReliabilityPolicy::kind>("kind"),
    member<&DDS_ReliabilityQosPolicy::max_blocking_time, hundred_milliseconds, &Qos::reliability,
           &engine::ReliabilityPolicy::max_blocking_time>("max_blocking_time"),
};
template <>
inline constexpr auto rows_of<DDS_ReaderDataLifecycleQosPolicy> = PolicyRows{
    always,
    member<&DDS_ReaderDataLifecycleQosPolicy::autopurge_nowriter_samples_delay, infinite_duration,
           &Qos::reader_data_lifecycle,
           &engine::ReaderDataLifecyclePolicy::autopurge_nowriter_samples_delay>(
        "autopurge_nowriter_samples_delay"),
    member<&DDS_ReaderDataLifecycleQosPolicy::autopurge_disposed_samples_delay, infinite_duration,
           &Qos::reader_data_lifecycle,
           &engine::ReaderDataLifecyclePolicy::autopurge_disposed_samples_delay>(
        "autopurge_disposed_samples_delay"),
};

template <auto Kind, auto Depth>
QosFault fault_of_depth(const void* policy) {
    const bool counts = ScalarValue<DDS_HistoryQosPolicyKind>::plain(value_of<Kind>(policy)) ==
                        DDS_KEEP_LAST_HISTORY_QOS;
    const DDS_Long depth = value_of<Depth>(policy);
    return counts && depth < 1 ? QosFault("%d is below 1", depth) : QosFault();
}

template <>
inline constexpr auto rows_of<DDS_HistoryQosPolicy> = PolicyRows{
    until_enabled,
    member<&DDS_HistoryQosPolicy::kind, DDS_KEEP_LAST_HISTORY_QOS, &Qos::history,
           &engine::HistoryPolicy::kind>("kind"),
    member<&DDS_HistoryQosPolicy::depth, 1, &Qos::history, &engine::HistoryPolicy::depth>("depth")
        .checked_by(fault_of_depth<&DDS_HistoryQosPolicy::kind, &DDS_HistoryQosPolicy::depth>),
};

/// Of resource limits, and of a durability service, which has the same members.
template <typename Limits>
QosFault contradiction_of_limits(const void* policy) {
    const auto& limits = *static_cast<const Limits*>(policy);
    const bool fit = limits.max_samples == DDS_LENGTH_UNLIMITED ||
                     limits.max_samples >= limits.max_samples_per_instance;
    return fit ? QosFault()
               : QosFault("max_samples %d is below max_samples_per_instance %d", limits.max_samples,
                          limits.max_samples_per_instance);
}

template <>
inline constexpr auto rows_of<DDS_ResourceLimitsQosPolicy> =
    PolicyRows{
        until_enabled,
        limit<&DDS_ResourceLimitsQosPolicy::max_samples, &Qos::resource_limits,
              &engine::ResourceLimitsPolicy::max_samples>("max_samples"),
        limit<&DDS_ResourceLimitsQosPolicy::max_instances, &Qos::resource_limits,
              &engine::ResourceLimitsPolicy::max_instances>("max_instances"),
        limit<&DDS_ResourceLimitsQosPolicy::max_samples_per_instance, &Qos::resource_limits,
              &engine::ResourceLimitsPolicy::max_samples_per_instance>("max_samples_per_instance"),
    }
        .contradicted_by(contradiction_of_limits<DDS_ResourceLimitsQosPolicy>);

/// @return whether a KEEP_LAST history fits into the limits.
inline bool fits(const DDS_HistoryQosPolicyKind& kind, DDS_Long depth,
                 DDS_Long max_samples_per_instance) {
    return ScalarValue<DDS_HistoryQosPolicyKind>::plain(kind) != DDS_KEEP_LAST_HISTORY_QOS ||
           max_samples_per_instance == DDS_LENGTH_UNLIMITED || depth <= max_samples_per_instance;
}

inline QosFault contradiction_of_service(const void* policy) {
    if (const QosFault fault = contradiction_of_limits<DDS_DurabilityServiceQosPolicy>(policy)) {
        return fault;
    }
    const auto& service = *static_cast<const DDS_DurabilityServiceQosPolicy*>(policy);
    const bool fit =
        fits(service.history_kind, service.history_depth, service.max_samples_per_instance);
    return fit ? QosFault()
               : QosFault("history_depth %d is above max_samples_per_instance %d",
                          service.history_depth, service.max_samples_per_instance);
}

template <>
inline constexpr auto rows_of<DDS_DurabilityServiceQosPolicy> = [] {
    using Service = DDS_DurabilityServiceQosPolicy;
    using Counterpart = engine::DurabilityServicePolicy;
    constexpr auto slot = &Qos::durability_service;
    constexpr auto history = &Counterpart::history;
    constexpr auto limits = &Counterpart::limits;
    return PolicyRows{
        until_enabled,
        member<&Service::service_cleanup_delay, zero_duration, slot, &Counterpart::cleanup_delay>(
            "service_cleanup_delay"),
        member<&Service::history_kind, DDS_KEEP_LAST_HISTORY_QOS, slot, history,
               &engine::HistoryPolicy::kind>("history_kind"),
        member<&Service::history_depth, 1, slot, history, &engine::HistoryPolicy::depth>(
            "history_depth")
            .checked_by(fault_of_depth<&Service::history_kind, &Service::history_depth>),
        limit<&Service::max_samples, slot, limits, &engine::ResourceLimitsPolicy::max_samples>(
            "max_samples"),
        limit<&Service::max_instances, slot, limits, &engine::ResourceLimitsPolicy::max_instances>(
            "max_instances"),
        limit<&Service::max_samples_per_instance, slot, limits,
              &engine::ResourceLimitsPolicy::max_samples_per_instance>("max_samples_per_instance"),
    }
        .contradicted_by(contradiction_of_service);
}();

}  // namespace pexa::dds::policy_tables
