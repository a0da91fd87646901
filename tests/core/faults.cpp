#include "tests/core/faults.hpp"

#include <atomic>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "orvane/admin.h"
#include "pexa/string.h"
#include "pexa/subscription.h"

namespace orvane::test {

// Everything here is relaxed: the counting must not order threads that the product leaves
// unordered, or the thread sanitizer would miss what it is to find.
constexpr auto relaxed = std::memory_order_relaxed;

/// What is to happen to the calls of one function.
struct Fault::Plan {
    explicit Plan(const char* wrapped) : function(wrapped), next(first) { first = this; }

    bool fails_now() {
        if (calls_to_come.load(relaxed) <= 0 || calls_to_come.fetch_sub(1, relaxed) != 1) {
            return false;
        }
        has_struck.store(true, relaxed);
        return true;
    }

    static inline Plan* first = nullptr;
    std::string_view function;
    Plan* next;
    std::atomic<int> calls_to_come = 0;
    std::atomic<bool> has_struck = false;
};

namespace {

constinit std::atomic<long> allocations = 0;
constinit std::atomic<long> buffers = 0;
constinit std::atomic<int> device_calls = 0;
constinit std::atomic<bool> had_write_thread = false;
constinit std::atomic<bool> is_time_fixed = false;
constinit std::atomic<std::uint64_t> fixed_time = 0;

Fault::Plan* plan_of(std::string_view function) {
    for (Fault::Plan* plan = Fault::Plan::first; plan != nullptr; plan = plan->next) {
        if (plan->function == function) {
            return plan;
        }
    }
    std::abort();
}

template <typename Pointer>
Pointer count_in(std::atomic<long>& number, Pointer pointer) {
    number.fetch_add(pointer != nullptr ? 1 : 0, relaxed);
    return pointer;
}
void count_out(std::atomic<long>& number, const void* pointer) {
    number.fetch_sub(pointer != nullptr ? 1 : 0, relaxed);
}

QELBool show_time(QELSystemClock* clock, QELNtpTime* now,
                  QELBool (*real)(QELSystemClock*, QELNtpTime*)) {
    if (!is_time_fixed.load(relaxed)) {
        return real(clock, now);
    }
    *now = std::bit_cast<QELNtpTime>(fixed_time.load(relaxed));
    return 1;
}

}  // namespace

Fault::Fault(const char* function, int call) : plan_(plan_of(function)) {
    plan_->has_struck = false;
    plan_->calls_to_come = call;
}
Fault::~Fault() {
    plan_->calls_to_come = 0;
}
bool Fault::has_struck() const {
    return plan_->has_struck;
}

long live_allocations() {
    return allocations;
}
long lent_buffers() {
    return buffers;
}
int output_device_calls() {
    return device_calls;
}
bool had_write_thread_at_listener_removal() {
    return had_write_thread;
}

FixedTime::FixedTime(QELNtpTime now) {
    fixed_time.store(std::bit_cast<std::uint64_t>(now), relaxed);
    is_time_fixed.store(true, relaxed);
}
FixedTime::~FixedTime() {
    is_time_fixed.store(false, relaxed);
}

}  // namespace orvane::test

using orvane::test::allocations;
using orvane::test::buffers;
using orvane::test::count_in;
using orvane::test::count_out;
using orvane::test::device_calls;
using orvane::test::Fault;
using orvane::test::had_write_thread;
using orvane::test::show_time;

// A wrapper of a function; `failing` and `working` are what a call evaluates to.
#define WRAP(Result, function, parameters, failing, working)       \
    static Fault::Plan plan_of_##function(#function);              \
    extern "C" Result __real_##function parameters;                \
    extern "C" Result __wrap_##function parameters {               \
        return plan_of_##function.fails_now() ? failing : working; \
    }                                                              \
    static_assert(true)
