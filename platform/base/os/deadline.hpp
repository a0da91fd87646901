#pragma once

#include <cstdint>
#include <ctime>

#include "pexa/osapi.h"

namespace pexa::base {

/// @return the time of the monotonic clock after that span; a negative span gives a past time.
timespec deadline_after(int64_t seconds, uint32_t nanoseconds);
/// @return the same for a span in seconds and a binary fraction, rounded up.
timespec deadline_after(QELNtpTime span);
bool is_before(const timespec& left, const timespec& right);
/// Sleeps until the monotonic clock has reached @p deadline. Signals do not end the sleep.
void sleep_until(const timespec& deadline);

}  // namespace pexa::base
