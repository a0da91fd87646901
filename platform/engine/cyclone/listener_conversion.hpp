/// @file listener_conversion.hpp
/// @brief Listeners in Cyclone's form.
#pragma once

#include <dds/dds.h>

#include <memory>

#include "platform/engine/listener.hpp"

namespace pexa::engine::cyclone {

struct ListenerDelete {
    void operator()(dds_listener_t* listener) const { dds_delete_listener(listener); }
};
using ListenerPtr = std::unique_ptr<dds_listener_t, ListenerDelete>;

/// @return Cyclone's form of a listener, or NULL when it takes no status. Cyclone copies it when an
/// entity is created with it or gets it.
ListenerPtr to_cyclone(const ListenerSetting& setting);

}  // namespace pexa::engine::cyclone
