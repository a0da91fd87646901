#pragma once

#include <pthread.h>

#include <atomic>
#include <cstdint>
#include <ctime>

namespace pexa::core {

/// Mutual exclusion that its owner may take again; it must be given back as often. Stays out of
/// the kernel as long as nobody waits. Needs no destruction, so that an object with static lifetime
/// outlasts every thread.
///
/// Made of atomics because a monotonic deadline is a thing that the thread sanitizer does not
/// follow in POSIX mutexes.
class RecursiveMutex {
public:
    constexpr RecursiveMutex() = default;

    /// Waits for ever.
    void lock();
    /// @return false when somebody else holds it.
    [[nodiscard]] bool try_lock();
    /// @param deadline monotonic. @return false when it has passed.
    [[nodiscard]] bool lock_until(const timespec& deadline);
    /// @return false when the calling thread does not hold the mutex.
    [[nodiscard]] bool unlock();

private:
    enum State : uint32_t { free, taken, taken_and_wanted };

    [[nodiscard]] bool is_mine() const;
    [[nodiscard]] bool take(const timespec* deadline);
    [[nodiscard]] bool take_when_free();

    std::atomic<uint32_t> state_{free};
    // Equals the calling thread's own id only if that thread has stored it, whatever the others
    // are storing meanwhile; nothing is published by it.
    std::atomic<pthread_t> owner_{0};
    uint32_t depth_ = 0;
};

}  // namespace pexa::core
