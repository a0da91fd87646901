/// @file entity_tree.hpp
/// @brief The entities that were created through the seam, by parent.
///
/// Cyclone may hold locks of the entities while it runs a callback. Therefore the answers come from
/// here instead.
#pragma once

#include <dds/dds.h>

#include <vector>

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// Notes an entity, if the creation succeeded.
///
/// @param result return value of Cyclone's creating function
/// @param parent no_entity for participants
Created note_creation(dds_entity_t result, EntityId parent);

/// Drops the note and the records of an entity that contains nothing any more. To be called when
/// Cyclone has deleted it.
void forget(EntityId entity);

/// @return the entity that contains this one; none for participants and unknown entities
EntityId parent_of(EntityId entity);

/// @return all entities in this one, of any depth, parents first
std::vector<EntityId> contents_of(EntityId entity);

}  // namespace pexa::engine::cyclone
