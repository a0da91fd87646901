#include "platform/base/os/deadline.hpp"

#include <cerrno>

#include "platform/base/os/time.hpp"

namespace pexa::base {

timespec deadline_after(int64_t seconds, uint32_t nanoseconds) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    const int64_t sum = deadline.tv_nsec + static_cast<int64_t>(nanoseconds);
    deadline.tv_sec += seconds + sum / nanoseconds_per_second;
    deadline.tv_nsec = sum % nanoseconds_per_second;
    return deadline;
}

timespec deadline_after(QELNtpTime span) {
    const DDS_Time_t time = to_time(span);
    return deadline_after(time.sec, time.nanosec);
}

bool is_before(const timespec& left, const timespec& right) {
    return left.tv_sec != right.tv_sec ? left.tv_sec < right.tv_sec : left.tv_nsec < right.tv_nsec;
}

void sleep_until(const timespec& deadline) {
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) == EINTR) {
    }
}

}  // namespace pexa::base
