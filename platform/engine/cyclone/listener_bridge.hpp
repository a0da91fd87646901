/// @file listener_bridge.hpp
/// @brief Listeners in the engine's form.
#pragma once

#include <dds/dds.h>

#include <memory>

#include "platform/engine/engine.hpp"

namespace pexa::engine::cyclone {

struct ListenerDelete {
    void operator()(dds_listener_t* listener) const { dds_delete_listener(listener); }
};
using ListenerPtr = std::unique_ptr<dds_listener_t, ListenerDelete>;

/// @return the engine's listener for creation and installation (which copy it), or NULL when the
/// setting takes no status
[[nodiscard]] ListenerPtr make_listener(const ListenerSetting& setting);

/// @return whether the calling thread is in a callback
[[nodiscard]] bool is_in_callback();

/// @return whether the calling thread is in a callback about @p entity or something in it: to wait
/// for the end of that callback would never end
[[nodiscard]] bool is_in_callback_of(EntityId entity);

}  // namespace pexa::engine::cyclone
