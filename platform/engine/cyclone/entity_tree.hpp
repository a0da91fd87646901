/// @file entity_tree.hpp
/// @brief The entities that were created through the seam, by parent.
///
/// Cyclone may hold locks of the entities while it runs a callback. Therefore the answers come from
/// here instead.
#pragma once

#include <dds/dds.h>

#include "platform/engine/cyclone/entity_table.hpp"
#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// The note about an entity that is being created.
class NewEntity {
public:
    /// @param parent no_entity for participants
    explicit NewEntity(EntityId parent);

    /// Notes the entity, if the creation succeeded.
    /// @param result return value of Cyclone's creating function
    Created note(dds_entity_t result) noexcept;

private:
    EntityTable<const EntityId>::Entry entry_;
};

/// Drops the note and the records of an entity that contains nothing any more. To be called when
/// Cyclone has deleted it.
void forget(EntityId entity);

/// @return whether @p inner is @p outer, or an entity in it, of any depth
bool is_within(EntityId inner, EntityId outer);

/// @return whether an entity is a reader or writer, or contains one
bool has_endpoints(EntityId entity);

}  // namespace pexa::engine::cyclone
