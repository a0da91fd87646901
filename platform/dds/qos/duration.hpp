/// @file duration.hpp
/// @brief Durations and times of the C interface as nanoseconds of the engine.
#pragma once

#include "pexa/base.h"
#include "platform/engine/values.hpp"

namespace pexa::dds {

inline constexpr engine::Nanoseconds nanoseconds_per_second = 1'000'000'000;

/// @return whether the duration is infinite, or not negative with nanoseconds below a second.
constexpr bool is_valid(const DDS_Duration_t& duration) {
    return duration.sec == DDS_DURATION_INFINITE_SEC ||
           (duration.sec >= 0 && duration.nanosec < nanoseconds_per_second);
}

/// Everything from the seconds of DDS_DURATION_INFINITE on is infinite.
constexpr engine::Nanoseconds to_nanoseconds(const DDS_Duration_t& duration) {
    return duration.sec == DDS_DURATION_INFINITE_SEC
               ? engine::infinite
               : duration.sec * nanoseconds_per_second + duration.nanosec;
}

/// @param time not negative; a time that the record cannot hold becomes infinite.
constexpr DDS_Duration_t to_duration(engine::Nanoseconds time) {
    if (time / nanoseconds_per_second >= DDS_DURATION_INFINITE_SEC) {
        return {DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC};
    }
    return {static_cast<DDS_Long>(time / nanoseconds_per_second),
            static_cast<DDS_UnsignedLong>(time % nanoseconds_per_second)};
}

}  // namespace pexa::dds