// One whose calls do nothing but fail or work.
#define FAULTY(Result, function, parameters, arguments, failing) \
    WRAP(Result, function, parameters, failing, __real_##function arguments)
// One that does its work and only says that it failed.
#define LYING(Result, function, parameters, arguments, failing)                \
    WRAP(Result, function, parameters, (__real_##function arguments, failing), \
         __real_##function arguments)

WRAP(void*, QELOsapiHeap_allocateStructureOfSize, (size_t size), nullptr,
     count_in(allocations, __real_QELOsapiHeap_allocateStructureOfSize(size)));
WRAP(char*, DDS_String_alloc, (size_t length), nullptr,
     count_in(allocations, __real_DDS_String_alloc(length)));
WRAP(char*, DDS_String_dup, (const char* text), nullptr,
     count_in(allocations, __real_DDS_String_dup(text)));
WRAP(void, QELOsapiHeap_freeStructureBytes, (void* structure), void(),
     (count_out(allocations, structure), __real_QELOsapiHeap_freeStructureBytes(structure)));
WRAP(void, DDS_String_free, (char* text), void(),
     (count_out(allocations, text), __real_DDS_String_free(text)));
WRAP(void*, MOSKFastBufferPool_getBuffer, (MOSKFastBufferPool * pool), nullptr,
     count_in(buffers, __real_MOSKFastBufferPool_getBuffer(pool)));
WRAP(void, MOSKFastBufferPool_returnBuffer, (MOSKFastBufferPool * pool, void* buffer), void(),
     (count_out(buffers, buffer), __real_MOSKFastBufferPool_returnBuffer(pool, buffer)));
WRAP(QELBool, QELSystemClock_getTime, (QELSystemClock * clock, QELNtpTime* now), 0,
     show_time(clock, now, __real_QELSystemClock_getTime));
WRAP(DDS_Boolean, PEXA_Config_Logger_set_output_device,
     (PEXA_Config_Logger * self, const PEXA_Config_LoggerDevice* device), DDS_BOOLEAN_FALSE,
     (++device_calls, __real_PEXA_Config_Logger_set_output_device(self, device)));
WRAP(DDS_ReturnCode_t, DDS_DataReader_set_listener,
     (DDS_DataReader * self, const DDS_DataReaderListener* listener, DDS_StatusMask mask),
     DDS_RETCODE_ERROR,
     (had_write_thread = listener != nullptr || QEL_KX_Orvane_getLogMessageWriteThread() != nullptr,
      __real_DDS_DataReader_set_listener(self, listener, mask)));

FAULTY(DDS_Boolean, DDS_ThreadSettings_t_copy,
       (DDS_ThreadSettings_t * self, const DDS_ThreadSettings_t* source), (self, source),
       DDS_BOOLEAN_FALSE);
FAULTY(MOSKFastBufferPool*, MOSKFastBufferPool_new,
       (size_t size, size_t alignment, const MOSKFastBufferPoolProperty* property),
       (size, alignment, property), nullptr);
FAULTY(QELOsapiSemaphore*, QELOsapiSemaphore_new,
       (QELOsapiSemaphoreKind kind, const QELOsapiSemaphoreProperty* property), (kind, property),
       nullptr);
FAULTY(QELOsapiSemaphoreStatus, QELOsapiSemaphore_take,
       (QELOsapiSemaphore * semaphore, const QELNtpTime* timeout), (semaphore, timeout),
       QEL_OSAPI_SEMAPHORE_STATUS_ERROR);
LYING(QELOsapiSemaphoreStatus, QELOsapiSemaphore_give, (QELOsapiSemaphore * semaphore), (semaphore),
      QEL_OSAPI_SEMAPHORE_STATUS_ERROR);
FAULTY(QELSystemClock*, QELSystemClock_new, (void), (), nullptr);
FAULTY(QELOsapiThread*, QELOsapiThread_new,
       (const char* name, DDS_Long priority, DDS_UnsignedLong options, DDS_Long stack_size,
        const uint64_t* cpus, QELOsapiThreadFunction function, void* parameter),
       (name, priority, options, stack_size, cpus, function, parameter), nullptr);
FAULTY(DDS_UnsignedLong, QELOsapiThread_getCurrentThreadID, (void), (), 0);
FAULTY(int, QELOsapi_global_lock, (void), (), -1);
FAULTY(int, QELOsapi_global_lockUnless, (const DDS_Long* abandon), (abandon), -1);
LYING(int, QELOsapi_global_unlock, (void), (), -1);
FAULTY(PEXA_Config_Logger*, PEXA_Config_Logger_get_instance, (void), (), nullptr);
FAULTY(QEL_KX_ADMIN_State*, QEL_KX_ADMIN_StateTypeSupport_create_data, (void), (), nullptr);
FAULTY(QEL_KX_DDSEntities*, QEL_KX_DDSEntities_create, (QEL_KX_Orvane * logger), (logger), nullptr);
FAULTY(DDS_Boolean, QEL_KX_Orvane_writeState, (QEL_KX_Orvane * logger), (logger),
       DDS_BOOLEAN_FALSE);
FAULTY(DDS_ReturnCode_t, QEL_KX_translateFromKXLogLevelToString, (DDS_Long level, char* buffer),
       (level, buffer), DDS_RETCODE_BAD_PARAMETER);
