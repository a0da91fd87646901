#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "pexa/osapi.h"

namespace pexa::base {
namespace {

// Every logging call asks for the id, and the kernel's answer costs more than the rest of the call.
[[gnu::tls_model("initial-exec")]] constinit thread_local DDS_UnsignedLong known_id = 0;

// A child process continues with a copy of this memory, but its thread has another id.
void forget_id() {
    known_id = 0;
}

DDS_UnsignedLong thread_id() {
    if (known_id == 0) {
        static const int registered = pthread_atfork(nullptr, nullptr, forget_id);
        const auto id = static_cast<DDS_UnsignedLong>(syscall(SYS_gettid));
        if (registered != 0) {
            return id;
        }
        known_id = id;
    }
    return known_id;
}

}  // namespace
}  // namespace pexa::base

DDS_UnsignedLong QELOsapiThread_getCurrentThreadID(void) {
    return pexa::base::thread_id();
}
