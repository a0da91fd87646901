/// @file statuses.hpp
/// @brief Communication statuses in Cyclone's form and in the seam's.
#pragma once

#include <dds/dds.h>

#include <span>

#include "platform/engine/listener.hpp"

namespace pexa::engine::cyclone {

/// Cyclone numbers the statuses without the gap that the DDS standard leaves after the third.
constexpr StatusMask before_gap = 0x7;
constexpr unsigned gap = 2;

constexpr std::uint32_t to_cyclone_status_mask(StatusMask mask) {
    mask &= any_status;
    return (mask & before_gap) | ((mask & ~before_gap) >> gap);
}
constexpr StatusMask from_cyclone_status_mask(std::uint32_t mask) {
    return (mask & before_gap) | ((mask & ~before_gap) << gap);
}
static_assert(to_cyclone_status_mask(requested_deadline_missed_status) ==
              DDS_REQUESTED_DEADLINE_MISSED_STATUS);
static_assert(to_cyclone_status_mask(offered_incompatible_qos_status) ==
              DDS_OFFERED_INCOMPATIBLE_QOS_STATUS);
static_assert(to_cyclone_status_mask(subscription_matched_status) ==
              DDS_SUBSCRIPTION_MATCHED_STATUS);
static_assert(from_cyclone_status_mask(DDS_DATA_AVAILABLE_STATUS) == data_available_status);

/// @name The statuses that each kind of entity has
/// @{
constexpr StatusMask topic_statuses = inconsistent_topic_status;
constexpr StatusMask writer_statuses = offered_deadline_missed_status |
                                       offered_incompatible_qos_status | liveliness_lost_status |
                                       publication_matched_status;
constexpr StatusMask reader_statuses = requested_deadline_missed_status |
                                       requested_incompatible_qos_status | sample_lost_status |
                                       sample_rejected_status | data_available_status |
                                       liveliness_changed_status | subscription_matched_status;
constexpr StatusMask subscriber_statuses = data_on_readers_status;
/// @}

/// A status that has values.
struct StatusRow {
    StatusMask kind;
    Status (*read)(EntityId entity, CommunicationStatus& status);
    /// Lets Cyclone call @p listener when the status changes.
    void (*install)(dds_listener_t* cyclone_listener, Listener* listener);
};

/// @return a row for each status that has values.
std::span<const StatusRow> statuses_with_values();

/// @return whether anything happened since the status was last read or announced
bool has_changed(const CommunicationStatus& status);

}  // namespace pexa::engine::cyclone
