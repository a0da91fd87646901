/// @file instances.hpp
/// @brief Instances by key hash and by Cyclone's own handles.
#pragma once

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// @return Cyclone's handle of an instance of the endpoint's type, 0 when Cyclone knows none
LocalHandle find_instance(EntityId endpoint, const KeyHash& instance);

}  // namespace pexa::engine::cyclone
