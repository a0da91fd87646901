#include "platform/engine/cyclone/instance_index.hpp"

#include <cstddef>
#include <cstring>

namespace pexa::engine::cyclone {

namespace {

int compare_keys(const void* left, const void* right) {
    return std::memcmp(left, right, sizeof(KeyHash));
}

const ddsrt_avl_treedef_t& by_key() {
    static const ddsrt_avl_treedef_t definition = [] {
        using Place = InstanceIndex::Place;
        ddsrt_avl_treedef_t made;
        ddsrt_avl_treedef_init(&made, offsetof(Place, node), offsetof(Place, key), compare_keys,
                               nullptr, DDSRT_AVL_TREEDEF_FLAG_ALLOWDUPS);
        return made;
    }();
    return definition;
}

}  // namespace

InstanceIndex::InstanceIndex() {
    ddsrt_avl_init(&by_key(), &places_);
}

void InstanceIndex::add(Place& place) {
    const std::lock_guard lock(mutex_);
    ddsrt_avl_insert(&by_key(), &places_, &place);
}

void InstanceIndex::remove(Place& place) {
    const std::lock_guard lock(mutex_);
    ddsrt_avl_delete(&by_key(), &places_, &place);
}

std::optional<KeyHash> InstanceIndex::next(const KeyHash* previous) const {
    const std::lock_guard lock(mutex_);
    const void* const found = previous == nullptr
                                  ? ddsrt_avl_find_min(&by_key(), &places_)
                                  : ddsrt_avl_lookup_succ(&by_key(), &places_, previous);
    if (found == nullptr) {
        return std::nullopt;
    }
    return static_cast<const Place*>(found)->key;
}

}  // namespace pexa::engine::cyclone
