#include <cstdint>
#include <cstdlib>

#include "pexa/osapi.h"

namespace pexa::base {
namespace {

void* allocate(size_t size) {
    return size == 0 ? nullptr : std::malloc(size);
}

void* allocate_array(size_t count, size_t size) {
    // The product is checked here: sanitizers end the process when calloc finds it too large.
    const bool representable = size != 0 && count <= SIZE_MAX / size;
    return count == 0 || !representable ? nullptr : std::calloc(count, size);
}

void* allocate_aligned(size_t size, size_t alignment) {
    if (size == 0 || alignment == 0 || (alignment & (alignment - 1)) != 0) {
        return nullptr;
    }
    void* buffer = nullptr;
    const size_t accepted = alignment < sizeof(void*) ? sizeof(void*) : alignment;
    return posix_memalign(&buffer, accepted, size) == 0 ? buffer : nullptr;
}

}  // namespace
}  // namespace pexa::base

void* QELOsapiHeap_allocateBytes(size_t size) {
    return pexa::base::allocate(size);
}

void QELOsapiHeap_freeBytes(void* bytes) {
    std::free(bytes);
}

void* QELOsapiHeap_allocateArrayOfSize(size_t count, size_t size) {
    return pexa::base::allocate_array(count, size);
}

void QELOsapiHeap_freeArray(void* array) {
    std::free(array);
}

void* QELOsapiHeap_allocateBufferAligned(size_t size, size_t alignment) {
    return pexa::base::allocate_aligned(size, alignment);
}

void QELOsapiHeap_freeBufferAligned(void* buffer) {
    std::free(buffer);
}

void* QELOsapiHeap_allocateStructureOfSize(size_t size) {
    return pexa::base::allocate(size);
}

void QELOsapiHeap_freeStructureBytes(void* structure) {
    std::free(structure);
}
