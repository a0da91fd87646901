/// @file listener.hpp
/// @brief Communication statuses and the callbacks that announce them.
#pragma once

#include <mutex>

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

/// A count that only grows, and its growth since the status was last read or announced.
struct CountStatus {
    std::int32_t total_count = 0;
    std::int32_t total_count_change = 0;
};

struct InconsistentTopic : CountStatus {};
struct SampleLost : CountStatus {};
struct LivelinessLost : CountStatus {};

struct OfferedDeadlineMissed : CountStatus {};
struct RequestedDeadlineMissed : CountStatus {};

struct OfferedIncompatibleQos : CountStatus {
    std::int32_t last_policy_id = 0;  ///< the DDS number of the policy
};
struct RequestedIncompatibleQos : CountStatus {
    std::int32_t last_policy_id = 0;
};

enum class RejectedReason : int {
    not_rejected,
    instances_limit,
    samples_limit,
    samples_per_instance_limit,
};

struct SampleRejected : CountStatus {
    RejectedReason last_reason = RejectedReason::not_rejected;
};

struct LivelinessChanged {
    std::int32_t alive_count = 0;
    std::int32_t not_alive_count = 0;
    std::int32_t alive_count_change = 0;
    std::int32_t not_alive_count_change = 0;
    LocalHandle last_publication = 0;
};

struct PublicationMatched : CountStatus {
    std::int32_t current_count = 0;
    std::int32_t current_count_change = 0;
    LocalHandle last_subscription = 0;
};
struct SubscriptionMatched : CountStatus {
    std::int32_t current_count = 0;
    std::int32_t current_count_change = 0;
    LocalHandle last_publication = 0;
};

/// Receiver of status changes. Callbacks run on the engine's threads, on a thread that writes to a
/// reader of its own process, and on the thread that installs the listener; never two at a time for
/// one listener. They hold up the delivery of data, so they must be short. They must not throw.
///
/// A callback may call the engine, except that
/// - it may not change the listener of the entity that it is about, or of an ancestor: this fails
///   with illegal_operation;
/// - it may not delete any reader, writer or participant, or what contains one: a deletion waits
///   until all threads have left the engine, callbacks included. This fails with
///   illegal_operation, too. For the same reason no callback may wait for a thread that deletes;
/// - when it is about data of a writer in the same process, it may not use that writer, which is
///   locked while the callback runs.
///
/// The counts handed over are those since the last callback, which resets them.
class Listener {
public:
    Listener() = default;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    virtual ~Listener() = default;

    virtual void on_inconsistent_topic(EntityId, const InconsistentTopic&) {}
    virtual void on_offered_deadline_missed(EntityId, const OfferedDeadlineMissed&) {}
    virtual void on_offered_incompatible_qos(EntityId, const OfferedIncompatibleQos&) {}
    virtual void on_liveliness_lost(EntityId, const LivelinessLost&) {}
    virtual void on_publication_matched(EntityId, const PublicationMatched&) {}
    virtual void on_requested_deadline_missed(EntityId, const RequestedDeadlineMissed&) {}
    virtual void on_requested_incompatible_qos(EntityId, const RequestedIncompatibleQos&) {}
    virtual void on_sample_lost(EntityId, const SampleLost&) {}
    virtual void on_sample_rejected(EntityId, const SampleRejected&) {}
    virtual void on_liveliness_changed(EntityId, const LivelinessChanged&) {}
    virtual void on_subscription_matched(EntityId, const SubscriptionMatched&) {}
    virtual void on_data_available(EntityId) {}
    virtual void on_data_on_readers(EntityId) {}

private:
    friend class ListenerCall;
    std::recursive_mutex serial_;
};

/// Replaces the listener of any entity. Waits until running callbacks of the old one have ended;
/// after the return it is called no more. Callbacks of the new one run before the return, on this
/// thread, for statuses of the entity in @p mask that changed before (data that arrived earlier
/// among them).
///
/// What an entity's listener does not take goes to the listener of its parent, up to the
/// participant.
///
/// @param listener NULL for none; must stay valid until it is replaced or the entity is deleted
/// @param mask the statuses that it takes
[[nodiscard]] Status set_listener(EntityId entity, Listener* listener, StatusMask mask) noexcept;

/// @return the statuses of @p mask that changed since they were last read or announced; 0 also for
/// an unknown entity.
[[nodiscard]] StatusMask status_changes(EntityId entity) noexcept;

/// @name Reading a status
/// Gives the status and resets its change counts.
/// @{
[[nodiscard]] Status get_status(EntityId topic, InconsistentTopic& status) noexcept;
[[nodiscard]] Status get_status(EntityId writer, OfferedDeadlineMissed& status) noexcept;
[[nodiscard]] Status get_status(EntityId writer, OfferedIncompatibleQos& status) noexcept;
[[nodiscard]] Status get_status(EntityId writer, LivelinessLost& status) noexcept;
[[nodiscard]] Status get_status(EntityId writer, PublicationMatched& status) noexcept;
[[nodiscard]] Status get_status(EntityId reader, RequestedDeadlineMissed& status) noexcept;
[[nodiscard]] Status get_status(EntityId reader, RequestedIncompatibleQos& status) noexcept;
[[nodiscard]] Status get_status(EntityId reader, SampleLost& status) noexcept;
[[nodiscard]] Status get_status(EntityId reader, SampleRejected& status) noexcept;
[[nodiscard]] Status get_status(EntityId reader, LivelinessChanged& status) noexcept;
[[nodiscard]] Status get_status(EntityId reader, SubscriptionMatched& status) noexcept;
/// @}

}  // namespace pexa::engine
