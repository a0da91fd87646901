/// @file time.hpp
/// @brief Conversion of times.
#pragma once

#include "pexa/osapi.h"

namespace pexa::base {

/// @see QELNtpTime_toTime
DDS_Time_t to_time(QELNtpTime time);

}  // namespace pexa::base
