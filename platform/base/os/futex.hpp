#pragma once

#include <cstdint>
#include <ctime>

namespace pexa::base {

/// Sleeps in the kernel while the word at @p address has that value, or for no reason.
/// @param deadline monotonic; NULL waits for ever. @return false when it has passed.
[[nodiscard]] bool wait_while_equal(const void* address, uint32_t value, const timespec* deadline);
/// Wakes one thread that sleeps on that word, which may have ceased to exist meanwhile.
void wake_one(const void* address);

}  // namespace pexa::base
