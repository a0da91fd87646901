/// @file qos_plain_policies.hpp
/// @brief Policies without memory of their own: their defaults, their counterpart in the engine's
/// QoS, and what makes one invalid.
///
/// `initial` is the DDS standard's default, `slot` the counterpart's place, `value` and `policy`
/// convert, `fault` says what is wrong with a policy taken by itself, or NULL.
#pragma once

#include <bit>

#include "pexa/qos.h"
#include "platform/dds/qos/duration.hpp"
#include "platform/engine/qos.hpp"

namespace pexa::dds {

inline constexpr DDS_Duration_t infinite_duration{DDS_DURATION_INFINITE_SEC,
                                                  DDS_DURATION_INFINITE_NSEC};
inline constexpr DDS_Duration_t zero_duration{0, 0};
inline constexpr DDS_Duration_t hundred_milliseconds{0, 100'000'000};

/// Reads an enumeration of the C interface as a number: a caller may have stored any.
template <typename Kind>
[[nodiscard]] constexpr int number_of(const Kind& kind) {
    return std::bit_cast<int>(kind);
}

template <typename Kind>
[[nodiscard]] constexpr const char* fault_of_kind(const Kind& kind, Kind last) {
    const int number = number_of(kind);
    return number >= 0 && number <= static_cast<int>(last) ? nullptr : "unknown kind";
}

[[nodiscard]] constexpr const char* fault_of_duration(const DDS_Duration_t& duration) {
    return is_valid(duration) ? nullptr : "not a duration";
}

/// A policy that is nothing but a kind.
template <typename Policy, auto Slot, typename Value, auto Initial, auto Last>
struct KindPolicy {
    static constexpr Policy initial{Initial};
    static constexpr auto slot = Slot;
    static Value value(const Policy& policy) { return static_cast<Value>(number_of(policy.kind)); }
    static Policy policy(Value value) { return {static_cast<decltype(Initial)>(value)}; }
    static const char* fault(const Policy& policy) { return fault_of_kind(policy.kind, Last); }
};

/// A policy that is nothing but a duration.
template <typename Policy, auto Slot, auto Member, const DDS_Duration_t& Initial>
struct DurationPolicy {
    static constexpr Policy initial{Initial};
    static constexpr auto slot = Slot;
    static engine::Nanoseconds value(const Policy& policy) {
        return to_nanoseconds(policy.*Member);
    }
    static Policy policy(engine::Nanoseconds value) { return {to_duration(value)}; }
    static const char* fault(const Policy& policy) { return fault_of_duration(policy.*Member); }
};

/// A policy that is nothing but a truth value.
template <typename Policy, auto Slot, auto Member, DDS_Boolean Initial>
struct TruthPolicy {
    static constexpr Policy initial{Initial};
    static constexpr auto slot = Slot;
    static bool value(const Policy& policy) { return policy.*Member != 0; }
    static Policy policy(bool value) { return {value}; }
    static const char* fault(const Policy&) { return nullptr; }
};

/// A policy that is nothing but a number, of which any will do.
template <typename Policy, auto Slot>
struct NumberPolicy {
    static constexpr Policy initial{0};
    static constexpr auto slot = Slot;
    static std::int32_t value(const Policy& policy) { return policy.value; }
    static Policy policy(std::int32_t value) { return {value}; }
    static const char* fault(const Policy&) { return nullptr; }
};

template <typename Policy>
struct PlainPolicy;

template <>
struct PlainPolicy<DDS_DurabilityQosPolicy>
    : KindPolicy<DDS_DurabilityQosPolicy, &engine::Qos::durability, engine::DurabilityKind,
                 DDS_VOLATILE_DURABILITY_QOS, DDS_PERSISTENT_DURABILITY_QOS> {};
template <>
struct PlainPolicy<DDS_OwnershipQosPolicy>
    : KindPolicy<DDS_OwnershipQosPolicy, &engine::Qos::ownership, engine::OwnershipKind,
                 DDS_SHARED_OWNERSHIP_QOS, DDS_EXCLUSIVE_OWNERSHIP_QOS> {};
template <>
struct PlainPolicy<DDS_DestinationOrderQosPolicy>
    : KindPolicy<DDS_DestinationOrderQosPolicy, &engine::Qos::destination_order,
                 engine::DestinationOrderKind, DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS,
                 DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS> {};
template <>
struct PlainPolicy<DDS_DeadlineQosPolicy>
    : DurationPolicy<DDS_DeadlineQosPolicy, &engine::Qos::deadline, &DDS_DeadlineQosPolicy::period,
                     infinite_duration> {};
template <>
struct PlainPolicy<DDS_LatencyBudgetQosPolicy>
    : DurationPolicy<DDS_LatencyBudgetQosPolicy, &engine::Qos::latency_budget,
                     &DDS_LatencyBudgetQosPolicy::duration, zero_duration> {};
template <>
struct PlainPolicy<DDS_TimeBasedFilterQosPolicy>
    : DurationPolicy<DDS_TimeBasedFilterQosPolicy, &engine::Qos::time_based_filter,
                     &DDS_TimeBasedFilterQosPolicy::minimum_separation, zero_duration> {};
template <>
struct PlainPolicy<DDS_LifespanQosPolicy>
    : DurationPolicy<DDS_LifespanQosPolicy, &engine::Qos::lifespan,
                     &DDS_LifespanQosPolicy::duration, infinite_duration> {};
template <>
struct PlainPolicy<DDS_OwnershipStrengthQosPolicy>
    : NumberPolicy<DDS_OwnershipStrengthQosPolicy, &engine::Qos::ownership_strength> {};
template <>
struct PlainPolicy<DDS_TransportPriorityQosPolicy>
    : NumberPolicy<DDS_TransportPriorityQosPolicy, &engine::Qos::transport_priority> {};

template <>
struct PlainPolicy<DDS_HistoryQosPolicy> {
    static constexpr DDS_HistoryQosPolicy initial{DDS_KEEP_LAST_HISTORY_QOS, 1};
    static constexpr auto slot = &engine::Qos::history;
    static engine::HistoryPolicy value(const DDS_HistoryQosPolicy& policy) {
        return {static_cast<engine::HistoryKind>(number_of(policy.kind)), policy.depth};
    }
    static DDS_HistoryQosPolicy policy(const engine::HistoryPolicy& value) {
        return {static_cast<DDS_HistoryQosPolicyKind>(value.kind), value.depth};
    }
    static const char* fault(const DDS_HistoryQosPolicy& policy) {
        if (number_of(policy.kind) == DDS_KEEP_LAST_HISTORY_QOS && policy.depth < 1) {
            return "depth below 1";
        }
        return fault_of_kind(policy.kind, DDS_KEEP_ALL_HISTORY_QOS);
    }
};

template <>
struct PlainPolicy<DDS_ResourceLimitsQosPolicy> {
    static constexpr DDS_ResourceLimitsQosPolicy initial{DDS_LENGTH_UNLIMITED, DDS_LENGTH_UNLIMITED,
                                                         DDS_LENGTH_UNLIMITED};
    static constexpr auto slot = &engine::Qos::resource_limits;
    static engine::ResourceLimitsPolicy value(const DDS_ResourceLimitsQosPolicy& policy) {
        return {policy.max_samples, policy.max_instances, policy.max_samples_per_instance};
    }
    static DDS_ResourceLimitsQosPolicy policy(const engine::ResourceLimitsPolicy& value) {
        return {value.max_samples, value.max_instances, value.max_samples_per_instance};
    }
    static const char* fault(const DDS_ResourceLimitsQosPolicy& policy) {
        for (const DDS_Long limit :
             {policy.max_samples, policy.max_instances, policy.max_samples_per_instance}) {
            if (limit < 1 && limit != DDS_LENGTH_UNLIMITED) {
                return "a limit neither positive nor unlimited";
            }
        }
        if (policy.max_samples != DDS_LENGTH_UNLIMITED &&
            policy.max_samples < policy.max_samples_per_instance) {
            return "max_samples below max_samples_per_instance";
        }
        return nullptr;
    }
};

/// @return whether a KEEP_LAST history fits into the limits.
[[nodiscard]] inline bool fits(const DDS_HistoryQosPolicy& history,
                               const DDS_ResourceLimitsQosPolicy& limits) {
    return number_of(history.kind) != DDS_KEEP_LAST_HISTORY_QOS ||
           limits.max_samples_per_instance == DDS_LENGTH_UNLIMITED ||
           history.depth <= limits.max_samples_per_instance;
}

template <>
struct PlainPolicy<DDS_DurabilityServiceQosPolicy> {
    using History = PlainPolicy<DDS_HistoryQosPolicy>;
    using Limits = PlainPolicy<DDS_ResourceLimitsQosPolicy>;

