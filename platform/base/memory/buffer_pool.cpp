#include "pexa/buffer_pool.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "platform/base/memory/heap_object.hpp"

const MOSKFastBufferPoolProperty MOSK_FAST_BUFFER_POOL_PROPERTY_DEFAULT = {32, DDS_LENGTH_UNLIMITED,
                                                                           DDS_LENGTH_UNLIMITED, 0};

namespace pexa::base {
namespace {

// Stands before each buffer, whose content is not the pool's to touch.
struct Link {
    Link* next;
};

// One allocation of several buffers, and this at its front.
struct Chunk {
    Chunk* next;
    size_t count;
};

struct BufferContent {
    MOSKFastBufferPoolInitialize initialize;
    MOSKFastBufferPoolFinalize finalize;
    void* user_data;
};

bool is_power_of_two(size_t number) {
    return number != 0 && (number & (number - 1)) == 0;
}

size_t round_up(size_t size, size_t alignment) {
    return (size + alignment - 1) & ~(alignment - 1);
}

// Where things are within a chunk. All offsets are multiples of the alignment.
class ChunkLayout {
public:
    ChunkLayout(size_t element_size, size_t alignment)
        : alignment_(std::max(alignment, alignof(std::max_align_t))),
          front_(round_up(sizeof(Chunk), alignment_)),
          link_(round_up(sizeof(Link), alignment_)),
          stride_(link_ + round_up(element_size, alignment_)) {}

    // NULL when the size overflows or memory is short.
    [[nodiscard]] Chunk* allocate(size_t count) const {
        if (count > (SIZE_MAX - front_) / stride_) {
            return nullptr;
        }
        void* memory = QELOsapiHeap_allocateBufferAligned(front_ + count * stride_, alignment_);
        return memory == nullptr ? nullptr : new (memory) Chunk{nullptr, count};
    }

    [[nodiscard]] Link* link(Chunk* chunk, size_t index) const {
        return reinterpret_cast<Link*>(reinterpret_cast<char*>(chunk) + front_ + index * stride_);
    }
    [[nodiscard]] void* buffer_of(Link* link) const {
        return reinterpret_cast<char*>(link) + link_;
    }
    [[nodiscard]] Link* link_of(void* buffer) const {
        return reinterpret_cast<Link*>(static_cast<char*>(buffer) - link_);
    }

    // Asks for the front of a buffer to be brought here, to be written to soon.
    void fetch(const Link* link) const {
        constexpr size_t cache_line = 64;
        constexpr size_t most = 4 * cache_line;
        for (size_t offset = 0; offset < std::min(stride_, most); offset += cache_line) {
            __builtin_prefetch(reinterpret_cast<const char*>(link) + offset, 1);
        }
    }

private:
    size_t alignment_;
    size_t front_;
    size_t link_;
    size_t stride_;
};

}  // namespace
}  // namespace pexa::base

using pexa::base::BufferContent;
using pexa::base::Chunk;
using pexa::base::ChunkLayout;
using pexa::base::Link;

struct MOSKFastBufferPool {
    MOSKFastBufferPool(const ChunkLayout& layout, const MOSKFastBufferPoolProperty& property,
                       const BufferContent& content)
        : layout_(layout), property_(property), content_(content) {}

    ~MOSKFastBufferPool() {
        while (chunks_ != nullptr) {
            Chunk* chunk = chunks_;
            chunks_ = chunk->next;
            free_chunk(chunk, chunk->count);
        }
    }
    MOSKFastBufferPool(const MOSKFastBufferPool&) = delete;
    MOSKFastBufferPool& operator=(const MOSKFastBufferPool&) = delete;

    [[nodiscard]] bool add(size_t count) {
        Chunk* chunk = count == 0 ? nullptr : layout_.allocate(count);
        if (chunk == nullptr) {
            return count == 0;
        }
        for (size_t made = 0; made < count; ++made) {
            if (!initialize(layout_.link(chunk, made))) {
                free_chunk(chunk, made);
                return false;
            }
        }
        for (size_t index = 0; index < count; ++index) {
            append(new (layout_.link(chunk, index)) Link);
        }
        chunk->next = chunks_;
        chunks_ = chunk;
        total_ += count;
        return true;
    }

    [[nodiscard]] void* get() {
        const auto guard = lock();
        Link* link = first_ != nullptr || add(growth()) ? first_ : nullptr;
        if (link == nullptr) {
            return nullptr;
        }
        first_ = link->next;
        if (first_ != nullptr) {
            layout_.fetch(first_);
        }
        return layout_.buffer_of(link);
    }

