#include "tests/support/failing_new.hpp"

#include <cstddef>
#include <new>
#include <utility>

namespace {

thread_local int countdown = 0;

bool fails_now() {
    return countdown > 0 && --countdown == 0;
}

}  // namespace

void failing_new::fail_allocation(int number) {
    countdown = number;
}

bool failing_new::was_out_of_reach() {
    return std::exchange(countdown, 0) > 0;
}

// Wrapped at link time rather than replaced: sanitizers bring their own.
extern "C" {

void* __real__Znwm(std::size_t size);
void* __real__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);

void* __wrap__Znwm(std::size_t size) {
    if (fails_now()) {
        throw std::bad_alloc();
    }
    return __real__Znwm(size);
}

void* __wrap__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) {
    return fails_now() ? nullptr : __real__ZnwmRKSt9nothrow_t(size, tag);
}
}
