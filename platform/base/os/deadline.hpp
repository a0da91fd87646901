#pragma once

#include <cstdint>
#include <ctime>

#include "pexa/osapi.h"

namespace pexa::base {

/// @return the point of the monotonic clock that lies that far ahead; the past for negative spans.
[[nodiscard]] timespec deadline_after(int64_t seconds, uint32_t nanoseconds);
/// @return the same for a span in seconds and a binary fraction, never less than the span.
[[nodiscard]] timespec deadline_after(QELNtpTime span);
[[nodiscard]] bool is_before(const timespec& left, const timespec& right);
/// Sleeps until the monotonic clock has reached @p deadline, whatever signals arrive.
void sleep_until(const timespec& deadline);

}  // namespace pexa::base
