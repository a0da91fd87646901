#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>

#include "platform/base/os/futex.hpp"

namespace pexa::base {

/// Units that threads give and take. Both operations stay out of the kernel as long as there is
/// a unit to take and nobody waits. Any thread may call anything at any time; a thread that has
/// taken a unit may destroy the semaphore although the giver has not returned yet.
///
/// A system call that wakes a sleeper costs its giver many times what giving a unit does. Units
/// tend to come in bursts, so whoever wants a unit soon after one was taken first dozes: it sleeps
/// for short spells and looks by itself. Givers spare a thread that dozes until there are many
/// units. One that has no reason to doze, or has dozed in vain, is counted as waiting and has to be
/// woken.
class CountingSemaphore {
public:
    static constexpr int32_t maximum = std::numeric_limits<int32_t>::max();

    /// @param initial units at the start, 0 … maximum.
    /// @param many units that put an end to a doze, 1 … maximum.
    CountingSemaphore(int32_t initial, int32_t many)
        : state_(static_cast<uint64_t>(initial)), many_(static_cast<uint32_t>(many)) {}

    /// Adds a unit if there are less than @p limit. @return false with the count unchanged; also
    /// then, whoever takes the next unit sees what was done before this call.
    [[nodiscard]] bool give(int32_t limit = maximum) {
        // Once the unit is out, *this may be gone: nothing of it is read afterwards, and waking an
        // address that has been freed at worst wakes somebody for nothing.
        const void* units = units_address();
        const void* marks = marks_address();
        const uint32_t many = many_;
        uint64_t state = state_.load(std::memory_order_relaxed);
        uint64_t given = 0;
        do {
            // An exchange also when nothing is added: the unit that is there then stands for this
            // one too, and whoever takes it must see what was done before either.
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
            return false;
        }
        // The units that were there have a waiter each, whom their givers wake.
        if (waiters_of(state) > units_of(state)) {
            wake_one(units);
        }
        if (((state ^ given) & dozing) != 0) {
            wake_one(marks);
        }
        return true;
    }
    /// Takes a unit if there is one.
    [[nodiscard]] bool try_take();
    /// Waits for a unit and takes it.
    void take();
    /// As take. @param deadline monotonic. @return false when it has passed without a unit.
    [[nodiscard]] bool take_until(const timespec& deadline);

private:
    // The units are the low half and the waiting threads the high half, but for its last two bits.
    // One says that units have come in quick succession since a thread has dozed in vain; the other
    // that a thread dozes, until a unit is taken or there are many. So one atomic operation gives a
    // unit and learns whether to wake somebody, or takes one and notes it: neither side touches
    // anything after its operation, when the semaphore may be gone.
    // tests/model explores this step by step; a change here belongs there as well.
    static constexpr uint64_t one_waiter = uint64_t{1} << 32U;
    static constexpr uint64_t dozing = uint64_t{1} << 62U;
    static constexpr uint64_t recently_taken = uint64_t{1} << 63U;

    [[nodiscard]] static uint32_t units_of(uint64_t state) { return static_cast<uint32_t>(state); }
    [[nodiscard]] static uint32_t waiters_of(uint64_t state) {
        return static_cast<uint32_t>((state & ~(recently_taken | dozing)) >> 32U);
    }
    [[nodiscard]] static uint32_t marks_of(uint64_t state) {
        return static_cast<uint32_t>(state >> 32U);
    }
    // Threads that wait sleep on the units, threads that doze on the other half of the word.
    [[nodiscard]] const void* units_address() const {
        constexpr size_t low_half = std::endian::native == std::endian::little ? 0 : 4;
        return reinterpret_cast<const char*>(&state_) + low_half;
    }
    [[nodiscard]] const void* marks_address() const {
        constexpr size_t high_half = std::endian::native == std::endian::little ? 4 : 0;
        return reinterpret_cast<const char*>(&state_) + high_half;
    }
    /// @param state what was seen last, kept up to date; without units when the result is false
    /// @param waiters is counted off together with the unit
    /// @param mark recently_taken, or nothing
    [[nodiscard]] bool take_unit(uint64_t& state, uint64_t waiters, uint64_t mark);
    /// @return false when there was no unit for so long that it is better to be woken.
    [[nodiscard]] bool doze_and_take(const timespec* deadline);
    [[nodiscard]] bool wait_and_take(const timespec* deadline);

    std::atomic<uint64_t> state_;
    const uint32_t many_;
    static_assert(sizeof state_ == sizeof(uint64_t));
};

}  // namespace pexa::base
