#pragma once

#include <cstddef>

#include "pexa/type_plugin.h"

namespace pexa::base {

/// Objects of one kind that are lent and come back. Everything is freed with the pool, also what
/// is still lent. Not thread-safe.
class ObjectPool {
public:
    /// @param create NULL makes a pool that has nothing to lend. @param maximal most objects at a
    /// time, or @ref DDS_LENGTH_UNLIMITED.
    ObjectPool(TULVCreateData create, TULVDestroyData destroy, DDS_Long maximal)
        : create_(create), destroy_(destroy), maximal_(maximal) {}
    ~ObjectPool();
    ObjectPool(const ObjectPool&) = delete;
    ObjectPool& operator=(const ObjectPool&) = delete;

    /// Makes objects until there are @p count. @return false without memory for all of them.
    [[nodiscard]] bool fill(DDS_Long count);
    /// Lends an object. @return NULL when all are lent or memory is short.
    [[nodiscard]] void* get();
    /// Takes an object of this pool back; NULL is ignored.
    void give_back(void* object);

private:
    [[nodiscard]] bool reserve(size_t capacity);
    [[nodiscard]] bool make();
    [[nodiscard]] bool is_full() const;

    TULVCreateData create_;
    TULVDestroyData destroy_;
    DDS_Long maximal_;
    // Two lists of the same capacity in one allocation: all objects, and those that are free.
    void** all_ = nullptr;
    void** free_ = nullptr;
    size_t capacity_ = 0;
    size_t all_count_ = 0;
    size_t free_count_ = 0;
};

}  // namespace pexa::base
