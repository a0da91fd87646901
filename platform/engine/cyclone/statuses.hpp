/// @file statuses.hpp
/// @brief Communication statuses in the engine's form and in ours.
#pragma once

#include <dds/dds.h>

#include "platform/engine/listener.hpp"

namespace pexa::engine::cyclone {

/// The engine numbers the statuses without the gap that the DDS standard leaves after the third.
constexpr StatusMask before_gap = 0x7;
constexpr unsigned gap = 2;

[[nodiscard]] constexpr std::uint32_t engine_status_mask(StatusMask mask) {
    mask &= any_status;
    return (mask & before_gap) | ((mask & ~before_gap) >> gap);
}
[[nodiscard]] constexpr StatusMask status_mask_of(std::uint32_t engine_mask) {
    return (engine_mask & before_gap) | ((engine_mask & ~before_gap) << gap);
}
static_assert(engine_status_mask(requested_deadline_missed_status) ==
              DDS_REQUESTED_DEADLINE_MISSED_STATUS);
static_assert(engine_status_mask(offered_incompatible_qos_status) ==
              DDS_OFFERED_INCOMPATIBLE_QOS_STATUS);
static_assert(engine_status_mask(subscription_matched_status) == DDS_SUBSCRIPTION_MATCHED_STATUS);
static_assert(status_mask_of(DDS_DATA_AVAILABLE_STATUS) == data_available_status);

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

/// How the engine and a listener name a status that comes with counts.
template <typename Engine_, StatusMask bit_, auto get_, auto install_, auto callback_>
struct StatusRow {
    using Engine = Engine_;
    static constexpr StatusMask bit = bit_;
    static constexpr auto get = get_;
    static constexpr auto install = install_;
    static constexpr auto callback = callback_;
};

template <typename Ours>
struct StatusTraits;

template <>
struct StatusTraits<InconsistentTopic>
    : StatusRow<dds_inconsistent_topic_status_t, inconsistent_topic_status,
                dds_get_inconsistent_topic_status, dds_lset_inconsistent_topic_arg,
                &Listener::on_inconsistent_topic> {};
template <>
struct StatusTraits<OfferedDeadlineMissed>
    : StatusRow<dds_offered_deadline_missed_status_t, offered_deadline_missed_status,
                dds_get_offered_deadline_missed_status, dds_lset_offered_deadline_missed_arg,
                &Listener::on_offered_deadline_missed> {};
template <>
struct StatusTraits<OfferedIncompatibleQos>
    : StatusRow<dds_offered_incompatible_qos_status_t, offered_incompatible_qos_status,
                dds_get_offered_incompatible_qos_status, dds_lset_offered_incompatible_qos_arg,
                &Listener::on_offered_incompatible_qos> {};
template <>
struct StatusTraits<LivelinessLost>
    : StatusRow<dds_liveliness_lost_status_t, liveliness_lost_status,
                dds_get_liveliness_lost_status, dds_lset_liveliness_lost_arg,
                &Listener::on_liveliness_lost> {};
template <>
struct StatusTraits<PublicationMatched>
    : StatusRow<dds_publication_matched_status_t, publication_matched_status,
                dds_get_publication_matched_status, dds_lset_publication_matched_arg,
                &Listener::on_publication_matched> {};
template <>
struct StatusTraits<RequestedDeadlineMissed>
    : StatusRow<dds_requested_deadline_missed_status_t, requested_deadline_missed_status,
                dds_get_requested_deadline_missed_status, dds_lset_requested_deadline_missed_arg,
                &Listener::on_requested_deadline_missed> {};
template <>
struct StatusTraits<RequestedIncompatibleQos>
    : StatusRow<dds_requested_incompatible_qos_status_t, requested_incompatible_qos_status,
                dds_get_requested_incompatible_qos_status, dds_lset_requested_incompatible_qos_arg,
                &Listener::on_requested_incompatible_qos> {};
template <>
struct StatusTraits<SampleLost>
    : StatusRow<dds_sample_lost_status_t, sample_lost_status, dds_get_sample_lost_status,
                dds_lset_sample_lost_arg, &Listener::on_sample_lost> {};
template <>
struct StatusTraits<SampleRejected>
    : StatusRow<dds_sample_rejected_status_t, sample_rejected_status,
                dds_get_sample_rejected_status, dds_lset_sample_rejected_arg,
                &Listener::on_sample_rejected> {};
template <>
struct StatusTraits<LivelinessChanged>
    : StatusRow<dds_liveliness_changed_status_t, liveliness_changed_status,
                dds_get_liveliness_changed_status, dds_lset_liveliness_changed_arg,
                &Listener::on_liveliness_changed> {};
template <>
struct StatusTraits<SubscriptionMatched>
    : StatusRow<dds_subscription_matched_status_t, subscription_matched_status,
                dds_get_subscription_matched_status, dds_lset_subscription_matched_arg,
                &Listener::on_subscription_matched> {};

/// Calls @p visit with a null pointer of every status type that has traits.
template <typename Visit>
void for_each_counted_status(const Visit& visit) {
    const auto visit_all = [&]<typename... Ours>(Ours*... types) { (visit(types), ...); };
    visit_all(
        static_cast<InconsistentTopic*>(nullptr), static_cast<OfferedDeadlineMissed*>(nullptr),
        static_cast<OfferedIncompatibleQos*>(nullptr), static_cast<LivelinessLost*>(nullptr),
        static_cast<PublicationMatched*>(nullptr), static_cast<RequestedDeadlineMissed*>(nullptr),
        static_cast<RequestedIncompatibleQos*>(nullptr), static_cast<SampleLost*>(nullptr),
        static_cast<SampleRejected*>(nullptr), static_cast<LivelinessChanged*>(nullptr),
        static_cast<SubscriptionMatched*>(nullptr));
}

/// Copies the members that the two forms of a status share by name.
template <typename Ours>
[[nodiscard]] Ours from_engine(const typename StatusTraits<Ours>::Engine& status) {
    Ours out;
    if constexpr (requires { out.total_count; }) {
        out.total_count = static_cast<std::int32_t>(status.total_count);
        out.total_count_change = status.total_count_change;
    }
    if constexpr (requires { out.current_count; }) {
        out.current_count = static_cast<std::int32_t>(status.current_count);
        out.current_count_change = status.current_count_change;
    }
    if constexpr (requires { out.last_policy_id; }) {
        out.last_policy_id = static_cast<std::int32_t>(status.last_policy_id);
    }
    if constexpr (requires { out.last_reason; }) {
        out.last_reason = static_cast<RejectedReason>(status.last_reason);
    }
    if constexpr (requires { out.alive_count; }) {
        out.alive_count = static_cast<std::int32_t>(status.alive_count);
        out.not_alive_count = static_cast<std::int32_t>(status.not_alive_count);
        out.alive_count_change = status.alive_count_change;
        out.not_alive_count_change = status.not_alive_count_change;
    }
    if constexpr (requires { out.last_subscription; }) {
        out.last_subscription = status.last_subscription_handle;
    }
    if constexpr (requires { out.last_publication; }) {
        out.last_publication = status.last_publication_handle;
    }
    return out;
}

/// @return whether anything happened since the status was last read or announced
template <typename Ours>
[[nodiscard]] bool has_changed(const Ours& status) {
    bool changed = false;
    if constexpr (requires { status.total_count; }) {
        changed = status.total_count_change != 0;
    }
    if constexpr (requires { status.current_count; }) {
        changed = changed || status.current_count_change != 0;
    }
    if constexpr (requires { status.alive_count; }) {
        changed = status.alive_count_change != 0 || status.not_alive_count_change != 0;
    }
    return changed;
}

}  // namespace pexa::engine::cyclone
