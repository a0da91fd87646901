#include "platform/engine/cyclone/entity_tree.hpp"

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/never_destroyed.hpp"
#include "platform/engine/cyclone/results.hpp"

namespace pexa::engine::cyclone {

namespace {

EntityTable<const EntityId>& parents() {
    static NeverDestroyed<EntityTable<const EntityId>> table;
    return table.get();
}

/// @return the entity that contains this one; none for participants and unknown entities
EntityId parent_of(EntityId entity) {
    const auto parent = parents().find(entity);
    return parent ? *parent : no_entity;
}

}  // namespace

NewEntity::NewEntity(EntityId parent) : entry_(std::make_shared<const EntityId>(parent)) {}

Created NewEntity::note(dds_entity_t result) noexcept {
    if (result > 0) {
        parents().add(result, std::move(entry_));
    }
    return created(result);
}

void forget(EntityId entity) {
    parents().remove(entity);
    writers().remove(entity);
    readers().remove(entity);
    topics().remove(entity);
}

bool is_within(EntityId inner, EntityId outer) {
    while (inner > 0 && inner != outer) {
        inner = parent_of(inner);
    }
    return inner > 0 && inner == outer;
}

bool has_endpoints(EntityId entity) {
    const auto is_in_it = [entity](EntityId endpoint) { return is_within(endpoint, entity); };
    return readers().any(is_in_it) || writers().any(is_in_it);
}

}  // namespace pexa::engine::cyclone
