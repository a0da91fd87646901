#pragma once

#include <atomic>
#include <cstdint>
#include <ctime>

#include "platform/base/os/futex.hpp"

namespace pexa::base {

/// Mutual exclusion that its owner may take again; it must be given back as often. Stays out of
/// the kernel as long as nobody waits. Needs no destruction, so that an object with static lifetime
/// outlasts every thread.
///
/// Releasing is a plain store, because locked instructions, of which a logging call would have two
/// more, are a good part of its cost. It overwrites the mark of a thread that goes to sleep at that
/// very moment; such a thread sleeps in vain for a millisecond at most, because sleepers look again
/// that often.
///
/// Made of atomics because a monotonic deadline is a thing that the thread sanitizer does not
/// follow in POSIX mutexes.
class RecursiveMutex {
public:
    constexpr RecursiveMutex() = default;

    /// Waits for ever.
    void lock() {
        if (!try_lock()) {
            // Without a deadline there is no other outcome.
            static_cast<void>(wait(nullptr));
        }
    }
    /// @return false when somebody else holds it.
    [[nodiscard]] bool try_lock() {
        // The more likely case first, which also fetches the cache line for writing at once.
        if (!take_when_free() && !is_mine()) {
            return false;
        }
        ++depth_;
        return true;
    }
    /// @param deadline monotonic. @return false when it has passed.
    [[nodiscard]] bool lock_until(const timespec& deadline) {
        return try_lock() || wait(&deadline);
    }
    /// @return false when the calling thread does not hold the mutex.
    [[nodiscard]] bool unlock() {
        if (!is_mine()) {
            return false;
        }
        if (--depth_ > 0) {
            return true;
        }
        owner_.store(nullptr, std::memory_order_relaxed);
        const bool is_wanted = state_.load(std::memory_order_relaxed) == taken_and_wanted;
        // After the store somebody else may have taken the mutex and freed its memory.
        const void* address = &state_;
        state_.store(free, std::memory_order_release);
        if (is_wanted) {
            wake_one(address);
        }
        return true;
    }

private:
    enum State : uint32_t { free, taken, taken_and_wanted };

    [[nodiscard]] bool is_mine() const {
        return owner_.load(std::memory_order_relaxed) == &this_thread;
    }
    [[nodiscard]] bool take_when_free() {
        uint32_t expected = free;
        if (!state_.compare_exchange_strong(expected, taken, std::memory_order_acquire,
                                            std::memory_order_relaxed)) {
            return false;
        }
        owner_.store(&this_thread, std::memory_order_relaxed);
        return true;
    }
    /// Looks again for a moment, because waking a sleeper costs both sides more.
    [[nodiscard]] bool take_soon();
    [[nodiscard]] bool wait(const timespec* deadline);

    std::atomic<uint32_t> state_{free};
    // Something of every thread, whose address tells the threads apart without a call.
    [[gnu::tls_model("initial-exec")]] static inline constinit thread_local char this_thread = 0;

    // Names the calling thread only if that thread has stored it, whatever the others are storing
    // meanwhile; nothing is published by it.
    std::atomic<const char*> owner_{nullptr};
    uint32_t depth_ = 0;
};

}  // namespace pexa::base
