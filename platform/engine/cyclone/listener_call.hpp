/// @file listener_call.hpp
/// @brief Running callbacks.
#pragma once

#include "platform/engine/listener.hpp"

namespace pexa::engine {

/// Lasts as long as a callback of a listener. Keeps other threads from calling the same listener,
/// and makes the callback known to its thread.
class ListenerCall {
public:
    ListenerCall(Listener& listener, EntityId entity)
        : lock_(listener.serial_), entity_(entity), outer_(innermost_) {
        innermost_ = this;
    }
    ListenerCall(const ListenerCall&) = delete;
    ListenerCall& operator=(const ListenerCall&) = delete;
    ~ListenerCall() { innermost_ = outer_; }

    /// @return whether the calling thread is in a callback about an entity that the predicate
    /// accepts
    template <typename Predicate>
    static bool any(const Predicate& accepts) {
        for (const ListenerCall* call = innermost_; call != nullptr; call = call->outer_) {
            if (accepts(call->entity_)) {
                return true;
            }
        }
        return false;
    }

private:
    static constinit thread_local const ListenerCall* innermost_;

    std::lock_guard<std::recursive_mutex> lock_;
    EntityId entity_;
    const ListenerCall* outer_;
};

namespace cyclone {

/// @return whether the calling thread is in a callback
bool is_in_callback();

/// @return whether the calling thread is in a callback about @p entity or an entity in it. Waiting
/// for the end of that callback would never end.
bool is_in_callback_of(EntityId entity);

}  // namespace cyclone

}  // namespace pexa::engine
