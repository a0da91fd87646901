#include "pexa/osapi.h"
#include "platform/base/memory/heap_object.hpp"
#include "platform/base/os/counting_semaphore.hpp"
#include "platform/base/os/deadline.hpp"
#include "platform/base/os/recursive_mutex.hpp"

using pexa::base::CountingSemaphore;
using pexa::base::RecursiveMutex;

// The kind decides which of the two is used; the other one costs a few bytes.
struct QELOsapiSemaphore {
    QELOsapiSemaphore(QELOsapiSemaphoreKind its_kind, DDS_Long units, DDS_Long many)
        : kind(its_kind), counter(units, many) {}

    QELOsapiSemaphoreKind kind;
    CountingSemaphore counter;
    RecursiveMutex mutex;
};

namespace {

// Most units of a kind; a mutex counts none.
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

bool only_looks(const QELNtpTime& timeout) {
    return timeout.sec < 0 || (timeout.sec == 0 && timeout.frac == 0);
}

bool look(QELOsapiSemaphore* semaphore) {
    return semaphore->kind == QEL_OSAPI_SEMAPHORE_KIND_MUTEX ? semaphore->mutex.try_lock()
                                                             : semaphore->counter.try_take();
}

bool wait(QELOsapiSemaphore* semaphore, const QELNtpTime& timeout) {
    const timespec deadline = pexa::base::deadline_after(timeout);
    return semaphore->kind == QEL_OSAPI_SEMAPHORE_KIND_MUTEX
               ? semaphore->mutex.lock_until(deadline)
               : semaphore->counter.take_until(deadline);
}

void wait_for_ever(QELOsapiSemaphore* semaphore) {
    if (semaphore->kind == QEL_OSAPI_SEMAPHORE_KIND_MUTEX) {
        semaphore->mutex.lock();
    } else {
        semaphore->counter.take();
    }
}

}  // namespace

QELOsapiSemaphore* QELOsapiSemaphore_new(QELOsapiSemaphoreKind kind,
                                         const QELOsapiSemaphoreProperty* property) {
    const bool has_units = property != nullptr && kind != QEL_OSAPI_SEMAPHORE_KIND_MUTEX;
    const DDS_Long initial = has_units ? property->initialCount : 0;
    const DDS_Long many =
        has_units && property->wakeCount != 0 ? property->wakeCount : CountingSemaphore::maximum;
    if (!is_known(kind) || initial < 0 || initial > most_units(kind) || many < 0) {
        return nullptr;
    }
    return pexa::base::heap_new<QELOsapiSemaphore>(kind, initial, many);
}

void QELOsapiSemaphore_delete(QELOsapiSemaphore* semaphore) {
    pexa::base::heap_delete(semaphore);
}

QELOsapiSemaphoreStatus QELOsapiSemaphore_take(QELOsapiSemaphore* semaphore,
                                               const QELNtpTime* timeout) {
    if (semaphore == nullptr) {
        return QEL_OSAPI_SEMAPHORE_STATUS_ERROR;
    }
    if (timeout == nullptr) {
        wait_for_ever(semaphore);
        return QEL_OSAPI_SEMAPHORE_STATUS_OK;
    }
    // No time need be read, and none is wanted, when there is something to take at once.
    const bool taken = look(semaphore) || (!only_looks(*timeout) && wait(semaphore, *timeout));
    return taken ? QEL_OSAPI_SEMAPHORE_STATUS_OK : QEL_OSAPI_SEMAPHORE_STATUS_TIMEOUT;
}

QELOsapiSemaphoreStatus QELOsapiSemaphore_give(QELOsapiSemaphore* semaphore) {
    if (semaphore == nullptr) {
        return QEL_OSAPI_SEMAPHORE_STATUS_ERROR;
    }
    // Setting a binary semaphore that is set already leaves it set.
    const bool given = semaphore->kind == QEL_OSAPI_SEMAPHORE_KIND_MUTEX
                           ? semaphore->mutex.unlock()
                           : semaphore->counter.give(most_units(semaphore->kind)) ||
                                 semaphore->kind == QEL_OSAPI_SEMAPHORE_KIND_BINARY;
    return given ? QEL_OSAPI_SEMAPHORE_STATUS_OK : QEL_OSAPI_SEMAPHORE_STATUS_ERROR;
}
