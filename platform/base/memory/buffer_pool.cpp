#include "platform/base/memory/buffer_pool.hpp"

#include <algorithm>
#include <cstdint>

#include "platform/base/memory/heap_object.hpp"

const MOSKFastBufferPoolProperty MOSK_FAST_BUFFER_POOL_PROPERTY_DEFAULT = {32, DDS_LENGTH_UNLIMITED,
                                                                           DDS_LENGTH_UNLIMITED, 0};

using pexa::Status;
using pexa::base::Chunk;
using pexa::base::ChunkLayout;

namespace {

bool is_power_of_two(size_t number) {
    return number != 0 && (number & (number - 1)) == 0;
}

bool is_valid(const MOSKFastBufferPoolProperty& property) {
    const bool maximal_fits =
        property.maximal == DDS_LENGTH_UNLIMITED || property.maximal >= property.initial;
    const bool increment_fits =
        property.increment == DDS_LENGTH_UNLIMITED || property.increment >= 1;
    return property.initial >= 0 && maximal_fits && increment_fits;
}

}  // namespace

MOSKFastBufferPool* MOSKFastBufferPool::create(size_t element_size, size_t alignment,
                                               const MOSKFastBufferPoolProperty* property,
                                               const pexa::base::BufferContent& content) {
    const MOSKFastBufferPoolProperty& chosen =
        property == nullptr ? MOSK_FAST_BUFFER_POOL_PROPERTY_DEFAULT : *property;
    // Leaves room for rounding.
    constexpr size_t most_bytes = SIZE_MAX / 4;
    if (element_size == 0 || element_size > most_bytes || alignment > most_bytes ||
        !is_power_of_two(alignment) || !is_valid(chosen)) {
        return nullptr;
    }
    auto* pool = pexa::base::heap_new<MOSKFastBufferPool>(ChunkLayout(element_size, alignment),
                                                          chosen, content);
    if (pool != nullptr && pool->add(static_cast<size_t>(chosen.initial)) != Status::ok) {
        pexa::base::heap_delete(pool);
        return nullptr;
    }
    return pool;
}

MOSKFastBufferPool::~MOSKFastBufferPool() {
    while (chunks_ != nullptr) {
        Chunk* chunk = chunks_;
        chunks_ = chunk->next;
        free_chunk(chunk, chunk->count);
    }
    QELOsapiHeap_freeArray(free_);
}

void* MOSKFastBufferPool::get() {
    const auto guard = lock();
    if (free_count_ == 0 && (add(growth()) != Status::ok || free_count_ == 0)) {
        return nullptr;
    }
    --free_count_;
    if (free_count_ > 0) {
        layout_.prefetch(free_[free_count_ - 1]);
    }
    return free_[free_count_];
}

void MOSKFastBufferPool::give_back(void* buffer) {
    const auto guard = lock();
    free_[free_count_] = buffer;
    ++free_count_;
}

std::unique_lock<std::mutex> MOSKFastBufferPool::lock() {
    return property_.multiThreaded != 0 ? std::unique_lock(mutex_)
                                        : std::unique_lock(mutex_, std::defer_lock);
}

Status MOSKFastBufferPool::add(size_t count) {
    if (count == 0) {
        return Status::ok;
    }
    Chunk* chunk = layout_.allocate(count);
    if (chunk == nullptr) {
        return Status::out_of_resources;
    }
    for (size_t made = 0; made < count; ++made) {
        if (initialize(layout_.buffer(chunk, made)) != Status::ok) {
            free_chunk(chunk, made);
            return Status::out_of_resources;
        }
    }
    if (make_room(total_ + count) != Status::ok) {
        free_chunk(chunk, count);
        return Status::out_of_resources;
    }
    // The first one is lent first.
    for (size_t index = count; index > 0; --index) {
        free_[free_count_] = layout_.buffer(chunk, index - 1);
        ++free_count_;
    }
    chunk->next = chunks_;
    chunks_ = chunk;
    total_ += count;
    return Status::ok;
}

Status MOSKFastBufferPool::make_room(size_t buffers) {
    auto** wider = static_cast<void**>(QELOsapiHeap_allocateArrayOfSize(buffers, sizeof(void*)));
    if (wider == nullptr) {
        return Status::out_of_resources;
    }
    std::copy_n(free_, free_count_, wider);
    QELOsapiHeap_freeArray(free_);
    free_ = wider;
    return Status::ok;
}

size_t MOSKFastBufferPool::growth() const {
    const size_t wanted = property_.increment == DDS_LENGTH_UNLIMITED
                              ? std::max(total_, size_t{1})
                              : static_cast<size_t>(property_.increment);
    return property_.maximal == DDS_LENGTH_UNLIMITED
               ? wanted
               : std::min(wanted, static_cast<size_t>(property_.maximal) - total_);
}

Status MOSKFastBufferPool::initialize(void* buffer) const {
    const bool usable =
        content_.initialize == nullptr || content_.initialize(buffer, content_.user_data) != 0;
    return usable ? Status::ok : Status::out_of_resources;
}

// Frees a chunk of which the first buffers have been initialised.
void MOSKFastBufferPool::free_chunk(Chunk* chunk, size_t initialized) const {
    for (size_t index = 0; content_.finalize != nullptr && index < initialized; ++index) {
        content_.finalize(layout_.buffer(chunk, index), content_.user_data);
    }
    QELOsapiHeap_freeBufferAligned(chunk);
}

namespace pexa::base {

void* get_buffer(BufferPool* pool) {
    return pool == nullptr ? nullptr : pool->get();
}

void return_buffer(BufferPool* pool, void* buffer) {
    if (pool != nullptr && buffer != nullptr) {
        pool->give_back(buffer);
    }
}

}  // namespace pexa::base

MOSKFastBufferPool* MOSKFastBufferPool_new(size_t elementSize, size_t alignment,
                                           const MOSKFastBufferPoolProperty* property) {
    return MOSKFastBufferPool::create(elementSize, alignment, property, {});
}

MOSKFastBufferPool* MOSKFastBufferPool_newWithCallbacks(size_t elementSize, size_t alignment,
                                                        const MOSKFastBufferPoolProperty* property,
                                                        MOSKFastBufferPoolInitialize initialize,
                                                        MOSKFastBufferPoolFinalize finalize,
                                                        void* userData) {
    return MOSKFastBufferPool::create(elementSize, alignment, property,
                                      {initialize, finalize, userData});
}

void MOSKFastBufferPool_delete(MOSKFastBufferPool* pool) {
    pexa::base::heap_delete(pool);
}

void* MOSKFastBufferPool_getBuffer(MOSKFastBufferPool* pool) {
    return pexa::base::get_buffer(pool);
}

void MOSKFastBufferPool_returnBuffer(MOSKFastBufferPool* pool, void* buffer) {
    pexa::base::return_buffer(pool, buffer);
}
