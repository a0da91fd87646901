#pragma once

#include <atomic>
#include <type_traits>

namespace orvane::core {

/// Reads a field of a plain C record, or a plain C variable, that another thread may be writing.
template <typename Field>
Field load(const Field& field, std::memory_order order = std::memory_order_relaxed) noexcept {
    // A reference to something constant can be made in a later standard only; nothing is written.
    return std::atomic_ref<Field>(const_cast<Field&>(field)).load(order);
}

/// Writes a field that another thread may be reading or writing.
template <typename Field>
void store(Field& field, std::type_identity_t<Field> value,
           std::memory_order order = std::memory_order_relaxed) noexcept {
    std::atomic_ref<Field>(field).store(value, order);
}

}  // namespace orvane::core
