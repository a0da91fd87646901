#include "engine/cyclone/entity_table.hpp"

#include <algorithm>
#include <cstring>

#include "engine/cyclone/results.hpp"

namespace pexa::engine::cyclone {

namespace {

void append_contents(EntityId entity, std::vector<EntityId>& contents) {
    // Endpoints contain conditions only, of which nothing is noted. A writer cannot even be asked
    // by a callback that runs within a write to it.
    if (writers().find(entity) || readers().find(entity)) {
        return;
    }
    const dds_return_t count = dds_get_children(entity, nullptr, 0);
    if (count <= 0) {
        return;
    }
    std::vector<dds_entity_t> children(static_cast<std::size_t>(count));
    const dds_return_t found = dds_get_children(entity, children.data(), children.size());
    if (found < 0) {
        return;
    }
    // Others may come or go between the two calls.
    children.resize(std::min(children.size(), static_cast<std::size_t>(found)));
    for (const dds_entity_t child : children) {
        contents.push_back(child);
        append_contents(child, contents);
    }
}

}  // namespace

// The tables are never destroyed: an application may use its entities until the process ends.

EntityTable<TopicRecord>& topics() {
    static auto* const table = new EntityTable<TopicRecord>;
    return *table;
}

EntityTable<WriterRecord>& writers() {
    static auto* const table = new EntityTable<WriterRecord>;
    return *table;
}

EntityTable<ReaderRecord>& readers() {
    static auto* const table = new EntityTable<ReaderRecord>;
    return *table;
}

EntityTable<const ListenerSetting>& listeners() {
    static auto* const table = new EntityTable<const ListenerSetting>;
    return *table;
}

Created note_creation(dds_entity_t result, const ListenerSetting& listener) {
    if (result > 0) {
        listeners().add(result, std::make_shared<const ListenerSetting>(listener));
    }
    return created(result);
}

std::vector<EntityId> contents_of(EntityId entity) {
    std::vector<EntityId> contents;
    append_contents(entity, contents);
    return contents;
}

void forget_entity(EntityId entity) {
    listeners().remove(entity);
    writers().remove(entity);
    readers().remove(entity);
    topics().remove(entity);
}

std::size_t KeyHashHash::operator()(const KeyHash& key) const noexcept {
    std::uint64_t halves[2];
    static_assert(sizeof halves == sizeof key);
    std::memcpy(halves, key.data(), sizeof halves);
    return static_cast<std::size_t>((halves[0] ^ (halves[1] >> 7U)) * 0x9e3779b97f4a7c15U);
}

}  // namespace pexa::engine::cyclone
