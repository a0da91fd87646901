/// @file chunk_layout.hpp
/// @brief Several buffers of one size in one allocation.
#pragma once

#include <cstddef>

namespace pexa::base {

/// Stands at the front of an allocation.
struct Chunk {
    Chunk* next;
    size_t count;
};

/// The places of buffers within a chunk. Buffers that are not smaller than a cache line share none,
/// because threads on two processors may use neighbours at the same time.
class ChunkLayout {
public:
    /// @param alignment a power of two.
    ChunkLayout(size_t buffer_size, size_t alignment);

    /// @return NULL when the size overflows or memory is short.
    Chunk* allocate(size_t count) const;

    void* buffer(Chunk* chunk, size_t index) const {
        return reinterpret_cast<char*>(chunk) + front_ + index * stride_;
    }

    /// Starts to load the front of a buffer into the cache, because it will soon be written.
    void prefetch(const void* buffer) const;

private:
    size_t alignment_;
    size_t front_;
    size_t stride_;
};

}  // namespace pexa::base
