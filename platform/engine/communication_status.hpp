/// @file communication_status.hpp
/// @brief The communication statuses of entities.
#pragma once

#include "platform/engine/values.hpp"

namespace pexa::engine {

/// @name Status bits, as the DDS standard numbers them
/// @{
using StatusMask = std::uint32_t;
inline constexpr StatusMask inconsistent_topic_status = 0x1;
inline constexpr StatusMask offered_deadline_missed_status = 0x2;
inline constexpr StatusMask requested_deadline_missed_status = 0x4;
inline constexpr StatusMask offered_incompatible_qos_status = 0x20;
inline constexpr StatusMask requested_incompatible_qos_status = 0x40;
inline constexpr StatusMask sample_lost_status = 0x80;
inline constexpr StatusMask sample_rejected_status = 0x100;
inline constexpr StatusMask data_on_readers_status = 0x200;
inline constexpr StatusMask data_available_status = 0x400;
inline constexpr StatusMask liveliness_lost_status = 0x800;
inline constexpr StatusMask liveliness_changed_status = 0x1000;
inline constexpr StatusMask publication_matched_status = 0x2000;
inline constexpr StatusMask subscription_matched_status = 0x4000;
inline constexpr StatusMask any_status = 0x7fe7;
/// @}

enum class RejectedReason : int {
    not_rejected,
    instances_limit,
    samples_limit,
    samples_per_instance_limit,
};

/// The values of any status but data_available and data_on_readers. Members that the status does
/// not have are zero. A change counts from the last time that the status was read or announced.
struct CommunicationStatus {
    std::int32_t total_count = 0;
    std::int32_t total_count_change = 0;
    /// @name Matched endpoints
    /// @{
    std::int32_t current_count = 0;
    std::int32_t current_count_change = 0;
    /// @}
    /// @name Matched writers by their liveliness
    /// @{
    std::int32_t alive_count = 0;
    std::int32_t alive_count_change = 0;
    std::int32_t not_alive_count = 0;
    std::int32_t not_alive_count_change = 0;
    /// @}
    /// The endpoint that was the last to match or to change its liveliness.
    LocalHandle last_peer = 0;
    /// The DDS number of the policy that was the last to be incompatible.
    std::int32_t last_policy_id = 0;
    RejectedReason last_reason = RejectedReason::not_rejected;
};

/// @return the statuses of the entity that changed since they were last read or announced; 0 also
/// for an unknown entity.
StatusMask status_changes(EntityId entity) noexcept;

/// Reads a status of an entity and resets its changes.
///
/// @param kind the bit of a status that the entity has, other than data_available and
/// data_on_readers
Status get_status(EntityId entity, StatusMask kind, CommunicationStatus& status) noexcept;

}  // namespace pexa::engine
