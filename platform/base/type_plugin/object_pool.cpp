#include "platform/base/type_plugin/object_pool.hpp"

#include <algorithm>
#include <cstring>

#include "pexa/osapi.h"

namespace pexa::base {

namespace {

constexpr size_t first_capacity = 8;

void copy_list(void** destination, void* const* source, size_t count) {
    std::copy(source, source + count, destination);
}

}  // namespace

ObjectPool::~ObjectPool() {
    for (size_t index = 0; index < all_count_; ++index) {
        destroy_(all_[index]);
    }
    QELOsapiHeap_freeArray(all_);
}

bool ObjectPool::fill(DDS_Long count) {
    while (create_ != nullptr && all_count_ < static_cast<size_t>(std::max(count, 0))) {
        if (!make()) {
            return false;
        }
    }
    return true;
}

void* ObjectPool::get() {
    if (free_count_ == 0 && !make()) {
        return nullptr;
    }
    return free_[--free_count_];
}

void ObjectPool::give_back(void* object) {
    // More free objects than there are would mean that one has come back twice.
    if (object != nullptr && free_count_ < all_count_) {
        free_[free_count_++] = object;
    }
}

bool ObjectPool::is_full() const {
    return maximal_ != DDS_LENGTH_UNLIMITED && all_count_ >= static_cast<size_t>(maximal_);
}

bool ObjectPool::make() {
    if (create_ == nullptr || is_full() || !reserve(all_count_ + 1)) {
        return false;
    }
    void* object = create_();
    if (object == nullptr) {
        return false;
    }
    all_[all_count_++] = object;
    free_[free_count_++] = object;
    return true;
}

bool ObjectPool::reserve(size_t capacity) {
    if (capacity <= capacity_) {
        return true;
    }
    const size_t grown = std::max(2 * capacity_, first_capacity);
    auto** lists = static_cast<void**>(QELOsapiHeap_allocateArrayOfSize(2 * grown, sizeof(void*)));
    if (lists == nullptr) {
        return false;
    }
    copy_list(lists, all_, all_count_);
    copy_list(lists + grown, free_, free_count_);
    QELOsapiHeap_freeArray(all_);
    all_ = lists;
    free_ = lists + grown;
    capacity_ = grown;
    return true;
}

}  // namespace pexa::base
