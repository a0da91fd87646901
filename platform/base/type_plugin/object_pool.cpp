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

Status ObjectPool::fill(DDS_Long count) {
    while (create_ != nullptr && all_count_ < static_cast<size_t>(std::max(count, 0))) {
        if (make() != Status::ok) {
            return Status::out_of_resources;
        }
    }
    return Status::ok;
}

void* ObjectPool::get() {
    if (free_count_ == 0 && make() != Status::ok) {
        return nullptr;
    }
    return free_[--free_count_];
}

void ObjectPool::give_back(void* object) {
    // If all objects are free, this one is returned for the second time.
    if (object != nullptr && free_count_ < all_count_) {
        free_[free_count_++] = object;
    }
}

bool ObjectPool::is_full() const {
    return maximal_ != DDS_LENGTH_UNLIMITED && all_count_ >= static_cast<size_t>(maximal_);
}

Status ObjectPool::make() {
    if (create_ == nullptr || is_full() || reserve(all_count_ + 1) != Status::ok) {
        return Status::out_of_resources;
    }
    void* object = create_();
    if (object == nullptr) {
        return Status::out_of_resources;
    }
    all_[all_count_++] = object;
    free_[free_count_++] = object;
    return Status::ok;
}

Status ObjectPool::reserve(size_t capacity) {
    if (capacity <= capacity_) {
        return Status::ok;
    }
    const size_t grown = std::max(2 * capacity_, first_capacity);
    auto** lists = static_cast<void**>(QELOsapiHeap_allocateArrayOfSize(2 * grown, sizeof(void*)));
    if (lists == nullptr) {
        return Status::out_of_resources;
    }
    copy_list(lists, all_, all_count_);
    copy_list(lists + grown, free_, free_count_);
    QELOsapiHeap_freeArray(all_);
    all_ = lists;
    free_ = lists + grown;
    capacity_ = grown;
    return Status::ok;
}

}  // namespace pexa::base
