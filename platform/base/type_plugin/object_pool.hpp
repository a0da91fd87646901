/// @file object_pool.hpp
/// @brief The samples and keys of an endpoint.
#pragma once

#include <cstddef>

#include "pexa/type_plugin.h"
#include "platform/internal/status.hpp"

namespace pexa::base {

/// Objects of one kind that are lent and returned. The pool frees all objects at its end, lent ones
/// too. Not thread-safe.
class ObjectPool {
public:
    /// @param create NULL makes a pool that lends nothing.
    /// @param maximal most objects at a time, or @ref DDS_LENGTH_UNLIMITED.
    ObjectPool(TULVCreateData create, TULVDestroyData destroy, DDS_Long maximal)
        : create_(create), destroy_(destroy), maximal_(maximal) {}
    ~ObjectPool();
    ObjectPool(const ObjectPool&) = delete;
    ObjectPool& operator=(const ObjectPool&) = delete;

    /// Makes objects until there are @p count.
    /// @return ok, or out_of_resources when fewer could be made.
    Status fill(DDS_Long count);
    /// Lends an object. @return NULL when all are lent or memory is short.
    void* get();
    /// Takes an object of this pool back; NULL is ignored.
    void give_back(void* object);

private:
    Status reserve(size_t capacity);
    Status make();
    bool is_full() const;

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
