#include "platform/engine/cyclone/instance_index.hpp"

namespace pexa::engine::cyclone {

void InstanceIndex::add(const KeyHash& key) {
    const std::lock_guard lock(mutex_);
    ++counts_[key];
}

void InstanceIndex::remove(const KeyHash& key) {
    const std::lock_guard lock(mutex_);
    const auto found = counts_.find(key);
    if (found != counts_.end() && --found->second == 0) {
        counts_.erase(found);
    }
}

std::optional<KeyHash> InstanceIndex::next(const KeyHash* previous) const {
    const std::lock_guard lock(mutex_);
    const auto found = previous == nullptr ? counts_.begin() : counts_.upper_bound(*previous);
    if (found == counts_.end()) {
        return std::nullopt;
    }
    return found->first;
}

}  // namespace pexa::engine::cyclone
