#include "core/recursive_mutex.hpp"

namespace pexa::core {

namespace {

// On common processors a microsecond or two: less than it takes to be put to sleep and woken, more
// than mutexes are held for, as a rule.
constexpr int patience = 60;

void pause_briefly() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("isb");
#endif
}

}  // namespace

bool RecursiveMutex::take_soon() {
    for (int attempt = 0; attempt < patience; ++attempt) {
        pause_briefly();
        if (state_.load(std::memory_order_relaxed) == free && take_when_free()) {
            ++depth_;
            return true;
        }
    }
    return false;
}

bool RecursiveMutex::wait(const timespec* deadline) {
    if (take_soon()) {
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
    owner_.store(&this_thread, std::memory_order_relaxed);
    ++depth_;
    return true;
}

}  // namespace pexa::core
