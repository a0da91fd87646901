#include "platform/base/os/time.hpp"

#include <limits>

const DDS_Duration_t DDS_DURATION_INFINITE = {DDS_DURATION_INFINITE_SEC,
                                              DDS_DURATION_INFINITE_NSEC};
const DDS_Duration_t DDS_DURATION_ZERO = {0, 0};
const DDS_Time_t DDS_TIME_INVALID = {-1, 0xffffffffU};

namespace pexa::base {

DDS_Time_t to_time(QELNtpTime time) {
    // 10^9 / 2^32 = 2^29 / (2^61 / 10^9), where 2^61 / 10^9 is this number but for its fraction.
    constexpr uint64_t divisor = 2305843009;
    auto nanoseconds =
        static_cast<DDS_UnsignedLong>((static_cast<uint64_t>(time.frac) << 29U) / divisor);
    if (time.frac != 0 && time.frac != divisor) {
        ++nanoseconds;
    }
    if (nanoseconds >= nanoseconds_per_second && time.sec != std::numeric_limits<DDS_Long>::max()) {
        return {time.sec + 1, nanoseconds - nanoseconds_per_second};
    }
    return {time.sec, nanoseconds};
}

}  // namespace pexa::base

DDS_Time_t QELNtpTime_toTime(QELNtpTime time) {
    return pexa::base::to_time(time);
}
