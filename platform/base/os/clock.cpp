#include <cstring>
#include <ctime>
#include <limits>

#include "pexa/osapi.h"

struct QELSystemClock {
    clockid_t id;
};

namespace {

constexpr DDS_UnsignedLong nanoseconds_per_second = 1'000'000'000;
constexpr DDS_Long last_second = std::numeric_limits<DDS_Long>::max();

// 10^9 / 2^32 = 2^29 / (2^61 / 10^9), where 2^61 / 10^9 is this number but for its fraction.
constexpr uint64_t divisor = 2305843009;

// Every clock is this one, which is never freed: a thread may still be reading a deleted clock.
constinit QELSystemClock wall_clock{CLOCK_REALTIME};

}  // namespace

DDS_Time_t QELNtpTime_toTime(QELNtpTime time) {
    auto nanoseconds =
        static_cast<DDS_UnsignedLong>((static_cast<uint64_t>(time.frac) << 29U) / divisor);
    if (time.frac != 0 && time.frac != divisor) {
        ++nanoseconds;
    }
    if (nanoseconds >= nanoseconds_per_second && time.sec != last_second) {
        return {time.sec + 1, nanoseconds - nanoseconds_per_second};
    }
    return {time.sec, nanoseconds};
}

QELSystemClock* QELSystemClock_new(void) {
    timespec time{};
    return clock_gettime(wall_clock.id, &time) == 0 ? &wall_clock : nullptr;
}

void QELSystemClock_delete(QELSystemClock*) {}

QELBool QELSystemClock_getTime(QELSystemClock* clock, QELNtpTime* now) {
    timespec time{};
    if (clock == nullptr || now == nullptr || clock_gettime(clock->id, &time) != 0 ||
        time.tv_sec > last_second) {
        return 0;
    }
    const QELNtpTime read = {
        static_cast<DDS_Long>(time.tv_sec),
        static_cast<DDS_UnsignedLong>((static_cast<uint64_t>(time.tv_nsec) << 32U) /
                                      nanoseconds_per_second)};
    // In one store, because the caller goes on with the two halves as one: a processor makes a load
    // wait that spans two recent stores.
    std::memcpy(now, &read, sizeof read);
    return 1;
}
