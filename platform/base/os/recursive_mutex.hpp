#pragma once

#include <atomic>
#include <cstdint>
#include <ctime>

#include "platform/base/os/futex.hpp"
#include "platform/internal/status.hpp"
#include "platform/internal/success.hpp"

namespace pexa::base {

/// A recursive mutex: its owner may lock it again, and unlocks it as often. Makes no system call as
/// long as no thread waits. Needs no destruction, so a mutex with static lifetime outlasts every
/// thread.
///
/// Unlocking is a plain store, because atomic read-modify-write instructions are a good part of the
/// cost of a logging call. The store overwrites the mark of a thread that goes to sleep at that
/// very moment. Such a thread sleeps for a millisecond too long at most, or for as long as it has
/// waited already, because sleeping threads look again that often.
///
/// Made of atomics because the thread sanitizer does not follow a POSIX mutex that is locked with a
/// monotonic deadline.
class RecursiveMutex {
public:
    constexpr RecursiveMutex() = default;

    /// Waits for ever.
    void lock() {
        if (!try_lock()) {
            // Without a deadline it ends with the lock held.
            static_cast<void>(wait(nullptr, nullptr));
        }
    }
    /// @return whether the calling thread holds it now.
    Success try_lock() {
        // The more likely case first. It also fetches the cache line for writing at once.
        if (!take_when_free() && !is_mine()) {
            return false;
        }
        ++depth_;
        return true;
    }
    /// @param deadline of the monotonic clock. @return ok, or timeout when it has passed.
    Status lock_until(const timespec& deadline) { return lock_unless(nullptr, &deadline); }
    /// @param abandon NULL, or a flag that ends the wait when it is not 0. It is read before each
    /// sleep of the thread.
    /// @param deadline NULL, or of the monotonic clock.
    /// @return ok, or timeout when the flag is set or the deadline has passed.
    Status lock_unless(const int32_t* abandon, const timespec* deadline) {
        return try_lock() ? Status::ok : wait(deadline, abandon);
    }
    /// @return ok, or precondition_not_met when the calling thread does not hold the mutex.
    Status unlock() {
        if (!is_mine()) {
            return Status::precondition_not_met;
        }
        if (--depth_ > 0) {
            return Status::ok;
        }
        owner_.store(nullptr, std::memory_order_relaxed);
        const bool is_wanted = state_.load(std::memory_order_relaxed) == taken_and_wanted;
        // After the store another thread may have locked the mutex and freed its memory.
        const void* address = &state_;
        state_.store(free, std::memory_order_release);
        if (is_wanted) {
            wake_one(address);
        }
        return Status::ok;
    }

    /// In a child process that has just been forked: frees the mutex unless the calling thread
    /// holds it. Its owner does not exist there.
    void free_of_lost_owner() {
        if (!is_mine()) {
            owner_.store(nullptr, std::memory_order_relaxed);
            depth_ = 0;
            state_.store(free, std::memory_order_relaxed);
        }
    }

private:
    enum State : uint32_t { free, taken, taken_and_wanted };

    bool is_mine() const { return owner_.load(std::memory_order_relaxed) == &this_thread; }
    Success take_when_free() {
        uint32_t expected = free;
        if (!state_.compare_exchange_strong(expected, taken, std::memory_order_acquire,
                                            std::memory_order_relaxed)) {
            return false;
        }
        owner_.store(&this_thread, std::memory_order_relaxed);
        return true;
    }
    /// Tries again for a moment, which costs less than to sleep and be woken.
    Success take_soon();
    Status wait(const timespec* deadline, const int32_t* abandon);

    std::atomic<uint32_t> state_{free};
    // Each thread has its own at an address of its own, which identifies the thread without a call.
    [[gnu::tls_model("initial-exec")]] static inline constinit thread_local char this_thread = 0;

    // Equals the address of a thread's own variable only if that thread has stored it. So the
    // answer to "is it mine" is right whatever other threads store meanwhile, and no order is
    // needed.
    std::atomic<const char*> owner_{nullptr};
    uint32_t depth_ = 0;
};

}  // namespace pexa::base
