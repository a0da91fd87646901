/// @file cancellation.hpp
/// @brief Where the cancellation of a thread may take effect.
///
/// A thread is cancelled by a forced unwinding of its stack. That may not meet a lock that no
/// object gives back, code that was written in C, or a function that is noexcept.
#pragma once

#include <pthread.h>

namespace pexa {

/// As long as an object lives, its thread is not cancelled. Objects nest.
class NoCancellation {
public:
    NoCancellation() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_); }
    NoCancellation(const NoCancellation&) = delete;
    NoCancellation& operator=(const NoCancellation&) = delete;
    ~NoCancellation() { pthread_setcancelstate(before_, &before_); }

private:
    int before_ = PTHREAD_CANCEL_ENABLE;
};

/// Ends the thread here if somebody has cancelled it. The caller holds nothing that an object does
/// not give back.
inline void cancellation_point() {
    pthread_testcancel();
}

}  // namespace pexa
