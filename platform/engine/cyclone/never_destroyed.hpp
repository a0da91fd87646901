/// @file never_destroyed.hpp
/// @brief Objects that exist until the process ends.
#pragma once

#include <cstddef>
#include <new>

namespace pexa::engine::cyclone {

/// An object that outlives the static objects: an application may use its entities until the
/// process ends, and Cyclone's threads may release samples and types. It lies in this one, so that
/// its first use needs no memory.
template <typename T>
class NeverDestroyed {
public:
    NeverDestroyed() : object_(*new (memory_) T) {}
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    T& get() { return object_; }

private:
    alignas(T) std::byte memory_[sizeof(T)];
    T& object_;
};

}  // namespace pexa::engine::cyclone
