/// @file entity_tree.hpp
/// @brief The entities that were created through the seam, by parent, and their listeners.
///
/// Cyclone may hold locks of the entities while it runs a callback. Therefore the answers come from
/// here instead.
#pragma once

#include <dds/dds.h>

#include <optional>
#include <vector>

#include "platform/engine/listener.hpp"

namespace pexa::engine::cyclone {

/// Notes an entity, if the creation succeeded.
///
/// @param result return value of Cyclone's creating function
/// @param parent no_entity for participants
Created note_creation(dds_entity_t result, EntityId parent, const ListenerSetting& listener);

/// Notes the listener of an entity, which an application may have created without the seam.
void note_listener(EntityId entity, const ListenerSetting& listener);

/// Drops the note of an entity, and the notes and records of all that was in it, and its records.
/// To be called when Cyclone has deleted the entity.
void forget_with_contents(EntityId entity);

/// @return the entity that contains this one; none for participants and unknown entities
EntityId parent_of(EntityId entity);

/// @return the listener that was last set for the entity itself, or nothing for an unknown entity
std::optional<ListenerSetting> listener_of(EntityId entity);

/// @return all entities in this one, of any depth, parents first
std::vector<EntityId> contents_of(EntityId entity);

}  // namespace pexa::engine::cyclone
