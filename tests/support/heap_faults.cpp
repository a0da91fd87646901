#include "tests/support/heap_faults.hpp"

#include <atomic>

#include "pexa/osapi.h"

namespace {

std::atomic<long> live{0};
std::atomic<int> countdown{0};

bool fails_now() {
    return countdown.load() > 0 && --countdown == 0;
}

void* counted(void* block) {
    live += block == nullptr ? 0 : 1;
    return block;
}

void forget(const void* block) {
    live -= block == nullptr ? 0 : 1;
}

}  // namespace

long heap_faults::live_blocks() {
    return live;
}
void heap_faults::fail_allocation(int number) {
    countdown = number;
}
bool heap_faults::was_out_of_reach() {
    return countdown.exchange(0) > 0;
}

extern "C" {

void* __real_QELOsapiHeap_allocateBytes(size_t size);
void* __real_QELOsapiHeap_allocateArrayOfSize(size_t count, size_t size);
void* __real_QELOsapiHeap_allocateBufferAligned(size_t size, size_t alignment);
void* __real_QELOsapiHeap_allocateStructureOfSize(size_t size);
void __real_QELOsapiHeap_freeBytes(void* bytes);
void __real_QELOsapiHeap_freeArray(void* array);
void __real_QELOsapiHeap_freeBufferAligned(void* buffer);
void __real_QELOsapiHeap_freeStructureBytes(void* structure);

void* __wrap_QELOsapiHeap_allocateBytes(size_t size) {
    return fails_now() ? nullptr : counted(__real_QELOsapiHeap_allocateBytes(size));
}
void* __wrap_QELOsapiHeap_allocateArrayOfSize(size_t count, size_t size) {
    return fails_now() ? nullptr : counted(__real_QELOsapiHeap_allocateArrayOfSize(count, size));
}
void* __wrap_QELOsapiHeap_allocateBufferAligned(size_t size, size_t alignment) {
    return fails_now() ? nullptr
                       : counted(__real_QELOsapiHeap_allocateBufferAligned(size, alignment));
}
void* __wrap_QELOsapiHeap_allocateStructureOfSize(size_t size) {
    return fails_now() ? nullptr : counted(__real_QELOsapiHeap_allocateStructureOfSize(size));
}
void __wrap_QELOsapiHeap_freeBytes(void* bytes) {
    forget(bytes);
    __real_QELOsapiHeap_freeBytes(bytes);
}
void __wrap_QELOsapiHeap_freeArray(void* array) {
    forget(array);
    __real_QELOsapiHeap_freeArray(array);
}
void __wrap_QELOsapiHeap_freeBufferAligned(void* buffer) {
    forget(buffer);
    __real_QELOsapiHeap_freeBufferAligned(buffer);
}
void __wrap_QELOsapiHeap_freeStructureBytes(void* structure) {
    forget(structure);
    __real_QELOsapiHeap_freeStructureBytes(structure);
}
}