    void give_back(void* buffer) {
        const auto guard = lock();
        append(layout_.link_of(buffer));
    }

private:
    [[nodiscard]] std::unique_lock<std::mutex> lock() {
        return property_.multiThreaded != 0 ? std::unique_lock(mutex_)
                                            : std::unique_lock(mutex_, std::defer_lock);
    }

    [[nodiscard]] size_t growth() const {
        const size_t wanted = property_.increment == DDS_LENGTH_UNLIMITED
                                  ? std::max(total_, size_t{1})
                                  : static_cast<size_t>(property_.increment);
        return property_.maximal == DDS_LENGTH_UNLIMITED
                   ? wanted
                   : std::min(wanted, static_cast<size_t>(property_.maximal) - total_);
    }

    // Whoever returns a buffer has just had it in its cache. Lending the one that was returned
    // longest ago leaves time to fetch it from there before it is wanted.
    void append(Link* link) {
        link->next = nullptr;
        (first_ == nullptr ? first_ : last_->next) = link;
        last_ = link;
    }

    [[nodiscard]] bool initialize(Link* link) const {
        return content_.initialize == nullptr ||
               content_.initialize(layout_.buffer_of(link), content_.user_data) != 0;
    }

    // Frees a chunk of which the first buffers have been initialised.
    void free_chunk(Chunk* chunk, size_t initialized) const {
        for (size_t index = 0; content_.finalize != nullptr && index < initialized; ++index) {
            content_.finalize(layout_.buffer_of(layout_.link(chunk, index)), content_.user_data);
        }
        QELOsapiHeap_freeBufferAligned(chunk);
    }

    ChunkLayout layout_;
    MOSKFastBufferPoolProperty property_;
    BufferContent content_;
    std::mutex mutex_;
    // The free buffers in the order of their return; without any, the last one means nothing.
    Link* first_ = nullptr;
    Link* last_ = nullptr;
    Chunk* chunks_ = nullptr;
    size_t total_ = 0;
};

namespace {

bool is_valid(const MOSKFastBufferPoolProperty& property) {
    const bool maximal_fits =
        property.maximal == DDS_LENGTH_UNLIMITED || property.maximal >= property.initial;
    const bool increment_fits =
        property.increment == DDS_LENGTH_UNLIMITED || property.increment >= 1;
    return property.initial >= 0 && maximal_fits && increment_fits;
}

}  // namespace

MOSKFastBufferPool* MOSKFastBufferPool_new(size_t elementSize, size_t alignment,
                                           const MOSKFastBufferPoolProperty* property) {
    return MOSKFastBufferPool_newWithCallbacks(elementSize, alignment, property, nullptr, nullptr,
                                               nullptr);
}

MOSKFastBufferPool* MOSKFastBufferPool_newWithCallbacks(size_t elementSize, size_t alignment,
                                                        const MOSKFastBufferPoolProperty* property,
                                                        MOSKFastBufferPoolInitialize initialize,
                                                        MOSKFastBufferPoolFinalize finalize,
                                                        void* userData) {
    const MOSKFastBufferPoolProperty& chosen =
        property == nullptr ? MOSK_FAST_BUFFER_POOL_PROPERTY_DEFAULT : *property;
    // Leaves room for rounding and the links.
    constexpr size_t most_bytes = SIZE_MAX / 4;
    if (elementSize == 0 || elementSize > most_bytes || alignment > most_bytes ||
        !pexa::base::is_power_of_two(alignment) || !is_valid(chosen)) {
        return nullptr;
    }
    auto* pool = pexa::base::heap_new<MOSKFastBufferPool>(
        ChunkLayout(elementSize, alignment), chosen, BufferContent{initialize, finalize, userData});
    if (pool != nullptr && !pool->add(static_cast<size_t>(chosen.initial))) {
        MOSKFastBufferPool_delete(pool);
        return nullptr;
    }
    return pool;
}

void MOSKFastBufferPool_delete(MOSKFastBufferPool* pool) {
    pexa::base::heap_delete(pool);
}

void* MOSKFastBufferPool_getBuffer(MOSKFastBufferPool* pool) {
    return pool == nullptr ? nullptr : pool->get();
}

void MOSKFastBufferPool_returnBuffer(MOSKFastBufferPool* pool, void* buffer) {
    if (pool != nullptr && buffer != nullptr) {
        pool->give_back(buffer);
    }
}
