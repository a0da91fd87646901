/// @file buffer_pool.hpp
/// @brief The pool behind pexa/buffer_pool.h.
#pragma once

#include <mutex>

#include "pexa/buffer_pool.h"
#include "platform/base/memory/chunk_layout.hpp"
#include "platform/internal/status.hpp"

namespace pexa::base {

/// Prepares and ends the content of a buffer. The functions may be NULL.
struct BufferContent {
    MOSKFastBufferPoolInitialize initialize = nullptr;
    MOSKFastBufferPoolFinalize finalize = nullptr;
    void* user_data = nullptr;
};

}  // namespace pexa::base

/// Begins with what every use of it needs, in one cache line.
struct alignas(64) MOSKFastBufferPool {
    /// @see MOSKFastBufferPool_newWithCallbacks
    static MOSKFastBufferPool* create(size_t element_size, size_t alignment,
                                      const MOSKFastBufferPoolProperty* property,
                                      const pexa::base::BufferContent& content);

    MOSKFastBufferPool(const pexa::base::ChunkLayout& layout,
                       const MOSKFastBufferPoolProperty& property,
                       const pexa::base::BufferContent& content)
        : property_(property), layout_(layout), content_(content) {}
    ~MOSKFastBufferPool();
    MOSKFastBufferPool(const MOSKFastBufferPool&) = delete;
    MOSKFastBufferPool& operator=(const MOSKFastBufferPool&) = delete;

    /// Lends a buffer. @return NULL when all are lent and the pool cannot grow.
    void* get();
    void give_back(void* buffer);

private:
    std::unique_lock<std::mutex> lock();
    /// Adds buffers. @return ok, or out_of_resources with nothing changed.
    pexa::Status add(size_t count);
    size_t growth() const;
    /// @return ok when so many buffers may be free, or out_of_resources with nothing changed.
    pexa::Status make_room(size_t buffers);
    pexa::Status initialize(void* buffer) const;
    void free_chunk(pexa::base::Chunk* chunk, size_t initialized) const;

    // The free buffers, with room for all of the pool. The one that was returned last is lent
    // first: a pool touches no more memory than is in use at a time. The addresses stand apart from
    // the buffers, so that a thread that returns a buffer does not write to it, and the next one
    // can be fetched before it is needed.
    void** free_ = nullptr;
    size_t free_count_ = 0;
    MOSKFastBufferPoolProperty property_;
    pexa::base::ChunkLayout layout_;
    pexa::base::BufferContent content_;
    std::mutex mutex_;
    pexa::base::Chunk* chunks_ = nullptr;
    size_t total_ = 0;
};

namespace pexa::base {

using BufferPool = MOSKFastBufferPool;

void* get_buffer(BufferPool* pool);
void return_buffer(BufferPool* pool, void* buffer);

}  // namespace pexa::base
