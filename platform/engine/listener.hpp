/// @file listener.hpp
/// @brief The callbacks that announce communication statuses.
#pragma once

#include <mutex>

#include "platform/engine/communication_status.hpp"

namespace pexa::engine {

/// Receiver of status changes. Callbacks run on the engine's threads, on a thread that writes to a
/// reader of its own process, and on the thread that installs the listener; never two at a time for
/// one listener. They hold up the delivery of data, so they must be short. They must not throw.
///
/// A callback may call the engine, except that
/// - it may not change the listener of the entity that it is about, or of an ancestor: this fails
///   with illegal_operation;
/// - it may not delete any reader, writer or participant, or an entity that contains one: a
///   deletion waits until all threads have left the engine, callbacks included. This fails with
///   illegal_operation, too. For the same reason no callback may wait for a thread that deletes;
/// - when it is about data of a writer in the same process, it may not use that writer, which is
///   locked while the callback runs.
class Listener {
public:
    Listener() = default;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    virtual ~Listener() = default;

    /// A status other than the two below has changed.
    ///
    /// @param kind its bit
    /// @param status its changes are those since the last callback, which resets them
    virtual void on_status(EntityId /*entity*/, StatusMask /*kind*/,
                           const CommunicationStatus& /*status*/) {}
    virtual void on_data_available(EntityId /*reader*/) {}
    virtual void on_data_on_readers(EntityId /*subscriber*/) {}

private:
    friend class ListenerCall;
    std::recursive_mutex serial_;
};

/// A listener and the statuses that it takes.
struct ListenerSetting {
    /// NULL for none. Must stay valid until it is replaced or the entity is deleted.
    Listener* listener = nullptr;
    StatusMask mask = 0;
};

/// Replaces the listener of any entity. Waits until running callbacks of the old one have ended;
/// after the return it is called no more. Callbacks of the new one run before the return, on this
/// thread, for statuses in its mask that have changed before, among them data that arrived earlier.
///
/// A status that an entity's listener does not take goes to the listener of the entity's parent, up
/// to the participant. What an entity takes must be set again when the listener of an entity above
/// it has changed: the engine hands down a new listener only in place of one that it handed down
/// before.
Status set_listener(EntityId entity, ListenerSetting setting) noexcept;

}  // namespace pexa::engine
