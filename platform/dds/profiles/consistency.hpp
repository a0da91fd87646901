/// @file consistency.hpp
/// @brief Whether entities can be created with a profile.
#pragma once

#include "platform/dds/profiles/elements.hpp"
#include "platform/dds/profiles/store.hpp"

namespace pexa::dds {

/// Adds a fault for each kind of entity that cannot be created with what the profile and its bases
/// set together. For each filter the QoS of a topic that it matches is looked at, too.
///
/// @param element of the profile
/// @param profile its bases have no fault
void check_consistency(xml::Parser& faults, const Element& element, const ProfileStore& store,
                       const QosProfile& profile);

}  // namespace pexa::dds
