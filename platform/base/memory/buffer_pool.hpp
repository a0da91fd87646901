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

struct MOSKFastBufferPool {
    /// @see MOSKFastBufferPool_newWithCallbacks
    static MOSKFastBufferPool* create(size_t element_size, size_t alignment,
                                      const MOSKFastBufferPoolProperty* property,
                                      const pexa::base::BufferContent& content);

    MOSKFastBufferPool(const pexa::base::ChunkLayout& layout,
                       const MOSKFastBufferPoolProperty& property,
                       const pexa::base::BufferContent& content)
        : layout_(layout), property_(property), content_(content) {}
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
    void append(pexa::base::Link* link);
    pexa::Status initialize(pexa::base::Link* link) const;
    void free_chunk(pexa::base::Chunk* chunk, size_t initialized) const;

    pexa::base::ChunkLayout layout_;
    MOSKFastBufferPoolProperty property_;
    pexa::base::BufferContent content_;
    std::mutex mutex_;
    // The free buffers in the order of their return. Without any, the last one means nothing.
    pexa::base::Link* first_ = nullptr;
    pexa::base::Link* last_ = nullptr;
    pexa::base::Chunk* chunks_ = nullptr;
    size_t total_ = 0;
};

namespace pexa::base {

using BufferPool = MOSKFastBufferPool;

void* get_buffer(BufferPool* pool);
void return_buffer(BufferPool* pool, void* buffer);

}  // namespace pexa::base
