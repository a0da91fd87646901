#include "pexa/osapi.h"
#include "platform/base/memory/heap_object.hpp"
#include "platform/base/os/counting_semaphore.hpp"
#include "platform/base/os/deadline.hpp"
#include "platform/base/os/recursive_mutex.hpp"

// The kind decides which of the two is used. The other one costs a few bytes. Threads on several
// processors write a semaphore, so it shares its cache line with nothing.
struct alignas(64) QELOsapiSemaphore {
    QELOsapiSemaphore(QELOsapiSemaphoreKind its_kind, DDS_Long units, DDS_Long many)
        : kind(its_kind), counter(units, many) {}

    bool is_mutex() const { return kind == QEL_OSAPI_SEMAPHORE_KIND_MUTEX; }

    QELOsapiSemaphoreKind kind;
    pexa::base::CountingSemaphore counter;
    pexa::base::RecursiveMutex mutex;
};

namespace pexa::base {
namespace {

// The most units of a kind. A mutex has none.
DDS_Long most_units(QELOsapiSemaphoreKind kind) {
    switch (kind) {
        case QEL_OSAPI_SEMAPHORE_KIND_COUNTING:
            return CountingSemaphore::maximum;
        case QEL_OSAPI_SEMAPHORE_KIND_BINARY:
            return 1;
        default:
            return 0;
    }
}

bool is_known(QELOsapiSemaphoreKind kind) {
    return kind == QEL_OSAPI_SEMAPHORE_KIND_MUTEX || most_units(kind) > 0;
}

QELOsapiSemaphore* new_semaphore(QELOsapiSemaphoreKind kind,
                                 const QELOsapiSemaphoreProperty* property) {
    const bool has_units = property != nullptr && kind != QEL_OSAPI_SEMAPHORE_KIND_MUTEX;
    const DDS_Long initial = has_units ? property->initialCount : 0;
    const DDS_Long many =
        has_units && property->wakeCount != 0 ? property->wakeCount : CountingSemaphore::maximum;
    if (!is_known(kind) || initial < 0 || initial > most_units(kind) || many < 0) {
        return nullptr;
    }
    return heap_new<QELOsapiSemaphore>(kind, initial, many);
}

Status take_at_once(QELOsapiSemaphore& semaphore) {
    const bool taken =
        semaphore.is_mutex() ? semaphore.mutex.try_lock() : semaphore.counter.try_take();
    return taken ? Status::ok : Status::timeout;
}

Status take_until(QELOsapiSemaphore& semaphore, const timespec& deadline) {
    return semaphore.is_mutex() ? semaphore.mutex.lock_until(deadline)
                                : semaphore.counter.take_until(deadline);
}

Status wait_for_ever(QELOsapiSemaphore& semaphore) {
    if (semaphore.is_mutex()) {
        semaphore.mutex.lock();
    } else {
        semaphore.counter.take();
    }
    return Status::ok;
}

Status take(QELOsapiSemaphore* semaphore, const QELNtpTime* timeout) {
    if (semaphore == nullptr) {
        return Status::bad_parameter;
    }
    if (timeout == nullptr) {
        return wait_for_ever(*semaphore);
    }
    // The clock is read only if the thread has to wait.
    const Status result = take_at_once(*semaphore);
    const bool waits = timeout->sec > 0 || (timeout->sec == 0 && timeout->frac != 0);
    return result == Status::timeout && waits ? take_until(*semaphore, deadline_after(*timeout))
                                              : result;
}

Status give(QELOsapiSemaphore* semaphore) {
    if (semaphore == nullptr) {
        return Status::bad_parameter;
    }
    if (semaphore->is_mutex()) {
        return semaphore->mutex.unlock();
    }
    // Read before the unit is given: its taker may free the semaphore.
    const QELOsapiSemaphoreKind kind = semaphore->kind;
    const Status result = semaphore->counter.give(most_units(kind));
    // A binary semaphore that is set already stays set.
    return kind == QEL_OSAPI_SEMAPHORE_KIND_BINARY ? Status::ok : result;
}

Status give_if_empty(QELOsapiSemaphore* semaphore) {
    if (semaphore == nullptr || semaphore->kind != QEL_OSAPI_SEMAPHORE_KIND_COUNTING) {
        return Status::bad_parameter;
    }
    // Refused when there is a unit.
    static_cast<void>(semaphore->counter.give(1));
    return Status::ok;
}

DDS_Long take_up_to(QELOsapiSemaphore* semaphore, DDS_Long most) {
    if (semaphore == nullptr || semaphore->kind != QEL_OSAPI_SEMAPHORE_KIND_COUNTING || most < 0) {
        return 0;
    }
    return semaphore->counter.try_take_up_to(most);
}

QELOsapiSemaphoreStatus to_semaphore_status(Status result) {
    if (result == Status::timeout) {
        return QEL_OSAPI_SEMAPHORE_STATUS_TIMEOUT;
    }
    return result == Status::ok ? QEL_OSAPI_SEMAPHORE_STATUS_OK : QEL_OSAPI_SEMAPHORE_STATUS_ERROR;
}

}  // namespace
}  // namespace pexa::base

QELOsapiSemaphore* QELOsapiSemaphore_new(QELOsapiSemaphoreKind kind,
                                         const QELOsapiSemaphoreProperty* property) {
    return pexa::base::new_semaphore(kind, property);
}

void QELOsapiSemaphore_delete(QELOsapiSemaphore* semaphore) {
    pexa::base::heap_delete(semaphore);
}

QELOsapiSemaphoreStatus QELOsapiSemaphore_take(QELOsapiSemaphore* semaphore,
                                               const QELNtpTime* timeout) {
    return pexa::base::to_semaphore_status(pexa::base::take(semaphore, timeout));
}

DDS_Long QELOsapiSemaphore_takeUpTo(QELOsapiSemaphore* semaphore, DDS_Long most) {
    return pexa::base::take_up_to(semaphore, most);
}

QELOsapiSemaphoreStatus QELOsapiSemaphore_give(QELOsapiSemaphore* semaphore) {
    return pexa::base::to_semaphore_status(pexa::base::give(semaphore));
}

QELOsapiSemaphoreStatus QELOsapiSemaphore_giveIfEmpty(QELOsapiSemaphore* semaphore) {
    return pexa::base::to_semaphore_status(pexa::base::give_if_empty(semaphore));
}
