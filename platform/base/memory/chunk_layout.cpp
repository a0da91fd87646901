#include "platform/base/memory/chunk_layout.hpp"

#include <algorithm>
#include <cstdint>
#include <new>

#include "pexa/osapi.h"

namespace pexa::base {

namespace {

size_t round_up(size_t size, size_t alignment) {
    return (size + alignment - 1) & ~(alignment - 1);
}

}  // namespace

ChunkLayout::ChunkLayout(size_t element_size, size_t alignment)
    : alignment_(std::max(alignment, alignof(std::max_align_t))),
      front_(round_up(sizeof(Chunk), alignment_)),
      link_(round_up(sizeof(Link), alignment_)),
      stride_(link_ + round_up(element_size, alignment_)) {}

Chunk* ChunkLayout::allocate(size_t count) const {
    if (count > (SIZE_MAX - front_) / stride_) {
        return nullptr;
    }
    void* memory = QELOsapiHeap_allocateBufferAligned(front_ + count * stride_, alignment_);
    return memory == nullptr ? nullptr : new (memory) Chunk{nullptr, count};
}

void ChunkLayout::prefetch(const Link* link) const {
    constexpr size_t cache_line = 64;
    constexpr size_t most = 4 * cache_line;
    for (size_t offset = 0; offset < std::min(stride_, most); offset += cache_line) {
        __builtin_prefetch(reinterpret_cast<const char*>(link) + offset, 1);
    }
}

}  // namespace pexa::base
