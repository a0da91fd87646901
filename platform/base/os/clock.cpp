#include <cstring>
#include <ctime>
#include <limits>

#include "pexa/osapi.h"
#include "platform/base/os/time.hpp"
#include "platform/internal/status.hpp"

struct QELSystemClock {
    clockid_t id;
};

namespace pexa::base {
namespace {

// Every clock is this one, which is never freed: a thread may still be reading a deleted clock.
constinit QELSystemClock wall_clock{CLOCK_REALTIME};

QELSystemClock* readable_clock() {
    timespec time{};
    return clock_gettime(wall_clock.id, &time) == 0 ? &wall_clock : nullptr;
}

Status read_clock(const QELSystemClock* clock, QELNtpTime* now) {
    if (clock == nullptr || now == nullptr) {
        return Status::bad_parameter;
    }
    timespec time{};
    if (clock_gettime(clock->id, &time) != 0 ||
        time.tv_sec > std::numeric_limits<DDS_Long>::max()) {
        return Status::error;
    }
    const QELNtpTime read = {
        static_cast<DDS_Long>(time.tv_sec),
        static_cast<DDS_UnsignedLong>((static_cast<uint64_t>(time.tv_nsec) << 32U) /
                                      nanoseconds_per_second)};
    // In one store: the caller reads both halves at once, and a processor delays a load that spans
    // two recent stores.
    std::memcpy(now, &read, sizeof read);
    return Status::ok;
}

}  // namespace
}  // namespace pexa::base

QELSystemClock* QELSystemClock_new(void) {
    return pexa::base::readable_clock();
}

void QELSystemClock_delete(QELSystemClock*) {}

QELBool QELSystemClock_getTime(QELSystemClock* clock, QELNtpTime* now) {
    return pexa::base::read_clock(clock, now) == pexa::Status::ok ? 1 : 0;
}
