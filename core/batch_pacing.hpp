/// @file batch_pacing.hpp
/// @brief Pauses in which messages come together to a batch.
#pragma once

#include <cstdint>

namespace orvane::core {

/// Tells when the write thread has to pause. Without pauses, messages that come just as fast as
/// batches leave would have a batch each, and the thread would never rest.
class BatchPacing {
public:
    /// @return whether the batches, up to this one, have been small for so long that a pause is
    /// due.
    bool wants_pause_after(std::uint64_t messages) noexcept {
        constexpr std::uint64_t small = 2;
        constexpr int long_enough = 8;
        if (messages > small) {
            small_in_a_row_ = 0;
            return false;
        }
        small_in_a_row_ = (small_in_a_row_ + 1) % long_enough;
        return small_in_a_row_ == 0;
    }

private:
    int small_in_a_row_ = 0;
};

}  // namespace orvane::core
