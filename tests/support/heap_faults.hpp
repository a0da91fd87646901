#pragma once

#include <cstddef>

#include <gtest/gtest.h>

/// The middleware's heap as the tests see it: counts what is allocated and not yet freed, and fails
/// an allocation on demand. Single-threaded use only.
namespace heap_faults {

/// Blocks allocated and not yet freed.
long live_blocks();
/// Fails the allocation of that number from now on (1 is the next one), and no other.
void fail_allocation(int number);
/// @return whether the failure that was asked for has not happened yet, and calls it off.
bool was_out_of_reach();

/// Fails the 1st, 2nd, 3rd … allocation of @p attempt until it succeeds. The attempt returns
/// whether it succeeded; in either case nothing may stay allocated behind it, so it ends by undoing
/// what it made.
template <class Attempt>
void sweep(Attempt attempt) {
    constexpr int cap = 1000;
    for (int number = 1; number <= cap; ++number) {
        const long before = live_blocks();
        fail_allocation(number);
        const bool succeeded = attempt();
        const bool untouched = was_out_of_reach();
        ASSERT_EQ(live_blocks(), before) << "with allocation " << number << " failing";
        ASSERT_EQ(succeeded, untouched) << "with allocation " << number << " failing";
        if (succeeded) {
            ASSERT_GT(number, 1) << "nothing was allocated";
            return;
        }
    }
    FAIL() << "still failing at the cap";
}

}  // namespace heap_faults
