#include "core/counting_semaphore.hpp"

#include <bit>

#include "core/futex.hpp"

namespace pexa::core {

namespace {

static_assert(sizeof(std::atomic<uint64_t>) == sizeof(uint64_t));

uint32_t units_of(uint64_t state) {
    return static_cast<uint32_t>(state);
}

}  // namespace

const void* CountingSemaphore::units_address() const {
    constexpr size_t low_half = std::endian::native == std::endian::little ? 0 : 4;
    return reinterpret_cast<const char*>(&state_) + low_half;
}

bool CountingSemaphore::give(int32_t limit) {
    // Once the unit is out, *this may be gone: nothing of it is read afterwards, and waking an
    // address that has been freed at worst wakes somebody for nothing.
    const void* address = units_address();
    uint64_t state = state_.load(std::memory_order_relaxed);
    do {
        if (units_of(state) >= static_cast<uint32_t>(limit)) {
            return false;
        }
    } while (!state_.compare_exchange_weak(state, state + 1, std::memory_order_release,
                                           std::memory_order_relaxed));
    if (state >= one_waiter) {
        wake_one(address);
    }
    return true;
}

bool CountingSemaphore::try_take() {
    uint64_t state = state_.load(std::memory_order_relaxed);
    while (units_of(state) > 0) {
        if (state_.compare_exchange_weak(state, state - 1, std::memory_order_acquire,
                                         std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

void CountingSemaphore::take() {
    // Without a deadline there is no other outcome.
    static_cast<void>(try_take() || wait_and_take(nullptr));
}

bool CountingSemaphore::take_until(const timespec& deadline) {
    return try_take() || wait_and_take(&deadline);
}

bool CountingSemaphore::wait_and_take(const timespec* deadline) {
    uint64_t state = state_.fetch_add(one_waiter, std::memory_order_relaxed) + one_waiter;
    bool in_time = true;
    while (true) {
        if (units_of(state) > 0) {
            // Taking the unit and leaving the waiters is one step, for the sake of whoever frees
            // the semaphore as soon as the last unit is taken.
            if (state_.compare_exchange_weak(state, state - one_waiter - 1,
                                             std::memory_order_acquire,
                                             std::memory_order_relaxed)) {
                return true;
            }
            continue;
        }
        if (!in_time) {
            // Only while there still is no unit: the giver of one may have woken this thread.
            if (state_.compare_exchange_weak(state, state - one_waiter,
                                             std::memory_order_relaxed)) {
                return false;
            }
            continue;
        }
        in_time = wait_while_equal(units_address(), 0, deadline);
        state = state_.load(std::memory_order_relaxed);
    }
}

}  // namespace pexa::core
