/// @file heap_object.hpp
/// @brief Objects in memory of the middleware's heap.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "pexa/osapi.h"

namespace pexa::base {

// The heap has C names only, also within this library: a test can then make any allocation fail.

/// @return a new object, or NULL without memory. Free it with heap_delete.
template <class Type, class... Arguments>
Type* heap_new(Arguments&&... arguments) {
    void* memory = QELOsapiHeap_allocateBufferAligned(sizeof(Type), alignof(Type));
    return memory == nullptr ? nullptr : new (memory) Type{std::forward<Arguments>(arguments)...};
}

/// Destroys and frees an object of heap_new; NULL is ignored.
template <class Type>
void heap_delete(Type* object) {
    if (object != nullptr) {
        object->~Type();
        QELOsapiHeap_freeBufferAligned(object);
    }
}

}  // namespace pexa::base
