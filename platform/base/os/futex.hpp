#pragma once

#include <cstdint>
#include <ctime>

namespace pexa::base {

/// Sleeps in the kernel while the word at @p address has that value. May end early for no reason.
/// @param deadline of the monotonic clock; NULL waits for ever.
/// @return whether the deadline has not passed.
bool wait_while_equal(const void* address, uint32_t value, const timespec* deadline);
/// Wakes one thread that sleeps on that word. The word need not exist any more.
void wake_one(const void* address);

}  // namespace pexa::base
