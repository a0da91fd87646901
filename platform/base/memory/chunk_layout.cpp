#include "platform/base/memory/chunk_layout.hpp"

#include <algorithm>
#include <cstdint>
#include <new>

#include "pexa/osapi.h"
#include "platform/internal/prefetch.hpp"

namespace pexa::base {

namespace {

constexpr size_t cache_line = 64;

size_t round_up(size_t size, size_t alignment) {
    return (size + alignment - 1) & ~(alignment - 1);
}

}  // namespace

ChunkLayout::ChunkLayout(size_t buffer_size, size_t alignment)
    : alignment_(
          std::max(alignment, buffer_size < cache_line ? alignof(std::max_align_t) : cache_line)),
      front_(round_up(sizeof(Chunk), alignment_)),
      stride_(round_up(buffer_size, alignment_)) {}

Chunk* ChunkLayout::allocate(size_t count) const {
    if (count > (SIZE_MAX - front_) / stride_) {
        return nullptr;
    }
    void* memory = QELOsapiHeap_allocateBufferAligned(front_ + count * stride_, alignment_);
    return memory == nullptr ? nullptr : new (memory) Chunk{nullptr, count};
}

void ChunkLayout::prefetch(const void* buffer) const {
    constexpr size_t most = 4 * cache_line;
    for (size_t offset = 0; offset < std::min(stride_, most); offset += cache_line) {
        prefetch_for_writing(static_cast<const char*>(buffer) + offset);
    }
}

}  // namespace pexa::base
