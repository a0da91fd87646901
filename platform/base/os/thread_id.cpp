#include <sys/syscall.h>
#include <unistd.h>

#include "pexa/osapi.h"
#include "platform/base/os/fork.hpp"

namespace pexa::base {
namespace {

// Every logging call asks for the id, and the kernel's answer costs more than the rest of the call.
[[gnu::tls_model("initial-exec")]] constinit thread_local DDS_UnsignedLong known_id = 0;

DDS_UnsignedLong thread_id() {
    if (known_id == 0) {
        known_id = static_cast<DDS_UnsignedLong>(syscall(SYS_gettid));
    }
    return known_id;
}

}  // namespace

void forget_thread_id() {
    known_id = 0;
}

}  // namespace pexa::base

DDS_UnsignedLong QELOsapiThread_getCurrentThreadID(void) {
    return pexa::base::thread_id();
}
