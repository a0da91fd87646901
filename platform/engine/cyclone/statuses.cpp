#include "platform/engine/cyclone/statuses.hpp"

#include "platform/engine/cyclone/listener_call.hpp"
#include "platform/engine/cyclone/results.hpp"

namespace pexa::engine {

namespace cyclone {

namespace {

// Copies the members that Cyclone's record of the status has.
template <typename Record>
CommunicationStatus from_cyclone(const Record& record) {
    CommunicationStatus status;
    if constexpr (requires { record.total_count; }) {
        status.total_count = static_cast<std::int32_t>(record.total_count);
        status.total_count_change = record.total_count_change;
    }
    if constexpr (requires { record.current_count; }) {
        status.current_count = static_cast<std::int32_t>(record.current_count);
        status.current_count_change = record.current_count_change;
    }
    if constexpr (requires { record.alive_count; }) {
        status.alive_count = static_cast<std::int32_t>(record.alive_count);
        status.alive_count_change = record.alive_count_change;
        status.not_alive_count = static_cast<std::int32_t>(record.not_alive_count);
        status.not_alive_count_change = record.not_alive_count_change;
    }
    if constexpr (requires { record.last_policy_id; }) {
        status.last_policy_id = static_cast<std::int32_t>(record.last_policy_id);
    }
    if constexpr (requires { record.last_reason; }) {
        status.last_reason = static_cast<RejectedReason>(record.last_reason);
    }
    if constexpr (requires { record.last_subscription_handle; }) {
        status.last_peer = record.last_subscription_handle;
    }
    if constexpr (requires { record.last_publication_handle; }) {
        status.last_peer = record.last_publication_handle;
    }
    return status;
}

template <StatusMask kind, auto read_record, auto set_callback>
constexpr StatusRow status_row = []<typename Record>(dds_return_t (*)(dds_entity_t, Record*)) {
    return StatusRow{kind,
                     [](EntityId entity, CommunicationStatus& status) {
                         Record found{};
                         const Status result = status_of(read_record(entity, &found));
                         if (result == Status::ok) {
                             status = from_cyclone(found);
                         }
                         return result;
                     },
                     [](dds_listener_t* cyclone_listener, Listener* listener) {
                         constexpr bool resets_changes = true;
                         const auto announce = [](dds_entity_t entity, const Record record,
                                                  void* argument) {
                             Listener& receiver = *static_cast<Listener*>(argument);
                             const ListenerCall call(receiver, entity);
                             receiver.on_status(entity, kind, from_cyclone(record));
                         };
                         set_callback(cyclone_listener, announce, listener, resets_changes);
                     }};
}(read_record);

constexpr StatusRow rows[] = {
    status_row<inconsistent_topic_status, dds_get_inconsistent_topic_status,
               dds_lset_inconsistent_topic_arg>,
    status_row<offered_deadline_missed_status, dds_get_offered_deadline_missed_status,
               dds_lset_offered_deadline_missed_arg>,
    status_row<offered_incompatible_qos_status, dds_get_offered_incompatible_qos_status,
               dds_lset_offered_incompatible_qos_arg>,
    status_row<liveliness_lost_status, dds_get_liveliness_lost_status,
               dds_lset_liveliness_lost_arg>,
    status_row<publication_matched_status, dds_get_publication_matched_status,
               dds_lset_publication_matched_arg>,
    status_row<requested_deadline_missed_status, dds_get_requested_deadline_missed_status,
               dds_lset_requested_deadline_missed_arg>,
    status_row<requested_incompatible_qos_status, dds_get_requested_incompatible_qos_status,
               dds_lset_requested_incompatible_qos_arg>,
    status_row<sample_lost_status, dds_get_sample_lost_status, dds_lset_sample_lost_arg>,
    status_row<sample_rejected_status, dds_get_sample_rejected_status,
               dds_lset_sample_rejected_arg>,
    status_row<liveliness_changed_status, dds_get_liveliness_changed_status,
               dds_lset_liveliness_changed_arg>,
    status_row<subscription_matched_status, dds_get_subscription_matched_status,
               dds_lset_subscription_matched_arg>,
};

}  // namespace

std::span<const StatusRow> statuses_with_values() {
    return rows;
}

bool has_changed(const CommunicationStatus& status) {
    return status.total_count_change != 0 || status.current_count_change != 0 ||
           status.alive_count_change != 0 || status.not_alive_count_change != 0;
}

}  // namespace cyclone

StatusMask status_changes(EntityId entity) noexcept {
    std::uint32_t changed = 0;
    if (dds_get_status_changes(entity, &changed) != DDS_RETCODE_OK) {
        return 0;
    }
    return cyclone::from_cyclone_status_mask(changed);
}

Status get_status(EntityId entity, StatusMask kind, CommunicationStatus& status) noexcept {
    for (const cyclone::StatusRow& row : cyclone::statuses_with_values()) {
        if (row.kind == kind) {
            return row.read(entity, status);
        }
    }
    return Status::bad_parameter;
}

}  // namespace pexa::engine
