#include "core/recursive_mutex.hpp"

#include "core/futex.hpp"

namespace pexa::core {

void RecursiveMutex::lock() {
    // Without a deadline there is no other outcome.
    static_cast<void>(take(nullptr));
}

bool RecursiveMutex::try_lock() {
    if (!is_mine() && !take_when_free()) {
        return false;
    }
    ++depth_;
    return true;
}

bool RecursiveMutex::lock_until(const timespec& deadline) {
    return take(&deadline);
}

bool RecursiveMutex::unlock() {
    if (!is_mine()) {
        return false;
    }
    if (--depth_ > 0) {
        return true;
    }
    owner_.store(0, std::memory_order_relaxed);
    if (state_.exchange(free, std::memory_order_release) == taken_and_wanted) {
        wake_one(&state_);
    }
    return true;
}

bool RecursiveMutex::is_mine() const {
    return owner_.load(std::memory_order_relaxed) == pthread_self();
}

bool RecursiveMutex::take_when_free() {
    uint32_t expected = free;
    if (!state_.compare_exchange_strong(expected, taken, std::memory_order_acquire,
                                        std::memory_order_relaxed)) {
        return false;
    }
    owner_.store(pthread_self(), std::memory_order_relaxed);
    return true;
}

bool RecursiveMutex::take(const timespec* deadline) {
    if (try_lock()) {
        return true;
    }
    bool in_time = true;
    // Whoever has waited takes it as wanted, since others may be waiting still.
    while (state_.exchange(taken_and_wanted, std::memory_order_acquire) != free) {
        if (!in_time) {
            return false;
        }
        in_time = wait_while_equal(&state_, taken_and_wanted, deadline);
    }
    owner_.store(pthread_self(), std::memory_order_relaxed);
    ++depth_;
    return true;
}

}  // namespace pexa::core
