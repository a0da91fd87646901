#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "pexa/osapi.h"

namespace pexa::base {

/// @return a new object in memory of the middleware's heap, or NULL; end it with heap_delete.
template <class Type, class... Arguments>
[[nodiscard]] Type* heap_new(Arguments&&... arguments) {
    static_assert(alignof(Type) <= alignof(std::max_align_t));
    void* memory = QELOsapiHeap_allocateStructureOfSize(sizeof(Type));
    return memory == nullptr ? nullptr : new (memory) Type{std::forward<Arguments>(arguments)...};
}

/// Destroys and frees an object of heap_new; NULL is ignored.
template <class Type>
void heap_delete(Type* object) {
    if (object != nullptr) {
        object->~Type();
        QELOsapiHeap_freeStructureBytes(object);
    }
}

}  // namespace pexa::base
