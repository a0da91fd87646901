#include "core/logging_lock.hpp"

#include <atomic>

#include "pexa/osapi.h"

namespace orvane::core {
namespace {

/// Number of living objects. There are two when a creation fails and destroys its parts.
DDS_Long changes_under_way = 0;

/// Tells a thread that found the lock taken that a change was the reason, even if it has ended
/// since.
std::atomic<DDS_UnsignedLong> changes_ended = 0;

}  // namespace

LifecycleChange::LifecycleChange() noexcept {
    QELOsapi_beginEngineUse();
    std::atomic_ref(changes_under_way).fetch_add(1);
}

LifecycleChange::~LifecycleChange() {
    changes_ended.fetch_add(1);
    std::atomic_ref(changes_under_way).fetch_sub(1);
    QELOsapi_endEngineUse();
}

bool LifecycleChange::is_under_way() noexcept {
    return std::atomic_ref(changes_under_way).load() != 0;
}

void LifecycleChange::forget_all() noexcept {
    std::atomic_ref(changes_under_way).store(0);
}

LoggingLock lock_for_logging() noexcept {
    const DDS_UnsignedLong ended_before = changes_ended.load();
    if (QELOsapi_global_lockUnless(&changes_under_way) == 0) {
        return LoggingLock::Held;
    }
    const bool abandoned = LifecycleChange::is_under_way() || changes_ended.load() != ended_before;
    return abandoned ? LoggingLock::Abandoned : LoggingLock::Refused;
}

}  // namespace orvane::core
