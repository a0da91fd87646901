/// @file chunk_layout.hpp
/// @brief Several buffers of one size in one allocation.
#pragma once

#include <cstddef>

namespace pexa::base {

/// Stands before each buffer, whose content belongs to the pool's user.
struct Link {
    Link* next;
};

/// Stands at the front of an allocation.
struct Chunk {
    Chunk* next;
    size_t count;
};

/// The places of buffers and links within a chunk. All offsets are multiples of the alignment.
class ChunkLayout {
public:
    /// @param alignment a power of two.
    ChunkLayout(size_t element_size, size_t alignment);

    /// @return NULL when the size overflows or memory is short.
    Chunk* allocate(size_t count) const;

    Link* link(Chunk* chunk, size_t index) const {
        return reinterpret_cast<Link*>(reinterpret_cast<char*>(chunk) + front_ + index * stride_);
    }
    void* buffer_of(Link* link) const { return reinterpret_cast<char*>(link) + link_; }
    Link* link_of(void* buffer) const {
        return reinterpret_cast<Link*>(static_cast<char*>(buffer) - link_);
    }

    /// Starts to load the front of a buffer into the cache, because it will soon be written.
    void prefetch(const Link* link) const;

private:
    size_t alignment_;
    size_t front_;
    size_t link_;
    size_t stride_;
};

}  // namespace pexa::base
