#include "platform/base/os/counting_semaphore.hpp"

#include <algorithm>

#include "platform/base/os/deadline.hpp"
#include "platform/base/os/futex.hpp"

namespace pexa::base {

namespace {

// A unit waits for half a spell on average. A shorter one would cost more processor time and take
// the givers' cache line away more often. A doze in vain wakes up as often as it has spells.
constexpr uint32_t spell_ns = 80'000;
constexpr uint32_t whole_doze_ns = 20 * spell_ns;

// Units often come at regular times. So the first spell is three quarters of what the last doze
// took: it costs a regular unit nothing and spares most of the wake-ups.
uint32_t first_spell_after(uint32_t last_doze_ns) {
    return std::max(last_doze_ns / 4 * 3, spell_ns);
}

}  // namespace

uint32_t CountingSemaphore::take_units(uint64_t& state, uint32_t most, uint64_t waiters,
                                       uint64_t mark) {
    while (const uint32_t taken = std::min(units_of(state), most)) {
        if (state_.compare_exchange_weak(state, ((state - waiters - taken) | mark) & ~dozing,
                                         std::memory_order_acquire, std::memory_order_relaxed)) {
            return taken;
        }
    }
    return 0;
}

Success CountingSemaphore::try_take() {
    return try_take_up_to(1) == 1;
}

int32_t CountingSemaphore::try_take_up_to(int32_t most) {
    uint64_t state = state_.load(std::memory_order_relaxed);
    return static_cast<int32_t>(take_units(state, static_cast<uint32_t>(most), 0, recently_taken));
}

void CountingSemaphore::take() {
    if (!try_take() && !doze_and_take(nullptr)) {
        // Without a deadline it ends with a unit.
        static_cast<void>(wait_and_take(nullptr));
    }
}

Status CountingSemaphore::take_until(const timespec& deadline) {
    return try_take() || doze_and_take(&deadline) ? Status::ok : wait_and_take(&deadline);
}

Success CountingSemaphore::doze_and_take(const timespec* deadline) {
    uint64_t state = state_.load(std::memory_order_relaxed);
    if ((state & recently_taken) == 0) {
        return false;
    }
    uint64_t outlived = dozing | recently_taken;
    uint32_t slept_ns = 0;
    uint32_t spell = first_spell_after(last_doze_ns_.load(std::memory_order_relaxed));
    for (; slept_ns < whole_doze_ns; spell = spell_ns) {
        const timespec end = deadline_after(0, spell);
        if (deadline != nullptr && is_before(*deadline, end)) {
            outlived = dozing;
            break;
        }
        state = state_.fetch_or(dozing, std::memory_order_relaxed) | dozing;
        if (units_of(state) == 0) {
            // A signal may end it early: a shorter doze does no harm.
            static_cast<void>(wait_while_equal(marks_address(), marks_of(state), &end));
        }
        slept_ns += spell;
        // Noted before: another thread may free the semaphore as soon as the last unit is taken.
        last_doze_ns_.store(slept_ns, std::memory_order_relaxed);
        if (try_take()) {
            return true;
        }
    }
    last_doze_ns_.store(0, std::memory_order_relaxed);
    state_.fetch_and(~outlived, std::memory_order_relaxed);
    return false;
}

Status CountingSemaphore::wait_and_take(const timespec* deadline) {
    uint64_t state = state_.fetch_add(one_waiter, std::memory_order_relaxed) + one_waiter;
    // With units that come further apart than a doze lasts, each of them would begin a doze in
    // vain.
    const timespec end_of_recent = deadline_after(0, whole_doze_ns);
    bool in_time = true;
    while (true) {
        const bool is_recent = is_before(deadline_after(0, 0), end_of_recent);
        // One step takes the unit and ends the waiting: another thread may free the semaphore as
        // soon as the last unit is taken.
        if (take_units(state, 1, one_waiter, is_recent ? recently_taken : 0) == 1) {
            return Status::ok;
        }
        if (!in_time) {
            // Only if there is still no unit: the giver of a unit may have woken this thread.
            if (state_.compare_exchange_weak(state, state - one_waiter,
                                             std::memory_order_relaxed)) {
                return Status::timeout;
            }
            continue;
        }
        in_time = wait_while_equal(units_address(), 0, deadline);
        state = state_.load(std::memory_order_relaxed);
    }
}

}  // namespace pexa::base
