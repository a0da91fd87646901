/// @file guarded.hpp
/// @brief The barrier that no exception of an operation of the seam passes.
#pragma once

#include <new>

#include "platform/internal/status.hpp"

namespace pexa::engine::cyclone {

/// Runs an operation. Where the operation finds no memory, its result is out_of_resources. An
/// operation that creates an entity allocates all that it keeps before Cyclone makes the entity. So
/// nothing has to be undone here.
template <typename Operation>
auto guarded(const Operation& operation) noexcept -> decltype(operation()) {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return {Status::out_of_resources};
    }
}

}  // namespace pexa::engine::cyclone
