#include "platform/engine/cyclone/entity_tree.hpp"

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/entity_table.hpp"
#include "platform/engine/cyclone/results.hpp"

namespace pexa::engine::cyclone {

namespace {

EntityTable<const EntityId>& parents() {
    // Never destroyed: an application may use its entities until the process ends.
    static auto* const table = new EntityTable<const EntityId>;
    return *table;
}

}  // namespace

Created note_creation(dds_entity_t result, EntityId parent) {
    if (result > 0) {
        parents().add(result, std::make_shared<const EntityId>(parent));
    }
    return created(result);
}

void forget(EntityId entity) {
    parents().remove(entity);
    writers().remove(entity);
    readers().remove(entity);
    topics().remove(entity);
}

EntityId parent_of(EntityId entity) {
    const auto parent = parents().find(entity);
    return parent ? *parent : no_entity;
}

std::vector<EntityId> contents_of(EntityId entity) {
    std::vector<EntityId> found{entity};
    for (std::size_t i = 0; i < found.size(); ++i) {
        const EntityId parent = found[i];
        parents().for_each([&](EntityId inner, EntityId parent_of_inner) {
            if (parent_of_inner == parent) {
                found.push_back(inner);
            }
        });
    }
    found.erase(found.begin());
    return found;
}

}  // namespace pexa::engine::cyclone
