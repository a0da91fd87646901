/// @file engine.hpp
/// @brief The seam: the operations that the port needs of a DDS implementation, the engine. They
/// deal in payload bytes, key hashes, GUIDs, QoS values and callbacks.
///
/// All operations may be called from any thread unless they say otherwise. The id of an entity that
/// does not exist gives bad_parameter or already_deleted, the id of an entity of the wrong kind
/// illegal_operation or bad_parameter. A failing operation changes nothing. No operation throws.
/// Where an operation finds no memory it returns out_of_resources; where the engine itself finds
/// none, it ends the process.
///
/// Deleting an entity waits for the callbacks of its listener.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/engine/function_ref.hpp"
#include "platform/engine/listener.hpp"
#include "platform/engine/log.hpp"
#include "platform/engine/qos.hpp"
#include "platform/engine/type.hpp"
#include "platform/engine/values.hpp"

namespace pexa::engine {

/// @name Participants
/// A listener that is given to a creating operation misses no status.
/// @{

/// Joins a domain. The first participant of a domain in this process starts the domain's threads.
/// Fails with out_of_resources, and a line on the standard error, when the process has too few
/// descriptors or threads left for that.
Created create_participant(std::uint32_t domain_id, const Qos& qos,
                           ListenerSetting listener = {}) noexcept;

/// @return whether @p entity is a participant of the engine, made here or by the application.
bool is_participant(EntityId entity) noexcept;

Status get_domain_id(EntityId entity, std::uint32_t& domain_id) noexcept;

/// The identity of a participant, reader or writer on the wire.
Status get_guid(EntityId entity, Guid& guid) noexcept;
/// @}

/// @name Any entity
/// @{

/// Deletes an entity, of a reader also its conditions. Other contents must have been deleted
/// before. Fails with precondition_not_met for a topic that endpoints use, and with
/// illegal_operation in a callback that may not delete the entity.
Status delete_entity(EntityId entity) noexcept;

/// Reads all policies of the entity, defaults included.
Status get_qos(EntityId entity, Qos& qos) noexcept;

/// Changes policies of an existing entity. The engine allows user, topic and group data, deadline,
/// latency budget, ownership strength, time based filter, transport priority, lifespan, writer and
/// reader data lifecycle, as far as they do not affect matching; other changes fail with
/// immutable_policy or unsupported, and nothing is changed.
Status set_qos(EntityId entity, const Qos& qos) noexcept;

/// Identity of the entity as it appears in SampleInfo::publication and in matched statuses.
Status get_local_handle(EntityId entity, LocalHandle& handle) noexcept;
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
/// @param filter NULL, or decides which samples the readers of this topic entity keep. A topic with
/// a filter cannot have writers.
Created create_topic(EntityId participant, const char* name, std::shared_ptr<const Type> type,
                     const Qos& qos, ContentFilter filter = nullptr,
                     ListenerSetting listener = {}) noexcept;

/// Replaces the filter of a topic that was created with one; applies to samples that arrive later.
Status set_content_filter(EntityId topic, ContentFilter filter) noexcept;
/// @}

/// @name Publishers and writers
/// @{
Created create_publisher(EntityId participant, const Qos& qos,
                         ListenerSetting listener = {}) noexcept;
Created create_writer(EntityId publisher, EntityId topic, const Qos& qos,
                      ListenerSetting listener = {}) noexcept;

enum class WriteKind {
    data,
    dispose,     ///< key payload
    unregister,  ///< key payload; also disposes when the writer's QoS says so
};

/// Encodes a payload into a buffer of exactly the requested size. Returns false to cancel the
/// write.
using Fill = FunctionRef<bool(std::span<std::byte> buffer)>;

/// Writes a payload that @p fill encodes straight into the engine's memory.
///
/// @param size bytes of the payload, its encapsulation header included, at least 4
/// @param source_timestamp nanoseconds since the epoch, not negative
/// @return timeout when a reliable writer found no room within its max_blocking_time;
/// bad_parameter when @p fill failed; out_of_resources without memory
Status write(EntityId writer, WriteKind kind, const KeyHash& instance, std::size_t size, Fill fill,
             Nanoseconds source_timestamp) noexcept;

/// Makes an instance known to the writer without writing; @p fill encodes its key payload.
Status register_instance(EntityId writer, const KeyHash& instance, std::size_t size,
                         Fill fill) noexcept;

/// Sends the batch of a writer.
void flush(EntityId writer) noexcept;

/// Waits until all matched reliable readers have acknowledged everything that was written.
/// @return timeout when the time is over before
Status wait_for_acknowledgments(EntityId writer, Nanoseconds max_wait) noexcept;

/// For writers with manual liveliness, or participants.
Status assert_liveliness(EntityId entity) noexcept;
/// @}

/// @name Subscribers and readers
/// @{
Created create_subscriber(EntityId participant, const Qos& qos,
                          ListenerSetting listener = {}) noexcept;
Created create_reader(EntityId subscriber, EntityId topic, const Qos& qos,
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
/// @return no_data when no sample is selected; out_of_resources without memory, and the samples
/// that were taken are lost
Status read_or_take(EntityId reader, Access access, const StateMask& states,
                    std::int32_t max_samples, std::vector<Sample>& samples) noexcept;

/// As read_or_take(), of one instance.
/// @return bad_parameter for an instance that the reader does not know
Status read_or_take_instance(EntityId reader, Access access, const StateMask& states,
                             std::int32_t max_samples, const KeyHash& instance,
                             std::vector<Sample>& samples) noexcept;

/// As read_or_take(), of the first instance after @p previous that has selected samples, in the
/// order of the key hashes. @p previous need not be known. Looks up each instance of the type in
/// the process that comes before.
///
/// @param previous NULL for the very first instance
Status read_or_take_next_instance(EntityId reader, Access access, const StateMask& states,
                                  std::int32_t max_samples, const KeyHash* previous,
                                  std::vector<Sample>& samples) noexcept;

/// Waits until a reader that is not volatile has received the samples that existing writers keep
/// for it, as far as the engine can tell.
Status wait_for_historical_data(EntityId reader, Nanoseconds max_wait) noexcept;
/// @}

/// @name Instances of a reader or writer
/// A writer knows an instance from its first write or registration to its unregistration. A reader
/// knows the instances that any endpoint of its type in this process has received and not purged.
/// @{
bool knows_instance(EntityId endpoint, const KeyHash& instance) noexcept;

/// Gives the key payload of a known instance. For a reader, looks at every instance in the domain.
/// @return bad_parameter for an unknown one
Status get_key(EntityId endpoint, const KeyHash& instance, Payload& key) noexcept;
/// @}

/// @name Discovery
/// @{

/// A participant, as discovery announced it.
struct ParticipantData {
    Guid guid{};
    /// User data, name and properties. What properties there are depends on the product.
    Qos qos;
};

/// Fills @p found with the other participants of the domain that are known now, those of this
/// process among them. Takes about a millisecond. The first call adds a subscriber to the
/// participant, for which a listener of the participant may hear on_data_on_readers.
/// @return illegal_operation in a callback
Status get_discovered_participants(EntityId participant,
                                   std::vector<ParticipantData>& found) noexcept;

/// A matched endpoint, as discovery announced it.
struct EndpointData {
    Guid guid{};
    std::string topic_name;
    std::string type_name;
    Qos qos;
};

Status get_matched_subscriptions(EntityId writer, std::vector<LocalHandle>& handles) noexcept;
Status get_matched_publications(EntityId reader, std::vector<LocalHandle>& handles) noexcept;
/// @return bad_parameter when no such endpoint is matched
Status get_matched_subscription(EntityId writer, LocalHandle handle, EndpointData& data) noexcept;
Status get_matched_publication(EntityId reader, LocalHandle handle, EndpointData& data) noexcept;
/// @}

/// @name Conditions and wait sets
/// Conditions are entities: a read condition belongs to its reader and is deleted with it; an
/// entity with statuses is its own status condition.
/// @{

/// True while the reader has samples of these states.
Created create_read_condition(EntityId reader, const StateMask& states) noexcept;

/// Belongs to no participant; delete_entity() ends it.
Created create_guard_condition() noexcept;
Status set_guard_condition(EntityId condition, bool triggered) noexcept;

/// Chooses the statuses whose change triggers the entity as a condition. A new entity has chosen
/// all. Listeners are not affected.
Status set_status_condition(EntityId entity, StatusMask mask) noexcept;

/// @return the trigger value of a condition, or of an entity as status condition.
bool is_triggered(EntityId condition) noexcept;

Created create_wait_set() noexcept;
/// @return precondition_not_met when the condition is attached already
Status attach(EntityId wait_set, EntityId condition) noexcept;
/// @return precondition_not_met when the condition is not attached
Status detach(EntityId wait_set, EntityId condition) noexcept;

/// Waits until a condition is true. A wait set without conditions does not wait at all.
///
/// @param timeout 0 does not wait; `infinite` waits for ever
/// @param triggered is replaced by the conditions that are true
/// @return timeout when none became true
Status wait(EntityId wait_set, Nanoseconds timeout, std::vector<EntityId>& triggered) noexcept;
/// @}

}  // namespace pexa::engine
