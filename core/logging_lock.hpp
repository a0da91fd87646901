#pragma once

#include "pexa/base.h"

namespace orvane::core {

/**
 * A creation or destruction of the instance, for as long as the object lives. The thread holds the
 * global lock.
 *
 * Making and deleting entities may wait for an application's listener that the engine runs on a
 * thread of its own, or on the write thread. When that listener logs, it would wait for the lock
 * that this thread holds, and neither would ever go on. So logging calls give up while an object
 * lives; nothing is lost by it, as there is no instance that would take their messages.
 *
 * A change counts as a use of the engine.
 */
class LifecycleChange {
public:
    LifecycleChange() noexcept;
    ~LifecycleChange();
    LifecycleChange(const LifecycleChange&) = delete;
    LifecycleChange& operator=(const LifecycleChange&) = delete;

    /**
     * With the global lock held: whether an object lives. It is then this thread's, and the caller
     * a listener that the change itself has called.
     */
    static bool is_under_way() noexcept;

    /// In a child process that has just been forked: the thread of the change does not exist there.
    static void forget_all() noexcept;
};

enum class LoggingLock {
    Held,
    /// Given up because of a LifecycleChange.
    Abandoned,
    Refused
};

/// Takes the global lock for a logging call.
LoggingLock lock_for_logging() noexcept;

}  // namespace orvane::core
