#include "platform/engine/cyclone/writer_instances.hpp"

#include <cstring>

#include "platform/engine/cyclone/payload_access.hpp"

namespace pexa::engine::cyclone {

Status WriterInstances::remember(const Serdata& sample) {
    const std::lock_guard lock(mutex_);
    const auto [entry, is_new] = keys_.try_emplace(sample.key);
    if (!is_new) {
        return Status::ok;
    }
    SerdataPtr key = make_key_serdata(sample);
    if (!key) {
        keys_.erase(entry);
        return Status::out_of_resources;
    }
    entry->second = PayloadAccess::adopt(std::move(key));
    return Status::ok;
}

void WriterInstances::remove(const KeyHash& instance) {
    const std::lock_guard lock(mutex_);
    keys_.erase(instance);
}

bool WriterInstances::contains(const KeyHash& instance) const {
    const std::lock_guard lock(mutex_);
    return keys_.contains(instance);
}

Status WriterInstances::get_key(const KeyHash& instance, Payload& key) const {
    const std::lock_guard lock(mutex_);
    const auto found = keys_.find(instance);
    if (found == keys_.end()) {
        return Status::bad_parameter;
    }
    key = found->second;
    return Status::ok;
}

std::size_t WriterInstances::HashKey::operator()(const KeyHash& key) const noexcept {
    std::uint64_t halves[2];
    static_assert(sizeof halves == sizeof key);
    std::memcpy(halves, key.data(), sizeof halves);
    return static_cast<std::size_t>((halves[0] ^ (halves[1] >> 7U)) * 0x9e3779b97f4a7c15U);
}

}  // namespace pexa::engine::cyclone
