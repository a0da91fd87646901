/// @file waiting.hpp
/// @brief Operations whose purpose is to wait, and whose thread can be cancelled meanwhile.
#pragma once

#include <algorithm>
#include <chrono>

#include "platform/dds/qos/duration.hpp"
#include "platform/internal/cancellation.hpp"

namespace pexa::dds {

/// Waits in steps. The thread may be cancelled between two steps, and is not during a step, because
/// neither the engine's C code nor guarded() can be unwound. The steps become longer: a short wait
/// hears of its cancellation soon, and a long one costs a wake-up each second.
///
/// To be called by an exported operation itself, outside of guarded().
///
/// @param step waits for the duration that it is given. Its result TIMEOUT asks for another step.
/// It is also given what is no valid duration, to refuse it.
template <typename Step>
DDS_ReturnCode_t wait_in_steps(const DDS_Duration_t* timeout, Step step,
                               engine::Nanoseconds longest = nanoseconds_per_second) {
    using std::chrono::steady_clock;
    engine::Nanoseconds length = nanoseconds_per_second / 10;

    cancellation_point();
    if (timeout == nullptr || !is_valid(*timeout) || to_nanoseconds(*timeout) <= length) {
        return step(timeout);
    }
    const engine::Nanoseconds whole = to_nanoseconds(*timeout);
    engine::Nanoseconds left = whole;
    for (const auto begin = steady_clock::now();;) {
        const bool is_last = left <= length;
        const DDS_Duration_t duration =
            to_duration(std::max(std::min(left, length), engine::Nanoseconds{0}));
        const DDS_ReturnCode_t result = step(&duration);
        if (result != DDS_RETCODE_TIMEOUT || is_last) {
            return result;
        }
        cancellation_point();
        if (whole != engine::infinite) {
            left = whole - std::chrono::nanoseconds(steady_clock::now() - begin).count();
        }
        length = std::min(2 * length, longest);
    }
}

}  // namespace pexa::dds
