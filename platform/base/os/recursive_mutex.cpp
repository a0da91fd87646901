#include "platform/base/os/recursive_mutex.hpp"

#include <algorithm>

#include "platform/base/os/deadline.hpp"

namespace pexa::base {

namespace {

// One or two microseconds on common processors. That is less than it takes to sleep and be woken,
// and more than a mutex is usually held.
constexpr int patience = 60;

// A sleep is the longest time that a thread waits too long. It grows with the wait, so that many
// threads that wait for long cost next to nothing.
constexpr uint32_t first_sleep_ns = 1'000'000;
constexpr uint32_t longest_sleep_ns = 256 * first_sleep_ns;

bool is_set(const int32_t* flag) {
    return flag != nullptr && __atomic_load_n(flag, __ATOMIC_ACQUIRE) != 0;
}

void pause_briefly() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("isb");
#endif
}

}  // namespace

Success RecursiveMutex::take_soon() {
    for (int attempt = 0; attempt < patience; ++attempt) {
        pause_briefly();
        if (state_.load(std::memory_order_relaxed) == free && take_when_free()) {
            ++depth_;
            return true;
        }
    }
    return false;
}

Status RecursiveMutex::wait(const timespec* deadline, const int32_t* abandon) {
    if (take_soon()) {
        return Status::ok;
    }
    bool is_last_look = false;
    uint32_t sleep_ns = first_sleep_ns;
    // A thread that has waited marks it as wanted, because other threads may be waiting still.
    while (state_.exchange(taken_and_wanted, std::memory_order_acquire) != free) {
        if (is_last_look || is_set(abandon)) {
            return Status::timeout;
        }
        timespec end = deadline_after(0, sleep_ns);
        const bool is_last_sleep = deadline != nullptr && !is_before(end, *deadline);
        if (is_last_sleep) {
            end = *deadline;
        }
        if (wait_while_equal(&state_, taken_and_wanted, &end)) {
            continue;
        }
        is_last_look = is_last_sleep;
        sleep_ns = std::min(2 * sleep_ns, longest_sleep_ns);
    }
    owner_.store(&this_thread, std::memory_order_relaxed);
    ++depth_;
    return Status::ok;
}

}  // namespace pexa::base
