#pragma once

#include <atomic>

#include "core/shared_field.hpp"
#include "orvane/core.h"

namespace orvane::core {

inline QEL_KX_Orvane* instance() noexcept {
    return load(QEL_KX_Orvane_instance, std::memory_order_acquire);
}

/// Whether there is a complete instance. Any thread; the flag publishes the instance.
inline bool is_running() noexcept {
    return load(gQEL_KX_Orvane_initialized, std::memory_order_acquire) != 0;
}

/// Whether @p self is the instance; to be relied on with the global lock held only.
inline bool is_live(const QEL_KX_Orvane* self) noexcept {
    return self != nullptr && self == instance();
}

/// The kind of the State. Any thread; what was done before the kind was set has happened.
inline QEL_KX_ADMIN_StateKind state_kind(const QEL_KX_Orvane& logger) noexcept {
    return load(logger.state->state, std::memory_order_acquire);
}

}  // namespace orvane::core
