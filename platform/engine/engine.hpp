/// @file engine.hpp
/// @brief The seam to a DDS implementation: what a port of a DDS interface needs of it, in payload
/// bytes, key hashes, GUIDs, QoS values and callbacks.
///
/// All operations may be called from any thread unless they say otherwise. An id of a deleted or
/// never created entity gives bad_parameter or already_deleted; one of the wrong kind
/// illegal_operation or bad_parameter. A failing operation changes nothing. No operation throws;
/// the engine ends the process when memory is short inside it, and where an operation can do better
/// it returns out_of_resources.
///
/// Deleting an entity waits for the callbacks of its listener.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/engine/listener.hpp"
#include "platform/engine/log.hpp"
#include "platform/engine/qos.hpp"
#include "platform/engine/type.hpp"
#include "platform/engine/values.hpp"

namespace pexa::engine {

/// A listener installed with the creation of an entity, so that no status is missed.
struct ListenerSetting {
    Listener* listener = nullptr;  ///< see set_listener()
    StatusMask mask = 0;
};

/// @name Participants
/// @{

/// Joins a domain; its threads start with its first participant in the process.
[[nodiscard]] Created create_participant(std::uint32_t domain_id, const Qos& qos,
                                         ListenerSetting listener = {}) noexcept;

/// @return whether @p entity is a participant of the engine, made here or by the application.
[[nodiscard]] bool is_participant(EntityId entity) noexcept;

[[nodiscard]] Status get_domain_id(EntityId entity, std::uint32_t& domain_id) noexcept;

/// The identity of a participant, reader or writer on the wire.
[[nodiscard]] Status get_guid(EntityId entity, Guid& guid) noexcept;
/// @}

/// @name Any entity
/// @{

/// Deletes an entity with everything in it. A topic that endpoints use fails with
/// precondition_not_met; what a listener's callback may not delete, with illegal_operation.
[[nodiscard]] Status delete_entity(EntityId entity) noexcept;

/// Reads all policies of the entity that the engine knows, defaults included.
[[nodiscard]] Status get_qos(EntityId entity, Qos& qos) noexcept;

/// Changes policies of an existing entity. The engine allows user, topic and group data, deadline,
/// latency budget, ownership strength, time based filter, transport priority, lifespan, writer and
/// reader data lifecycle, as far as they do not affect matching; other changes fail with
/// immutable_policy or unsupported, and nothing is changed.
[[nodiscard]] Status set_qos(EntityId entity, const Qos& qos) noexcept;

/// Identity of the entity as it appears in SampleInfo::publication and in matched statuses.
[[nodiscard]] Status get_local_handle(EntityId entity, LocalHandle& handle) noexcept;
/// @}

/// @name Topics
/// @{

/// Decides whether a reader keeps a data payload (dispose and unregister always pass). Runs on
/// engine threads, several at a time, and must not call the engine.
using ContentFilter = std::function<bool(std::span<const std::byte> payload)>;

/// Creates a topic, or another entity of one that exists in the participant (same type name, same
/// policies). Data is XCDR version 1, plain or parameter list.
///
/// @param name letters, digits, '_' and '/', not starting with a digit or "DCPS"; any other fails
/// with bad_parameter
/// @param filter NULL, or what readers of this topic entity keep. Writers cannot use a topic with
/// filter.
[[nodiscard]] Created create_topic(EntityId participant, const char* name,
                                   std::shared_ptr<const Type> type, const Qos& qos,
                                   ContentFilter filter = nullptr,
                                   ListenerSetting listener = {}) noexcept;

/// Replaces the filter of a topic that was created with one; applies to samples that arrive later.
[[nodiscard]] Status set_content_filter(EntityId topic, ContentFilter filter) noexcept;
/// @}

/// @name Publishers and writers
/// @{
[[nodiscard]] Created create_publisher(EntityId participant, const Qos& qos,
                                       ListenerSetting listener = {}) noexcept;
[[nodiscard]] Created create_writer(EntityId publisher, EntityId topic, const Qos& qos,
                                    ListenerSetting listener = {}) noexcept;

enum class WriteKind {
    data,
    dispose,     ///< key payload
    unregister,  ///< key payload; also disposes when the writer's QoS says so
};

/// Encodes a payload into the buffer of exactly the requested size; false gives the write up.
using Fill = FunctionRef<bool(std::span<std::byte> buffer)>;

/// Writes a payload that @p fill encodes straight into the engine's memory.
///
/// @param size bytes of the payload, its encapsulation header included, at least 4
/// @param source_timestamp nanoseconds since the epoch, not negative
/// @return timeout when a reliable writer found no room within its max_blocking_time;
/// bad_parameter when @p fill failed; out_of_resources without memory
[[nodiscard]] Status write(EntityId writer, WriteKind kind, const KeyHash& instance,
                           std::size_t size, Fill fill, Nanoseconds source_timestamp) noexcept;

/// Makes an instance known to the writer without writing; @p fill encodes its key payload.
[[nodiscard]] Status register_instance(EntityId writer, const KeyHash& instance, std::size_t size,
                                       Fill fill) noexcept;

/// Sends what a batching writer has collected.
void flush(EntityId writer) noexcept;

/// Waits until all matched reliable readers have acknowledged everything that was written.
/// @return timeout otherwise
[[nodiscard]] Status wait_for_acknowledgments(EntityId writer, Nanoseconds max_wait) noexcept;

/// For writers with manual liveliness, or participants.
[[nodiscard]] Status assert_liveliness(EntityId entity) noexcept;
/// @}

/// @name Subscribers and readers
/// @{
[[nodiscard]] Created create_subscriber(EntityId participant, const Qos& qos,
                                        ListenerSetting listener = {}) noexcept;
[[nodiscard]] Created create_reader(EntityId subscriber, EntityId topic, const Qos& qos,
                                    ListenerSetting listener = {}) noexcept;

enum class Access {
    read,  ///< samples stay in the reader, marked as read
    take,  ///< samples leave the reader
};

/// Most samples that one call returns when it is asked for unlimited ones.
inline constexpr std::int32_t max_samples_per_call = 65536;

/// Appends samples to @p samples, those of an instance together and in order.
///
/// @param max_samples at least 1, or `unlimited`
/// @return no_data when nothing matches; out_of_resources without memory, and what was taken is
/// lost
[[nodiscard]] Status read_or_take(EntityId reader, Access access, const StateMask& states,
                                  std::int32_t max_samples, std::vector<Sample>& samples) noexcept;

/// As read_or_take(), of one instance.
/// @return bad_parameter for an instance that the reader does not know
[[nodiscard]] Status read_or_take_instance(EntityId reader, Access access, const StateMask& states,
                                           std::int32_t max_samples, const KeyHash& instance,
                                           std::vector<Sample>& samples) noexcept;

/// As read_or_take(), of the first instance after @p previous that has matching samples, in the
/// order of the key hashes; @p previous need not be known. Costs a look-up for each instance of the
/// type in the process that is passed over.
///
/// @param previous NULL for the very first instance
[[nodiscard]] Status read_or_take_next_instance(EntityId reader, Access access,
                                                const StateMask& states, std::int32_t max_samples,
                                                const KeyHash* previous,
                                                std::vector<Sample>& samples) noexcept;

/// Meant to wait until a reader that is not volatile has received what existing writers kept. This
/// engine returns at once: what writers of this process kept is there when create_reader() returns,
/// what others kept arrives after they have matched.
[[nodiscard]] Status wait_for_historical_data(EntityId reader, Nanoseconds max_wait) noexcept;
/// @}

/// @name Instances of a reader or writer
/// A writer knows the instances that it has written or registered and not unregistered; a reader
/// those that any endpoint of its type in this process has received and not purged.
/// @{
[[nodiscard]] bool knows_instance(EntityId endpoint, const KeyHash& instance) noexcept;

/// The key payload of a known instance. Of a reader, costs a look at every instance in the domain.
/// @return bad_parameter for an unknown one
[[nodiscard]] Status get_key(EntityId endpoint, const KeyHash& instance, Payload& key) noexcept;
/// @}

/// @name Matched endpoints
/// @{

/// What discovery knows of a matched endpoint.
struct EndpointData {
    Guid guid{};
    Guid participant_guid{};
    std::string topic_name;
    std::string type_name;
    Qos qos;
};

[[nodiscard]] Status get_matched_subscriptions(EntityId writer,
                                               std::vector<LocalHandle>& handles) noexcept;
[[nodiscard]] Status get_matched_publications(EntityId reader,
                                              std::vector<LocalHandle>& handles) noexcept;
/// @return bad_parameter when no such endpoint is matched
[[nodiscard]] Status get_matched_subscription(EntityId writer, LocalHandle handle,
                                              EndpointData& data) noexcept;
[[nodiscard]] Status get_matched_publication(EntityId reader, LocalHandle handle,
                                             EndpointData& data) noexcept;
/// @}

/// @name Conditions and wait sets
/// Conditions are entities: a read condition belongs to its reader and is deleted with it; an
/// entity with statuses is its own status condition.
/// @{

/// True while the reader has samples of these states.
[[nodiscard]] Created create_read_condition(EntityId reader, const StateMask& states) noexcept;

/// Belongs to no participant; delete_entity() ends it.
[[nodiscard]] Created create_guard_condition() noexcept;
[[nodiscard]] Status set_guard_condition(EntityId condition, bool triggered) noexcept;

/// Chooses the statuses of which a change triggers the entity as a condition; at first all.
/// Listeners are not affected.
[[nodiscard]] Status set_status_condition(EntityId entity, StatusMask mask) noexcept;

/// @return the trigger value of a condition, or of an entity as status condition.
[[nodiscard]] bool is_triggered(EntityId condition) noexcept;

[[nodiscard]] Created create_wait_set() noexcept;
/// @return precondition_not_met when the condition is attached already
[[nodiscard]] Status attach(EntityId wait_set, EntityId condition) noexcept;
/// @return precondition_not_met when the condition is not attached
[[nodiscard]] Status detach(EntityId wait_set, EntityId condition) noexcept;

/// Waits until a condition is true. A wait set without conditions does not wait at all.
///
/// @param timeout 0 only looks; `infinite` waits forever
/// @param triggered is replaced by the conditions that are true
/// @return timeout when none became true
[[nodiscard]] Status wait(EntityId wait_set, Nanoseconds timeout,
                          std::vector<EntityId>& triggered) noexcept;
/// @}

}  // namespace pexa::engine
