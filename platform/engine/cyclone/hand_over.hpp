/// @file hand_over.hpp
/// @brief The order in which Cyclone's threads come to a sample, told to the thread sanitizer.
///
/// Cyclone hands samples from thread to thread by reference counts, and keys by a table without
/// locks. Its library is not instrumented, so the sanitizer does not see the atomic operations
/// that order the accesses of our callbacks. In other builds all of this is nothing.
#pragma once

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#include <sanitizer/tsan_interface.h>
#define PEXA_HAS_THREAD_SANITIZER
#endif
#endif

namespace pexa::engine::cyclone {

/// What this thread has done with @p object comes before what another does after acquire().
inline void release([[maybe_unused]] const void* object) {
#ifdef PEXA_HAS_THREAD_SANITIZER
    __tsan_release(const_cast<void*>(object));
#endif
}

inline void acquire([[maybe_unused]] const void* object) {
#ifdef PEXA_HAS_THREAD_SANITIZER
    __tsan_acquire(const_cast<void*>(object));
#endif
}

}  // namespace pexa::engine::cyclone
