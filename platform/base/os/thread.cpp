#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "pexa/osapi.h"
#include "platform/base/log/log.hpp"
#include "platform/base/memory/heap_object.hpp"
#include "platform/base/os/deadline.hpp"
#include "platform/internal/cancellation.hpp"
#include "platform/internal/signals.hpp"
#include "platform/internal/status.hpp"

struct QELOsapiThread {
    pthread_t id;
    QELOsapiThreadFunction function;
    void* parameter;
    char name[16];
};

namespace pexa::base {

namespace {

constexpr DDS_UnsignedLong thread_submodule = 0x01U;
constexpr size_t cpu_bitmap_bits = 1024;
static_assert(CPU_SETSIZE == cpu_bitmap_bits);

size_t minimum_stack_size() {
    return static_cast<size_t>(PTHREAD_STACK_MIN);
}

Status status_of(int error) {
    return error == 0 ? Status::ok : Status::error;
}

class ThreadAttributes {
public:
    ThreadAttributes() : initialized_(pthread_attr_init(&attributes_) == 0) {}
    ~ThreadAttributes() {
        if (initialized_) {
            pthread_attr_destroy(&attributes_);
        }
    }
    ThreadAttributes(const ThreadAttributes&) = delete;
    ThreadAttributes& operator=(const ThreadAttributes&) = delete;

    const pthread_attr_t* get() const { return &attributes_; }

    Status set_stack_size(DDS_Long bytes) {
        if (!initialized_) {
            return Status::out_of_resources;
        }
        if (bytes == QEL_OSAPI_THREAD_STACK_SIZE_DEFAULT) {
            return Status::ok;
        }
        const auto wanted = std::max(static_cast<size_t>(bytes), minimum_stack_size());
        // The system rounds a size that is no multiple of the page size down.
        const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        return status_of(
            pthread_attr_setstacksize(&attributes_, (wanted + page - 1) / page * page));
    }

    Status set_cpus(const uint64_t* bitmap) {
        if (bitmap == nullptr) {
            return Status::ok;
        }
        cpu_set_t cpus;
        CPU_ZERO(&cpus);
        for (size_t cpu = 0; cpu < cpu_bitmap_bits; ++cpu) {
            if ((bitmap[cpu / 64] >> (cpu % 64) & 1U) != 0) {
                CPU_SET(cpu, &cpus);
            }
        }
        return status_of(pthread_attr_setaffinity_np(&attributes_, sizeof cpus, &cpus));
    }

    Status set_priority(DDS_Long priority, int policy) {
        sched_param parameter{};
        parameter.sched_priority = priority == QEL_OSAPI_THREAD_PRIORITY_DEFAULT
                                       ? sched_get_priority_min(policy)
                                       : priority;
        const bool set = pthread_attr_setinheritsched(&attributes_, PTHREAD_EXPLICIT_SCHED) == 0 &&
                         pthread_attr_setschedpolicy(&attributes_, policy) == 0 &&
                         pthread_attr_setschedparam(&attributes_, &parameter) == 0;
        return set ? Status::ok : Status::bad_parameter;
    }

