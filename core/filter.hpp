#pragma once

#include "core/call_start.hpp"
#include "orvane/core.h"

namespace orvane::core {

inline bool leaves_no_trace(DDS_Long level) noexcept {
    return level > call_start.last_traced_level.load(std::memory_order_relaxed);
}

inline bool is_enabled(DDS_Long level) noexcept {
    return level <= call_start.last_enabled_level.load(std::memory_order_relaxed);
}

/**
 * Takes the filter level from @p self and the echo from its options, both of which stay valid until
 * this is called with NULL; then every level counts as traced.
 */
void follow_filter_of(const QEL_KX_Orvane* self) noexcept;

/// Must be called after a change of the level or of the echo.
void refresh_filter() noexcept;

/// @name In a child process that has just been forked
/// @{

/// A thread that does not exist there may hold the mutex.
void free_filter_lock() noexcept;
/// There can be no logger: no level leaves a trace.
void silence_filter() noexcept;
/// @}

}  // namespace orvane::core
