#pragma once

#include <atomic>
#include <cstdint>
#include <ctime>
#include <limits>

namespace pexa::core {

/// Units that threads give and take. Both operations stay out of the kernel as long as there is
/// a unit to take and nobody waits. Any thread may call anything at any time; a thread that has
/// taken a unit may destroy the semaphore although the giver has not returned yet.
class CountingSemaphore {
public:
    static constexpr int32_t maximum = std::numeric_limits<int32_t>::max();

    /// @param initial units at the start, 0 … maximum.
    explicit CountingSemaphore(int32_t initial) : state_(static_cast<uint64_t>(initial)) {}

    /// Adds a unit if there are less than @p limit. @return false with the count unchanged.
    [[nodiscard]] bool give(int32_t limit = maximum);
    /// Takes a unit if there is one.
    [[nodiscard]] bool try_take();
    /// Waits for a unit and takes it.
    void take();
    /// As take. @param deadline monotonic. @return false when it has passed without a unit.
    [[nodiscard]] bool take_until(const timespec& deadline);

private:
    // The units are the low half and the waiting threads the high half: one atomic operation gives
    // a unit and learns whether to wake somebody, so a giver touches nothing after its unit can
    // have been taken.
    static constexpr uint64_t one_waiter = uint64_t{1} << 32U;

    [[nodiscard]] const void* units_address() const;
    [[nodiscard]] bool wait_and_take(const timespec* deadline);

    std::atomic<uint64_t> state_;
};

}  // namespace pexa::core
