#include "faults.hpp"

#include <array>
#include <atomic>
#include <bit>
#include <cstdint>

#include "orvane/admin.h"
#include "pexa/string.h"
#include "pexa/subscription.h"

namespace orvane::test {
namespace {

// Everything here is relaxed: the counting must not order threads that the product leaves
// unordered, or the thread sanitizer would miss what it is to find.
constexpr auto relaxed = std::memory_order_relaxed;

struct Plan {
    std::atomic<int> calls_to_come = 0;
    std::atomic<bool> goes_on = false;
    std::atomic<bool> has_struck = false;
};

constinit std::array<Plan, static_cast<std::size_t>(Function::Count)> plans;
constinit std::atomic<long> allocations = 0;
constinit std::atomic<long> buffers = 0;
constinit std::atomic<int> device_calls = 0;
constinit std::atomic<bool> had_write_thread = false;
constinit std::atomic<bool> is_time_fixed = false;
constinit std::atomic<std::uint64_t> fixed_time = 0;

Plan& plan_of(Function function) {
    return plans[static_cast<std::size_t>(function)];
}

bool fails(Function function) {
    Plan& plan = plan_of(function);
    if (plan.calls_to_come.load(relaxed) <= 0) {
        return plan.goes_on.load(relaxed) && plan.has_struck.load(relaxed);
    }
    if (plan.calls_to_come.fetch_sub(1, relaxed) != 1) {
        return false;
    }
    plan.has_struck.store(true, relaxed);
    return true;
}

template <typename Pointer>
Pointer counted(Pointer pointer) {
    allocations.fetch_add(pointer != nullptr ? 1 : 0, relaxed);
    return pointer;
}

}  // namespace

Fault::Fault(Function function, int call, Duration duration) : function_(function) {
    Plan& plan = plan_of(function);
    plan.has_struck = false;
    plan.goes_on = duration == Duration::FromThenOn;
    plan.calls_to_come = call;
}

Fault::~Fault() {
    Plan& plan = plan_of(function_);
    plan.calls_to_come = 0;
    plan.goes_on = false;
}

bool Fault::has_struck() const {
    return plan_of(function_).has_struck;
}

long live_allocations() {
    return allocations;
}
long lent_buffers() {
    return buffers;
}
bool had_write_thread_at_listener_removal() {
    return had_write_thread;
}

int output_device_calls() {
    return device_calls;
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
using orvane::test::counted;
using orvane::test::device_calls;
using orvane::test::fails;
using orvane::test::Function;
using orvane::test::relaxed;

extern "C" {

void* __real_QELOsapiHeap_allocateStructureOfSize(size_t size);
void* __wrap_QELOsapiHeap_allocateStructureOfSize(size_t size) {
    return fails(Function::AllocateStructure)
               ? nullptr
               : counted(__real_QELOsapiHeap_allocateStructureOfSize(size));
}

void __real_QELOsapiHeap_freeStructureBytes(void* structure);
void __wrap_QELOsapiHeap_freeStructureBytes(void* structure) {
    allocations.fetch_sub(structure != nullptr ? 1 : 0, relaxed);
    __real_QELOsapiHeap_freeStructureBytes(structure);
}

char* __real_DDS_String_alloc(size_t length);
char* __wrap_DDS_String_alloc(size_t length) {
    return fails(Function::AllocateString) ? nullptr : counted(__real_DDS_String_alloc(length));
}

char* __real_DDS_String_dup(const char* text);
char* __wrap_DDS_String_dup(const char* text) {
    return fails(Function::DuplicateString) ? nullptr : counted(__real_DDS_String_dup(text));
}

void __real_DDS_String_free(char* text);
void __wrap_DDS_String_free(char* text) {
    allocations.fetch_sub(text != nullptr ? 1 : 0, relaxed);
    __real_DDS_String_free(text);
}

DDS_Boolean __real_DDS_ThreadSettings_t_copy(DDS_ThreadSettings_t* self,
                                             const DDS_ThreadSettings_t* source);
DDS_Boolean __wrap_DDS_ThreadSettings_t_copy(DDS_ThreadSettings_t* self,
                                             const DDS_ThreadSettings_t* source) {
    return fails(Function::CopyThreadSettings) ? DDS_BOOLEAN_FALSE
                                               : __real_DDS_ThreadSettings_t_copy(self, source);
}

MOSKFastBufferPool* __real_MOSKFastBufferPool_new(size_t elementSize, size_t alignment,
                                                  const MOSKFastBufferPoolProperty* property);
MOSKFastBufferPool* __wrap_MOSKFastBufferPool_new(size_t elementSize, size_t alignment,
                                                  const MOSKFastBufferPoolProperty* property) {
    return fails(Function::NewPool)
               ? nullptr
               : __real_MOSKFastBufferPool_new(elementSize, alignment, property);
}

void* __real_MOSKFastBufferPool_getBuffer(MOSKFastBufferPool* pool);
void* __wrap_MOSKFastBufferPool_getBuffer(MOSKFastBufferPool* pool) {
    if (fails(Function::GetBuffer)) {
        return nullptr;
    }
    void* buffer = __real_MOSKFastBufferPool_getBuffer(pool);
    buffers.fetch_add(buffer != nullptr ? 1 : 0, relaxed);
    return buffer;
}

void __real_MOSKFastBufferPool_returnBuffer(MOSKFastBufferPool* pool, void* buffer);
void __wrap_MOSKFastBufferPool_returnBuffer(MOSKFastBufferPool* pool, void* buffer) {
    buffers.fetch_sub(buffer != nullptr ? 1 : 0, relaxed);
    __real_MOSKFastBufferPool_returnBuffer(pool, buffer);
}

QELOsapiSemaphore* __real_QELOsapiSemaphore_new(QELOsapiSemaphoreKind kind,
                                                const QELOsapiSemaphoreProperty* property);
QELOsapiSemaphore* __wrap_QELOsapiSemaphore_new(QELOsapiSemaphoreKind kind,
                                                const QELOsapiSemaphoreProperty* property) {
    return fails(Function::NewSemaphore) ? nullptr : __real_QELOsapiSemaphore_new(kind, property);
}

QELOsapiSemaphoreStatus __real_QELOsapiSemaphore_take(QELOsapiSemaphore* semaphore,
                                                      const QELNtpTime* timeout);
QELOsapiSemaphoreStatus __wrap_QELOsapiSemaphore_take(QELOsapiSemaphore* semaphore,
                                                      const QELNtpTime* timeout) {
    return fails(Function::TakeSemaphore) ? QEL_OSAPI_SEMAPHORE_STATUS_ERROR
                                          : __real_QELOsapiSemaphore_take(semaphore, timeout);
}

QELOsapiSemaphoreStatus __real_QELOsapiSemaphore_give(QELOsapiSemaphore* semaphore);
QELOsapiSemaphoreStatus __wrap_QELOsapiSemaphore_give(QELOsapiSemaphore* semaphore) {
    const QELOsapiSemaphoreStatus status = __real_QELOsapiSemaphore_give(semaphore);
    return fails(Function::GiveSemaphore) ? QEL_OSAPI_SEMAPHORE_STATUS_ERROR : status;
}

QELSystemClock* __real_QELSystemClock_new(void);
QELSystemClock* __wrap_QELSystemClock_new(void) {
    return fails(Function::NewClock) ? nullptr : __real_QELSystemClock_new();
}

QELBool __real_QELSystemClock_getTime(QELSystemClock* clock, QELNtpTime* now);
QELBool __wrap_QELSystemClock_getTime(QELSystemClock* clock, QELNtpTime* now) {
    if (fails(Function::ReadClock)) {
        return 0;
    }
    if (orvane::test::is_time_fixed.load(relaxed)) {
        *now = std::bit_cast<QELNtpTime>(orvane::test::fixed_time.load(relaxed));
        return 1;
    }
    return __real_QELSystemClock_getTime(clock, now);
}

QELOsapiThread* __real_QELOsapiThread_new(const char* name, DDS_Long priority,
                                          DDS_UnsignedLong options, DDS_Long stackSize,
                                          const uint64_t* cpuBitmap,
                                          QELOsapiThreadFunction function, void* parameter);
QELOsapiThread* __wrap_QELOsapiThread_new(const char* name, DDS_Long priority,
                                          DDS_UnsignedLong options, DDS_Long stackSize,
                                          const uint64_t* cpuBitmap,
                                          QELOsapiThreadFunction function, void* parameter) {
    return fails(Function::NewThread)
               ? nullptr
               : __real_QELOsapiThread_new(name, priority, options, stackSize, cpuBitmap, function,
                                           parameter);
}

DDS_UnsignedLong __real_QELOsapiThread_getCurrentThreadID(void);
DDS_UnsignedLong __wrap_QELOsapiThread_getCurrentThreadID(void) {
    return fails(Function::ThreadId) ? 0 : __real_QELOsapiThread_getCurrentThreadID();
}

int __real_QELOsapi_global_lock(void);
int __wrap_QELOsapi_global_lock(void) {
    return fails(Function::GlobalLock) ? -1 : __real_QELOsapi_global_lock();
}

int __real_QELOsapi_global_lockUnless(const DDS_Long* abandon);
int __wrap_QELOsapi_global_lockUnless(const DDS_Long* abandon) {
    return fails(Function::GlobalLockUnless) ? -1 : __real_QELOsapi_global_lockUnless(abandon);
}

int __real_QELOsapi_global_unlock(void);
int __wrap_QELOsapi_global_unlock(void) {
    const int result = __real_QELOsapi_global_unlock();
    return fails(Function::GlobalUnlock) ? -1 : result;
}

PEXA_Config_Logger* __real_PEXA_Config_Logger_get_instance(void);
PEXA_Config_Logger* __wrap_PEXA_Config_Logger_get_instance(void) {
    return fails(Function::LoggerInstance) ? nullptr : __real_PEXA_Config_Logger_get_instance();
}

DDS_Boolean __real_PEXA_Config_Logger_set_output_device(PEXA_Config_Logger* self,
                                                        const PEXA_Config_LoggerDevice* device);
DDS_Boolean __wrap_PEXA_Config_Logger_set_output_device(PEXA_Config_Logger* self,
                                                        const PEXA_Config_LoggerDevice* device) {
    device_calls.fetch_add(1, relaxed);
    return fails(Function::SetOutputDevice)
               ? DDS_BOOLEAN_FALSE
               : __real_PEXA_Config_Logger_set_output_device(self, device);
}

DDS_ReturnCode_t __real_DDS_DataReader_set_listener(DDS_DataReader* self,
                                                    const DDS_DataReaderListener* listener,
                                                    DDS_StatusMask mask);
DDS_ReturnCode_t __wrap_DDS_DataReader_set_listener(DDS_DataReader* self,
                                                    const DDS_DataReaderListener* listener,
                                                    DDS_StatusMask mask) {
    if (listener == nullptr) {
        orvane::test::had_write_thread = QEL_KX_Orvane_getLogMessageWriteThread() != nullptr;
    }
    return fails(Function::SetReaderListener)
               ? DDS_RETCODE_ERROR
               : __real_DDS_DataReader_set_listener(self, listener, mask);
}

QEL_KX_ADMIN_State* __real_QEL_KX_ADMIN_StateTypeSupport_create_data(void);
QEL_KX_ADMIN_State* __wrap_QEL_KX_ADMIN_StateTypeSupport_create_data(void) {
    return fails(Function::CreateState) ? nullptr
                                        : __real_QEL_KX_ADMIN_StateTypeSupport_create_data();
}

QEL_KX_DDSEntities* __real_QEL_KX_DDSEntities_create(QEL_KX_Orvane* logger);
QEL_KX_DDSEntities* __wrap_QEL_KX_DDSEntities_create(QEL_KX_Orvane* logger) {
    return fails(Function::CreateEntities) ? nullptr : __real_QEL_KX_DDSEntities_create(logger);
}

DDS_Boolean __real_QEL_KX_Orvane_writeState(QEL_KX_Orvane* logger);
DDS_Boolean __wrap_QEL_KX_Orvane_writeState(QEL_KX_Orvane* logger) {
    return fails(Function::WriteState) ? DDS_BOOLEAN_FALSE
                                       : __real_QEL_KX_Orvane_writeState(logger);
}

DDS_ReturnCode_t __real_QEL_KX_translateFromKXLogLevelToString(DDS_Long level, char* buffer);
DDS_ReturnCode_t __wrap_QEL_KX_translateFromKXLogLevelToString(DDS_Long level, char* buffer) {
    return fails(Function::LevelName)
               ? DDS_RETCODE_BAD_PARAMETER
               : __real_QEL_KX_translateFromKXLogLevelToString(level, buffer);
}
}
