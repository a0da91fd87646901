#include "platform/base/os/counting_semaphore.hpp"

#include "platform/base/os/deadline.hpp"
#include "platform/base/os/futex.hpp"

namespace pexa::base {

namespace {

// Each spell of a doze is twice as long as the one before. So a unit waits about as long as the
// pause before it at most, and a doze in vain wakes up five times. During the first spell the
// givers have the semaphore's cache line to themselves.
constexpr uint32_t first_spell_ns = 50'000;
constexpr uint32_t last_spell_ns = 16 * first_spell_ns;
constexpr uint32_t whole_doze_ns = 2 * last_spell_ns - first_spell_ns;

}  // namespace

Success CountingSemaphore::take_unit(uint64_t& state, uint64_t waiters, uint64_t mark) {
    while (units_of(state) > 0) {
        if (state_.compare_exchange_weak(state, ((state - waiters - 1) | mark) & ~dozing,
                                         std::memory_order_acquire, std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

Success CountingSemaphore::try_take() {
    uint64_t state = state_.load(std::memory_order_relaxed);
    return take_unit(state, 0, recently_taken);
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
    for (uint32_t spell = first_spell_ns; spell <= last_spell_ns; spell *= 2) {
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
        if (try_take()) {
            return true;
        }
    }
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
        if (take_unit(state, one_waiter, is_recent ? recently_taken : 0)) {
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
