/// @file instances.hpp
/// @brief Instances by key hash and by the engine's own handles.
#pragma once

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// @return the engine's handle of an instance of the endpoint's type, 0 when the engine knows none
[[nodiscard]] LocalHandle find_instance(EntityId endpoint, const KeyHash& instance);

}  // namespace pexa::engine::cyclone
