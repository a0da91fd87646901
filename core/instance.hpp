#pragma once

#include "orvane/core.h"

namespace orvane::core {

/**
 * The clock of the instance, or NULL. A logging call reads it before it has the global lock, when
 * the instance's record may already be freed; the clock itself may be read at any time.
 */
[[nodiscard]] QELSystemClock* live_clock() noexcept;
void set_live_clock(QELSystemClock* clock) noexcept;

/// Whether @p self is the instance; to be relied on with the global lock held only.
[[nodiscard]] bool is_live(const QEL_KX_Orvane* self) noexcept;

}  // namespace orvane::core
