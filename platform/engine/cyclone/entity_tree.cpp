#include "platform/engine/cyclone/entity_tree.hpp"

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/entity_table.hpp"
#include "platform/engine/cyclone/results.hpp"

namespace pexa::engine::cyclone {

namespace {

struct Note {
    EntityId parent = no_entity;
    ListenerSetting listener;
};

EntityTable<const Note>& notes() {
    // Never destroyed: an application may use its entities until the process ends.
    static auto* const table = new EntityTable<const Note>;
    return *table;
}

EntityId any_child_of(EntityId entity) {
    EntityId child = no_entity;
    notes().for_each([&](EntityId inner, const Note& note) {
        if (note.parent == entity) {
            child = inner;
        }
    });
    return child;
}

}  // namespace

Created note_creation(dds_entity_t result, EntityId parent, const ListenerSetting& listener) {
    if (result > 0) {
        notes().add(result, std::make_shared<const Note>(Note{parent, listener}));
    }
    return created(result);
}

void note_listener(EntityId entity, const ListenerSetting& listener) {
    notes().add(entity, std::make_shared<const Note>(Note{parent_of(entity), listener}));
}

// Allocates nothing: an entity can always be deleted.
void forget_with_contents(EntityId entity) {
    for (EntityId child = any_child_of(entity); child != no_entity; child = any_child_of(entity)) {
        forget_with_contents(child);
    }
    notes().remove(entity);
    writers().remove(entity);
    readers().remove(entity);
    topics().remove(entity);
}

EntityId parent_of(EntityId entity) {
    const auto note = notes().find(entity);
    return note ? note->parent : no_entity;
}

std::optional<ListenerSetting> listener_of(EntityId entity) {
    const auto note = notes().find(entity);
    return note ? std::optional(note->listener) : std::nullopt;
}

std::vector<EntityId> contents_of(EntityId entity) {
    std::vector<EntityId> found{entity};
    for (std::size_t i = 0; i < found.size(); ++i) {
        const EntityId parent = found[i];
        notes().for_each([&](EntityId inner, const Note& note) {
            if (note.parent == parent) {
                found.push_back(inner);
            }
        });
    }
    found.erase(found.begin());
    return found;
}

}  // namespace pexa::engine::cyclone
