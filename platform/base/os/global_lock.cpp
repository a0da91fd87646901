#include "pexa/osapi.h"
#include "platform/base/os/call_marks.hpp"
#include "platform/base/os/deadline.hpp"
#include "platform/base/os/fork.hpp"
#include "platform/base/os/recursive_mutex.hpp"
#include "platform/internal/status.hpp"

namespace pexa::base {
namespace {

constexpr DDS_UnsignedLong patience_ns = 10'000'000;

// In a cache line of its own. Whatever else is there, threads that publish read it all the time,
// and each time the next logging call would have to fetch the line again.
struct alignas(64) GlobalMutex : RecursiveMutex {};
constinit GlobalMutex global_mutex;

/// @param abandon NULL, or a flag that ends the wait.
Status lock_unless(const DDS_Long* abandon) {
    // A thread that gets the lock at once waits for nobody, whatever the flag says.
    if (global_mutex.try_lock()) {
        return Status::ok;
    }
    if (device_call_depth == 0) {
        return global_mutex.lock_unless(abandon, nullptr);
    }
    const timespec deadline = deadline_after(0, patience_ns);
    return global_mutex.lock_unless(abandon, &deadline);
}

void leave_device_call() {
    if (device_call_depth > 0) {
        --device_call_depth;
    }
}

int to_code(Status result) {
    return result == Status::ok ? 0 : -1;
}

}  // namespace

void free_global_lock() {
    global_mutex.free_of_lost_owner();
}

}  // namespace pexa::base

int QELOsapi_global_lock(void) {
    return pexa::base::to_code(pexa::base::lock_unless(nullptr));
}

int QELOsapi_global_lockUnless(const DDS_Long* abandon) {
    return pexa::base::to_code(pexa::base::lock_unless(abandon));
}

int QELOsapi_global_unlock(void) {
    return pexa::base::to_code(pexa::base::global_mutex.unlock());
}

void QELOsapi_enterDeviceCall(void) {
    ++pexa::base::device_call_depth;
}

void QELOsapi_leaveDeviceCall(void) {
    pexa::base::leave_device_call();
}

QELBool QELOsapi_isInDeviceCall(void) {
    return pexa::base::device_call_depth > 0 ? 1 : 0;
}