    static constexpr DDS_DurabilityServiceQosPolicy initial{
        zero_duration,        DDS_KEEP_LAST_HISTORY_QOS, 1,
        DDS_LENGTH_UNLIMITED, DDS_LENGTH_UNLIMITED,      DDS_LENGTH_UNLIMITED};
    static constexpr auto slot = &engine::Qos::durability_service;
    static DDS_HistoryQosPolicy history(const DDS_DurabilityServiceQosPolicy& policy) {
        return {policy.history_kind, policy.history_depth};
    }
    static DDS_ResourceLimitsQosPolicy limits(const DDS_DurabilityServiceQosPolicy& policy) {
        return {policy.max_samples, policy.max_instances, policy.max_samples_per_instance};
    }
    static engine::DurabilityServicePolicy value(const DDS_DurabilityServiceQosPolicy& policy) {
        return {to_nanoseconds(policy.service_cleanup_delay), History::value(history(policy)),
                Limits::value(limits(policy))};
    }
    static DDS_DurabilityServiceQosPolicy policy(const engine::DurabilityServicePolicy& value) {
        const DDS_HistoryQosPolicy history = History::policy(value.history);
        const DDS_ResourceLimitsQosPolicy limits = Limits::policy(value.limits);
        return {to_duration(value.cleanup_delay),
                history.kind,
                history.depth,
                limits.max_samples,
                limits.max_instances,
                limits.max_samples_per_instance};
    }
    static const char* fault(const DDS_DurabilityServiceQosPolicy& policy) {
        if (const char* fault = fault_of_duration(policy.service_cleanup_delay)) {
            return fault;
        }
        if (const char* fault = fault_of_kind(policy.history_kind, DDS_KEEP_ALL_HISTORY_QOS)) {
            return fault;
        }
        if (const char* fault = History::fault(history(policy))) {
            return fault;
        }
        if (const char* fault = Limits::fault(limits(policy))) {
            return fault;
        }
        return fits(history(policy), limits(policy))
                   ? nullptr
                   : "history_depth above max_samples_per_instance";
    }
};

template <>
struct PlainPolicy<DDS_PresentationQosPolicy> {
    static constexpr DDS_PresentationQosPolicy initial{DDS_INSTANCE_PRESENTATION_QOS,
                                                       DDS_BOOLEAN_FALSE, DDS_BOOLEAN_FALSE};
    static constexpr auto slot = &engine::Qos::presentation;
    static engine::PresentationPolicy value(const DDS_PresentationQosPolicy& policy) {
        return {static_cast<engine::AccessScope>(number_of(policy.access_scope)),
                policy.coherent_access != 0, policy.ordered_access != 0};
    }
    static DDS_PresentationQosPolicy policy(const engine::PresentationPolicy& value) {
        return {static_cast<DDS_PresentationQosPolicyAccessScopeKind>(value.access_scope),
                value.coherent_access, value.ordered_access};
    }
    static const char* fault(const DDS_PresentationQosPolicy& policy) {
        return fault_of_kind(policy.access_scope, DDS_GROUP_PRESENTATION_QOS);
    }
};

template <>
struct PlainPolicy<DDS_LivelinessQosPolicy> {
    static constexpr DDS_LivelinessQosPolicy initial{DDS_AUTOMATIC_LIVELINESS_QOS,
                                                     infinite_duration};
    static constexpr auto slot = &engine::Qos::liveliness;
    static engine::LivelinessPolicy value(const DDS_LivelinessQosPolicy& policy) {
        return {static_cast<engine::LivelinessKind>(number_of(policy.kind)),
                to_nanoseconds(policy.lease_duration)};
    }
    static DDS_LivelinessQosPolicy policy(const engine::LivelinessPolicy& value) {
        return {static_cast<DDS_LivelinessQosPolicyKind>(value.kind),
                to_duration(value.lease_duration)};
    }
    static const char* fault(const DDS_LivelinessQosPolicy& policy) {
        const char* fault = fault_of_kind(policy.kind, DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS);
        return fault != nullptr ? fault : fault_of_duration(policy.lease_duration);
    }
};

template <>
struct PlainPolicy<DDS_ReliabilityQosPolicy> {
    static constexpr DDS_ReliabilityQosPolicy initial{DDS_BEST_EFFORT_RELIABILITY_QOS,
                                                      hundred_milliseconds};
    static constexpr auto slot = &engine::Qos::reliability;
    static engine::ReliabilityPolicy value(const DDS_ReliabilityQosPolicy& policy) {
        return {static_cast<engine::ReliabilityKind>(number_of(policy.kind)),
                to_nanoseconds(policy.max_blocking_time)};
    }
    static DDS_ReliabilityQosPolicy policy(const engine::ReliabilityPolicy& value) {
        return {static_cast<DDS_ReliabilityQosPolicyKind>(value.kind),
                to_duration(value.max_blocking_time)};
    }
    static const char* fault(const DDS_ReliabilityQosPolicy& policy) {
        const char* fault = fault_of_kind(policy.kind, DDS_RELIABLE_RELIABILITY_QOS);
        return fault != nullptr ? fault : fault_of_duration(policy.max_blocking_time);
    }
};

template <>
struct PlainPolicy<DDS_WriterDataLifecycleQosPolicy>
    : TruthPolicy<
          DDS_WriterDataLifecycleQosPolicy, &engine::Qos::autodispose_unregistered_instances,
          &DDS_WriterDataLifecycleQosPolicy::autodispose_unregistered_instances, DDS_BOOLEAN_TRUE> {
};
template <>
struct PlainPolicy<DDS_BatchQosPolicy>
    : TruthPolicy<DDS_BatchQosPolicy, &engine::Qos::batching, &DDS_BatchQosPolicy::enable,
                  DDS_BOOLEAN_FALSE> {};

template <>
struct PlainPolicy<DDS_ReaderDataLifecycleQosPolicy> {
    static constexpr DDS_ReaderDataLifecycleQosPolicy initial{infinite_duration, infinite_duration};
    static constexpr auto slot = &engine::Qos::reader_data_lifecycle;
    static engine::ReaderDataLifecyclePolicy value(const DDS_ReaderDataLifecycleQosPolicy& policy) {
        return {to_nanoseconds(policy.autopurge_nowriter_samples_delay),
                to_nanoseconds(policy.autopurge_disposed_samples_delay)};
    }
    static DDS_ReaderDataLifecycleQosPolicy policy(const engine::ReaderDataLifecyclePolicy& value) {
        return {to_duration(value.autopurge_nowriter_samples_delay),
                to_duration(value.autopurge_disposed_samples_delay)};
    }
    static const char* fault(const DDS_ReaderDataLifecycleQosPolicy& policy) {
        const char* fault = fault_of_duration(policy.autopurge_nowriter_samples_delay);
        return fault != nullptr ? fault
                                : fault_of_duration(policy.autopurge_disposed_samples_delay);
    }
};

/// The operations of a plain policy.
template <typename Policy>
struct PlainPolicyOperations {
    using Traits = PlainPolicy<Policy>;

    static const Policy& of(const void* policy) { return *static_cast<const Policy*>(policy); }
    static void initialize(void* policy) { *static_cast<Policy*>(policy) = Traits::initial; }
    static bool copy(void* policy, const void* from) {
        *static_cast<Policy*>(policy) = of(from);
        return true;
    }
    static void finalize(void*) {}
    static bool equal(const void* left, const void* right) {
        return Traits::value(of(left)) == Traits::value(of(right));
    }
    static const char* fault(const void* policy) { return Traits::fault(of(policy)); }
    static void to_engine(const void* policy, engine::Qos& qos) {
        qos.*Traits::slot = Traits::value(of(policy));
    }
    static bool from_engine(const engine::Qos& qos, void* policy) {
        if (const auto& value = qos.*Traits::slot) {
            *static_cast<Policy*>(policy) = Traits::policy(*value);
        }
        return true;
    }
};

}  // namespace pexa::dds
