#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>

#include "platform/base/os/futex.hpp"
#include "platform/internal/status.hpp"
#include "platform/internal/success.hpp"

namespace pexa::base {

/// Units that threads give and take. Both operations make no system call as long as there is a unit
/// to take and no thread waits. Any thread may call any operation at any time. A thread that has
/// taken a unit may destroy the semaphore although the giver has not returned yet.
///
/// To wake a thread costs the giver many times as much as to give a unit. Units tend to come in
/// bursts, so a thread that wants a unit soon after another one was taken dozes first: it sleeps
/// for short spells and looks by itself. Givers do not wake a dozing thread until there are many
/// units. A thread that has no reason to doze, or has dozed in vain, is counted as waiting and is
/// woken.
class CountingSemaphore {
public:
    static constexpr int32_t maximum = std::numeric_limits<int32_t>::max();

    /// @param initial units at the start, 0 … maximum.
    /// @param many the number of units that ends a doze, 1 … maximum.
    CountingSemaphore(int32_t initial, int32_t many)
        : state_(static_cast<uint64_t>(initial)), many_(static_cast<uint32_t>(many)) {}

    /// Adds a unit if there are less than @p limit. The thread that takes the next unit sees all
    /// that was done before this call, whatever its result.
    /// @return ok, or out_of_resources with the count unchanged.
    Status give(int32_t limit = maximum) {
        // As soon as the unit is given, another thread may free the semaphore, so nothing of it is
        // read afterwards. To wake an address that is freed is harmless.
        const void* units = units_address();
        const void* marks = marks_address();
        const uint32_t many = many_;
        uint64_t state = state_.load(std::memory_order_relaxed);
        uint64_t given = 0;
        do {
            // An exchange also when nothing is added: the existing unit then stands for this one,
            // too, and the thread that takes it must see what was done before both.
            given = state;
            if (units_of(state) < static_cast<uint32_t>(limit)) {
                ++given;
                if (units_of(given) >= many) {
                    given &= ~dozing;
                }
            }
        } while (!state_.compare_exchange_weak(state, given, std::memory_order_release,
                                               std::memory_order_relaxed));
        if (given == state) {
            return Status::out_of_resources;
        }
        // Each unit that existed before has a waiting thread, which its giver wakes.
        if (waiters_of(state) > units_of(state)) {
            wake_one(units);
        }
        if (((state ^ given) & dozing) != 0) {
            wake_one(marks);
        }
        return Status::ok;
    }
    /// Takes a unit if there is one. @return whether it did.
    Success try_take();
    /// Takes as many units as there are, but no more than @p most. @return how many.
    int32_t try_take_up_to(int32_t most);
    /// Waits for a unit and takes it.
    void take();
    /// As take. @param deadline of the monotonic clock. @return ok, or timeout when it has passed.
    Status take_until(const timespec& deadline);

private:
    // The low half counts the units. The high half counts the waiting threads, except for its last
    // two bits. One of them says that units came in quick succession and no thread has dozed in
    // vain since. The other says that a thread dozes; it is cleared when a unit is taken or there
    // are many. So one atomic operation gives a unit and tells whether to wake a thread, and one
    // takes a unit and notes it. Neither side touches the semaphore after its operation, because it
    // may not exist any more. tests/model explores this step by step. Change it together with this
    // class.
    static constexpr uint64_t one_waiter = uint64_t{1} << 32U;
    static constexpr uint64_t dozing = uint64_t{1} << 62U;
    static constexpr uint64_t recently_taken = uint64_t{1} << 63U;

    static uint32_t units_of(uint64_t state) { return static_cast<uint32_t>(state); }
    static uint32_t waiters_of(uint64_t state) {
        return static_cast<uint32_t>((state & ~(recently_taken | dozing)) >> 32U);
    }
    static uint32_t marks_of(uint64_t state) { return static_cast<uint32_t>(state >> 32U); }
    // Waiting threads sleep on the units, dozing threads on the other half of the word.
    const void* units_address() const {
        constexpr size_t low_half = std::endian::native == std::endian::little ? 0 : 4;
        return reinterpret_cast<const char*>(&state_) + low_half;
    }
    const void* marks_address() const {
        constexpr size_t high_half = std::endian::native == std::endian::little ? 4 : 0;
        return reinterpret_cast<const char*>(&state_) + high_half;
    }
    /// Takes as many units as there are, but no more than @p most. @return how many.
    /// @param state the state that was last seen; updated
    /// @param waiters is subtracted together with the units
    /// @param mark recently_taken, or 0
    uint32_t take_units(uint64_t& state, uint32_t most, uint64_t waiters, uint64_t mark);
    /// Dozes, and takes a unit. @return whether it did. If not, the thread had better wait.
    Success doze_and_take(const timespec* deadline);
    Status wait_and_take(const timespec* deadline);

    std::atomic<uint64_t> state_;
    const uint32_t many_;
    // Written by takers only, and a guess.
    std::atomic<uint32_t> last_doze_ns_{0};
    static_assert(sizeof state_ == sizeof(uint64_t));
};

}  // namespace pexa::base
