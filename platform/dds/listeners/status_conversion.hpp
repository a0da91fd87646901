/// @file status_conversion.hpp
/// @brief Communication statuses of the engine as records of the C interface.
#pragma once

#include "pexa/publication.h"
#include "pexa/subscription.h"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// @name The status of a record
/// @{
inline engine::StatusMask kind_of(const DDS_InconsistentTopicStatus&) {
    return engine::inconsistent_topic_status;
}
inline engine::StatusMask kind_of(const DDS_OfferedDeadlineMissedStatus&) {
    return engine::offered_deadline_missed_status;
}
inline engine::StatusMask kind_of(const DDS_OfferedIncompatibleQosStatus&) {
    return engine::offered_incompatible_qos_status;
}
inline engine::StatusMask kind_of(const DDS_LivelinessLostStatus&) {
    return engine::liveliness_lost_status;
}
inline engine::StatusMask kind_of(const DDS_PublicationMatchedStatus&) {
    return engine::publication_matched_status;
}
inline engine::StatusMask kind_of(const DDS_RequestedDeadlineMissedStatus&) {
    return engine::requested_deadline_missed_status;
}
inline engine::StatusMask kind_of(const DDS_RequestedIncompatibleQosStatus&) {
    return engine::requested_incompatible_qos_status;
}
inline engine::StatusMask kind_of(const DDS_SampleLostStatus&) {
    return engine::sample_lost_status;
}
inline engine::StatusMask kind_of(const DDS_SampleRejectedStatus&) {
    return engine::sample_rejected_status;
}
inline engine::StatusMask kind_of(const DDS_LivelinessChangedStatus&) {
    return engine::liveliness_changed_status;
}
inline engine::StatusMask kind_of(const DDS_SubscriptionMatchedStatus&) {
    return engine::subscription_matched_status;
}
/// @}

/// Finds the handle of a peer by the engine's local handle.
using PeerLookup = engine::FunctionRef<DDS_InstanceHandle_t(engine::LocalHandle)>;

/// Fills the members that the record of the status has.
/// @param peer is used for statuses that name a peer only
template <typename Record>
void convert(const engine::CommunicationStatus& status, Record& record, const PeerLookup& peer) {
    if constexpr (requires { record.total_count; }) {
        record.total_count = status.total_count;
        record.total_count_change = status.total_count_change;
    }
    if constexpr (requires { record.current_count; }) {
        record.current_count = status.current_count;
        record.current_count_change = status.current_count_change;
    }
    if constexpr (requires { record.alive_count; }) {
        record.alive_count = status.alive_count;
        record.alive_count_change = status.alive_count_change;
        record.not_alive_count = status.not_alive_count;
        record.not_alive_count_change = status.not_alive_count_change;
    }
    if constexpr (requires { record.last_policy_id; }) {
        record.last_policy_id = status.last_policy_id;
    }
    if constexpr (requires { record.last_reason; }) {
        // Both have the numbers of the DDS standard.
        static_assert(static_cast<int>(engine::RejectedReason::samples_per_instance_limit) ==
                      DDS_REJECTED_BY_SAMPLES_PER_INSTANCE_LIMIT);
        record.last_reason = static_cast<DDS_SampleRejectedStatusKind>(status.last_reason);
    }
    if constexpr (requires { record.last_publication_handle; }) {
        record.last_publication_handle = peer(status.last_peer);
    }
    if constexpr (requires { record.last_subscription_handle; }) {
        record.last_subscription_handle = peer(status.last_peer);
    }
}

/// Reads a status of an entity, which resets its change counts.
template <typename Record>
Status read_status(engine::EntityId entity, Record& record, const PeerLookup& peer) {
    if (entity == engine::no_entity) {
        return Status::not_enabled;
    }
    engine::CommunicationStatus status;
    const Status result = engine::get_status(entity, kind_of(record), status);
    if (result == Status::ok) {
        convert(status, record, peer);
    }
    return result;
}

}  // namespace pexa::dds
