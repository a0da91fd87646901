#include "platform/engine/cyclone/entity_table.hpp"

#include <cstring>
#include <ctime>

#include "platform/engine/cyclone/results.hpp"

namespace pexa::engine::cyclone {

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

EntityTable<const EntityNote>& notes() {
    static auto* const table = new EntityTable<const EntityNote>;
    return *table;
}

Created note_creation(dds_entity_t result, EntityId parent, const ListenerSetting& listener) {
    if (result > 0) {
        notes().add(result, std::make_shared<const EntityNote>(EntityNote{parent, listener}));
    }
    return created(result);
}

EntityId parent_of(EntityId entity) {
    const auto note = notes().find(entity);
    return note ? note->parent : no_entity;
}

std::vector<EntityId> contents_of(EntityId entity) {
    std::vector<EntityId> found{entity};
    for (std::size_t i = 0; i < found.size(); ++i) {
        const EntityId parent = found[i];
        notes().for_each([&](EntityId inner, const EntityNote& note) {
            if (note.parent == parent) {
                found.push_back(inner);
            }
        });
    }
    found.erase(found.begin());
    return found;
}

namespace {

// Moves on with the kernel's ticks, every few milliseconds, and costs a quarter of the exact one.
std::int64_t tick() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * 1'000'000'000 + now.tv_nsec;
}

}  // namespace

bool Collection::is_old() const {
    return samples_.load(std::memory_order_relaxed) > 0 &&
           tick() != first_at_.load(std::memory_order_relaxed);
}

bool Collection::add() {
    if (limit_ == 0) {
        return false;
    }
    const std::int64_t before = samples_.fetch_add(1, std::memory_order_relaxed);
    if (before == 0) {
        first_at_.store(tick(), std::memory_order_relaxed);
    }
    return before + 1 >= limit_;
}

namespace {

EntityId any_child_of(EntityId entity) {
    EntityId child = no_entity;
    notes().for_each([&](EntityId inner, const EntityNote& note) {
        if (note.parent == entity) {
            child = inner;
        }
    });
    return child;
}

}  // namespace

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

std::size_t KeyHashHash::operator()(const KeyHash& key) const noexcept {
    std::uint64_t halves[2];
    static_assert(sizeof halves == sizeof key);
    std::memcpy(halves, key.data(), sizeof halves);
    return static_cast<std::size_t>((halves[0] ^ (halves[1] >> 7U)) * 0x9e3779b97f4a7c15U);
}

}  // namespace pexa::engine::cyclone
