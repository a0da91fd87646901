/// @file time.hpp
/// @brief Conversion of times.
#pragma once

#include "pexa/osapi.h"

namespace pexa::base {

inline constexpr DDS_UnsignedLong nanoseconds_per_second = 1'000'000'000;

/// @see QELNtpTime_toTime
DDS_Time_t to_time(QELNtpTime time);

}  // namespace pexa::base
