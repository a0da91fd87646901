#include "platform/base/os/futex.hpp"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace pexa::base {

bool wait_while_equal(const void* address, uint32_t value, const timespec* deadline) {
    // The bitset form is the one that takes an absolute monotonic time.
    const long result = syscall(SYS_futex, address, FUTEX_WAIT_BITSET_PRIVATE, value, deadline,
                                nullptr, FUTEX_BITSET_MATCH_ANY);
    return result == 0 || errno != ETIMEDOUT;
}

void wake_one(const void* address) {
    syscall(SYS_futex, address, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

}  // namespace pexa::base
