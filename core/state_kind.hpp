/// @file state_kind.hpp
/// @brief The kind of the State, which every logging call reads.
#pragma once

#include <atomic>

#include "core/shared_field.hpp"
#include "orvane/core.h"

namespace orvane::core {

/// Any thread. What was done before the kind was set has happened.
inline QEL_KX_ADMIN_StateKind state_kind(const QEL_KX_Orvane& logger) noexcept {
    return load(logger.state->state, std::memory_order_acquire);
}

}  // namespace orvane::core