    Status block_signals() {
        const sigset_t blocked = signals_of_application();
        return status_of(pthread_attr_setsigmask_np(&attributes_, &blocked));
    }

private:
    pthread_attr_t attributes_{};
    bool initialized_;
};

constexpr unsigned long timer_slack_ns = 1000;

struct ThreadSettings {
    DDS_Long priority;
    DDS_UnsignedLong options;
    DDS_Long stack_size;
    const uint64_t* cpu_bitmap;
};

void* run(void* parameter) {
    const auto* thread = static_cast<const QELOsapiThread*>(parameter);
    pthread_setname_np(pthread_self(), thread->name);
    // A thread of ours may sleep for a tenth of a millisecond, which the system would make half as
    // long again by default.
    prctl(PR_SET_TIMERSLACK, timer_slack_ns);
    return thread->function(thread->parameter);
}

bool asks_for_priority(const ThreadSettings& settings) {
    return settings.priority != QEL_OSAPI_THREAD_PRIORITY_DEFAULT ||
           (settings.options & QEL_OSAPI_THREAD_OPTION_REALTIME_PRIORITY) != 0;
}

Status start(QELOsapiThread* thread, const ThreadSettings& settings, bool with_priority) {
    ThreadAttributes attributes;
    Status result = attributes.set_stack_size(settings.stack_size);
    if (result == Status::ok) {
        result = attributes.block_signals();
    }
    if (result == Status::ok) {
        result = attributes.set_cpus(settings.cpu_bitmap);
    }
    if (result == Status::ok && with_priority) {
        const bool realtime = (settings.options & QEL_OSAPI_THREAD_OPTION_REALTIME_PRIORITY) != 0;
        result = attributes.set_priority(settings.priority, realtime ? SCHED_FIFO : SCHED_OTHER);
    }
    return result == Status::ok
               ? status_of(pthread_create(&thread->id, attributes.get(), run, thread))
               : result;
}

Status start_as_allowed(QELOsapiThread* thread, const ThreadSettings& settings) {
    const bool asked = asks_for_priority(settings);
    Status result = start(thread, settings, asked);
    const bool enforced = (settings.options & QEL_OSAPI_THREAD_OPTION_PRIORITY_ENFORCE) != 0;
    if (result == Status::ok || !asked || enforced) {
        return result;
    }
    result = start(thread, settings, false);
    if (result == Status::ok) {
        // So it was the priority that the system had refused.
        report(QEL_LOG_MODULE_OSAPI, thread_submodule, QEL_LOG_LEVEL_WARNING, "QELOsapiThread_new",
               &DDS_LOG_SET_FAILURE_s, "thread priority");
    }
    return result;
}

QELOsapiThread* new_thread(const char* name, const ThreadSettings& settings,
                           QELOsapiThreadFunction function, void* parameter) {
    if (name == nullptr || function == nullptr ||
        settings.stack_size < QEL_OSAPI_THREAD_STACK_SIZE_DEFAULT) {
        return nullptr;
    }
    auto* thread = heap_new<QELOsapiThread>();
    if (thread == nullptr) {
        return nullptr;
    }
    thread->function = function;
    thread->parameter = parameter;
    std::memcpy(thread->name, name, strnlen(name, sizeof thread->name - 1));
    if (start_as_allowed(thread, settings) != Status::ok) {
        heap_delete(thread);
        return nullptr;
    }
    return thread;
}

void join_and_delete(QELOsapiThread* thread) {
    if (thread != nullptr) {
        const NoCancellation whole_deletion;
        pthread_join(thread->id, nullptr);
        heap_delete(thread);
    }
}

void sleep_for(const QELNtpTime* time) {
    if (time != nullptr && time->sec >= 0) {
        sleep_until(deadline_after(*time));
    }
}

DDS_ReturnCode_t sleep_for(const DDS_Duration_t* duration) {
    const bool infinite = duration != nullptr && duration->sec == DDS_DURATION_INFINITE_SEC &&
                          duration->nanosec == DDS_DURATION_INFINITE_NSEC;
    if (duration == nullptr || duration->sec < 0 || infinite) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    sleep_until(deadline_after(duration->sec, duration->nanosec));
    return DDS_RETCODE_OK;
}

}  // namespace

}  // namespace pexa::base

QELOsapiThread* QELOsapiThread_new(const char* name, DDS_Long priority, DDS_UnsignedLong options,
                                   DDS_Long stackSize, const uint64_t* cpuBitmap,
                                   QELOsapiThreadFunction function, void* parameter) {
    return pexa::base::new_thread(name, {priority, options, stackSize, cpuBitmap}, function,
                                  parameter);
}

void QELOsapiThread_delete(QELOsapiThread* thread) {
    pexa::base::join_and_delete(thread);
}

void QELOsapiThread_sleep(const QELNtpTime* time) {
    pexa::base::sleep_for(time);
}

DDS_ReturnCode_t PEXA_Utility_sleep(const DDS_Duration_t* duration) {
    return pexa::base::sleep_for(duration);
}
