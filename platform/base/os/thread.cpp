#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "pexa/log.h"
#include "pexa/osapi.h"
#include "platform/base/memory/heap_object.hpp"
#include "platform/base/os/deadline.hpp"

struct QELOsapiThread {
    pthread_t id;
    QELOsapiThreadFunction function;
    void* parameter;
    char name[16];
};

namespace {

constexpr DDS_UnsignedLong thread_submodule = 0x01U;
constexpr size_t cpu_bitmap_bits = 1024;
static_assert(CPU_SETSIZE == cpu_bitmap_bits);

size_t minimum_stack_size() {
    return static_cast<size_t>(PTHREAD_STACK_MIN);
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

    [[nodiscard]] const pthread_attr_t* get() const { return &attributes_; }

    [[nodiscard]] bool set_stack_size(DDS_Long bytes) {
        if (!initialized_) {
            return false;
        }
        if (bytes == QEL_OSAPI_THREAD_STACK_SIZE_DEFAULT) {
            return true;
        }
        const auto wanted = std::max(static_cast<size_t>(bytes), minimum_stack_size());
        // What is not a multiple of the page size would be rounded down.
        const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        return pthread_attr_setstacksize(&attributes_, (wanted + page - 1) / page * page) == 0;
    }

    [[nodiscard]] bool set_cpus(const uint64_t* bitmap) {
        cpu_set_t cpus;
        CPU_ZERO(&cpus);
        for (size_t cpu = 0; bitmap != nullptr && cpu < cpu_bitmap_bits; ++cpu) {
            if ((bitmap[cpu / 64] >> (cpu % 64) & 1U) != 0) {
                CPU_SET(cpu, &cpus);
            }
        }
        return bitmap == nullptr ||
               pthread_attr_setaffinity_np(&attributes_, sizeof cpus, &cpus) == 0;
    }

    [[nodiscard]] bool set_priority(DDS_Long priority, int policy) {
        sched_param parameter{};
        parameter.sched_priority = priority == QEL_OSAPI_THREAD_PRIORITY_DEFAULT
                                       ? sched_get_priority_min(policy)
                                       : priority;
        return pthread_attr_setinheritsched(&attributes_, PTHREAD_EXPLICIT_SCHED) == 0 &&
               pthread_attr_setschedpolicy(&attributes_, policy) == 0 &&
               pthread_attr_setschedparam(&attributes_, &parameter) == 0;
    }

private:
    pthread_attr_t attributes_{};
    bool initialized_;
};

struct ThreadSettings {
    DDS_Long priority;
    DDS_UnsignedLong options;
    DDS_Long stack_size;
    const uint64_t* cpu_bitmap;
};

void* run(void* parameter) {
    const auto* thread = static_cast<const QELOsapiThread*>(parameter);
    pthread_setname_np(pthread_self(), thread->name);
    return thread->function(thread->parameter);
}

bool asks_for_priority(const ThreadSettings& settings) {
    return settings.priority != QEL_OSAPI_THREAD_PRIORITY_DEFAULT ||
           (settings.options & QEL_OSAPI_THREAD_OPTION_REALTIME_PRIORITY) != 0;
}

bool start(QELOsapiThread* thread, const ThreadSettings& settings, bool with_priority) {
    ThreadAttributes attributes;
    if (!attributes.set_stack_size(settings.stack_size) ||
        !attributes.set_cpus(settings.cpu_bitmap)) {
        return false;
    }
    const bool realtime = (settings.options & QEL_OSAPI_THREAD_OPTION_REALTIME_PRIORITY) != 0;
    if (with_priority &&
        !attributes.set_priority(settings.priority, realtime ? SCHED_FIFO : SCHED_OTHER)) {
        return false;
    }
    return pthread_create(&thread->id, attributes.get(), run, thread) == 0;
}

bool start_as_allowed(QELOsapiThread* thread, const ThreadSettings& settings) {
    const bool asked = asks_for_priority(settings);
    if (start(thread, settings, asked)) {
        return true;
    }
    const bool enforced = (settings.options & QEL_OSAPI_THREAD_OPTION_PRIORITY_ENFORCE) != 0;
    if (!asked || enforced || !start(thread, settings, false)) {
        return false;
    }
    // The second start shows that it was the priority that the system had refused.
    QELLog_printContextAndMsg(QEL_LOG_MODULE_OSAPI, thread_submodule, QEL_LOG_LEVEL_WARNING,
                              "QELOsapiThread_new", &DDS_LOG_SET_FAILURE_s, "thread priority");
    return true;
}

}  // namespace

QELOsapiThread* QELOsapiThread_new(const char* name, DDS_Long priority, DDS_UnsignedLong options,
                                   DDS_Long stackSize, const uint64_t* cpuBitmap,
                                   QELOsapiThreadFunction function, void* parameter) {
    if (name == nullptr || function == nullptr || stackSize < QEL_OSAPI_THREAD_STACK_SIZE_DEFAULT) {
        return nullptr;
    }
    auto* thread = pexa::base::heap_new<QELOsapiThread>();
    if (thread == nullptr) {
        return nullptr;
    }
    thread->function = function;
    thread->parameter = parameter;
    std::memcpy(thread->name, name, strnlen(name, sizeof thread->name - 1));
    if (!start_as_allowed(thread, {priority, options, stackSize, cpuBitmap})) {
        pexa::base::heap_delete(thread);
        return nullptr;
    }
    return thread;
}

void QELOsapiThread_delete(QELOsapiThread* thread) {
    if (thread != nullptr) {
        pthread_join(thread->id, nullptr);
        pexa::base::heap_delete(thread);
    }
}

void QELOsapiThread_sleep(const QELNtpTime* time) {
    if (time != nullptr && time->sec >= 0) {
        pexa::base::sleep_until(pexa::base::deadline_after(*time));
    }
}

DDS_ReturnCode_t PEXA_Utility_sleep(const DDS_Duration_t* duration) {
    const bool infinite = duration != nullptr && duration->sec == DDS_DURATION_INFINITE_SEC &&
                          duration->nanosec == DDS_DURATION_INFINITE_NSEC;
    if (duration == nullptr || duration->sec < 0 || infinite) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    pexa::base::sleep_until(pexa::base::deadline_after(duration->sec, duration->nanosec));
    return DDS_RETCODE_OK;
}
