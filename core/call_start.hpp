/// @file call_start.hpp
/// @brief What a logging call reads before it has a lock.
#pragma once

#include <atomic>
#include <limits>

#include "orvane/core.h"
#include "platform/internal/prefetch.hpp"

namespace orvane::core {

/// In one cache line. Any thread may read it at any time.
struct alignas(64) CallStart {
    /// Levels above this one leave no trace at present: the filter stops them and nothing is
    /// echoed. Lets a call end before it has read the clock or taken a lock.
    std::atomic<DDS_Long> last_traced_level = std::numeric_limits<DDS_Long>::max();
    /// The same, except that without a logger no level is enabled. (A call looks at its arguments
    /// then all the same.)
    std::atomic<DDS_Long> last_enabled_level = std::numeric_limits<DDS_Long>::min();
    /// The clock of the instance, or NULL. The instance's record may already be freed; the clock
    /// itself may be read at any time.
    std::atomic<QELSystemClock*> clock = nullptr;
    /// Where in memory the call is about to write. May not exist any more, and is not read.
    std::atomic<const void*> written[5] = {};
};

static_assert(sizeof(CallStart) == 64);

inline constinit CallStart call_start;

/**
 * Begins to fetch what a call of @p self writes, all at the same time. Another processor has
 * written some of it since the last call, and the call needs one after the other.
 */
inline void prefetch_for_call(const QEL_KX_Orvane* self) noexcept {
    __builtin_prefetch(self);
    for (const std::atomic<const void*>& place : call_start.written) {
        pexa::prefetch_for_writing(place.load(std::memory_order_relaxed));
    }
}

}  // namespace orvane::core
