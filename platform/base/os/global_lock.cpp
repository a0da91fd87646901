#include "pexa/osapi.h"
#include "platform/base/os/deadline.hpp"
#include "platform/base/os/recursive_mutex.hpp"

namespace {

constexpr DDS_UnsignedLong patience_ns = 10'000'000;

constinit pexa::base::RecursiveMutex global_mutex;
[[gnu::tls_model("initial-exec")]] constinit thread_local unsigned device_call_depth = 0;

bool lock_soon() {
    return global_mutex.lock_until(pexa::base::deadline_after(0, patience_ns));
}

bool lock() {
    if (device_call_depth > 0) {
        return lock_soon();
    }
    global_mutex.lock();
    return true;
}

// The lock is tried before the flag is looked at: whoever can have it at once waits for nobody.
bool lock_unless(const DDS_Long* abandon) {
    if (global_mutex.try_lock()) {
        return true;
    }
    while (__atomic_load_n(abandon, __ATOMIC_ACQUIRE) == 0) {
        if (lock_soon()) {
            return true;
        }
        if (device_call_depth > 0) {
            return false;
        }
    }
    return false;
}

}  // namespace

int QELOsapi_global_lock(void) {
    return lock() ? 0 : -1;
}

int QELOsapi_global_lockUnless(const DDS_Long* abandon) {
    const bool locked = abandon == nullptr ? lock() : lock_unless(abandon);
    return locked ? 0 : -1;
}

int QELOsapi_global_unlock(void) {
    return global_mutex.unlock() ? 0 : -1;
}

void QELOsapi_enterDeviceCall(void) {
    ++device_call_depth;
}

void QELOsapi_leaveDeviceCall(void) {
    if (device_call_depth > 0) {
        --device_call_depth;
    }
}

QELBool QELOsapi_isInDeviceCall(void) {
    return device_call_depth > 0 ? 1 : 0;
}
