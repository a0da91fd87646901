#include "tests/support/faults.hpp"

#include <cstdlib>
#include <iostream>
#include <new>
#include <type_traits>
#include <utility>

#include "orvane/orvane.h"
#include "pexa/pexa.h"

namespace orvane::test {

namespace {

constexpr auto relaxed = std::memory_order_relaxed;

constinit std::atomic<long> blocks = 0;

/// Of a group whose calls fail on one thread only.
thread_local bool fails_here = false;

/// Of the list of all functions and groups.
constinit Wrapped* first = nullptr;

}  // namespace

Wrapped::Wrapped(std::string_view wrapped_name, Wrapped* group_of_it)
    : name(wrapped_name), group(group_of_it), next(std::exchange(first, this)) {}

Wrapped& Wrapped::named(std::string_view name) {
    for (Wrapped* wrapped = first; wrapped != nullptr; wrapped = wrapped->next) {
        if (wrapped->name == name) {
            return *wrapped;
        }
    }
    std::cerr << "tests/support/faults.cpp has no row for " << name << '\n';
    std::abort();
}

const Wrapped* Wrapped::strike() {
    if (const auto* to_do = action.load(std::memory_order_acquire); to_do != nullptr) {
        (*to_do)();
    }
    const int call = calls.fetch_add(1, relaxed) + 1;
    const int failing = failing_call.load(relaxed);
    if (armed.load(relaxed) && (failing == 0 || failing == call)) {
        struck.store(true, relaxed);
        return this;
    }
    return group != nullptr ? group->strike() : nullptr;
}

Fault::Fault(std::string_view function, FaultPlan plan) : wrapped_(Wrapped::named(function)) {
    fails_here = true;
    wrapped_.struck.store(false, relaxed);
    wrapped_.fails_after.store(plan.after, relaxed);
    wrapped_.code.store(plan.code, relaxed);
    wrapped_.failing_call.store(plan.call == 0 ? 0 : wrapped_.calls.load(relaxed) + plan.call,
                                relaxed);
    wrapped_.armed.store(true, relaxed);
}
Fault::~Fault() {
    wrapped_.armed.store(false, relaxed);
    fails_here = false;
}

long live_blocks() {
    return blocks.load(relaxed);
}

namespace {

/// What a call does for the count of blocks.
enum class Blocks { none, allocates, frees };

/// Counts the block that a call returns or gets as its first argument.
template <Blocks Effect, typename Result, typename... Arguments>
void count_blocks(Result result, Arguments... arguments) {
    if constexpr (Effect == Blocks::allocates) {
        blocks.fetch_add(result != nullptr ? 1 : 0, relaxed);
    } else if constexpr (Effect == Blocks::frees) {
        blocks.fetch_sub(((arguments != nullptr) && ...) ? 1 : 0, relaxed);
    }
}

template <typename Result>
Result failure_of(const Wrapped& wrapped, int failure) {
    if constexpr (std::is_same_v<Result, DDS_ReturnCode_t>) {
        return wrapped.code.load(relaxed);
    } else if constexpr (std::is_same_v<Result, int>) {
        return failure;
    } else {
        return Result();
    }
}

template <Blocks Effect, typename Result, typename... Arguments>
Result intercept(Wrapped& wrapped, int failure, Result (*real)(Arguments...),
                 Arguments... arguments) {
    const Wrapped* const fault = wrapped.strike();
    if (fault != nullptr && !fault->fails_after.load(relaxed)) {
        return failure_of<Result>(*fault, failure);
    }
    using Replacement = std::function<Result(Arguments...)>;
    const auto call = [&]() -> Result {
        if (const void* replacement = wrapped.replacement.load(relaxed); replacement != nullptr) {
            return (*static_cast<const Replacement*>(replacement))(arguments...);
        }
        return real(arguments...);
    };
    if constexpr (std::is_void_v<Result>) {
        count_blocks<Effect>(nullptr, arguments...);
        call();
    } else {
        const Result result = call();
        count_blocks<Effect>(result, arguments...);
        return fault != nullptr ? failure_of<Result>(*fault, failure) : result;
    }
}

template <typename Signature>
struct Parameters;
template <typename Result_, typename... Arguments>
struct Parameters<Result_(Arguments...)> {
    using Result = Result_;
    template <std::size_t Position>
    using At = std::tuple_element_t<Position, std::tuple<Arguments...>>;
};
template <typename Signature, std::size_t Position>
using At = typename Parameters<Signature>::template At<Position>;

Wrapped heap_group(heap_allocation);

}  // namespace
}  // namespace orvane::test

using orvane::test::At;
using orvane::test::Blocks;
using orvane::test::Parameters;
using orvane::test::Wrapped;

// A row: WRAP(number of parameters, function, failure of a function that returns int). The
// signature is the function's own.
#define WRAP(count, function, failure) \
    WRAP_AS(count, function, decltype(function), failure, Blocks::none, nullptr)
#define WRAP_ALLOCATION(count, function) \
    WRAP_AS(count, function, decltype(function), 0, Blocks::allocates, &orvane::test::heap_group)
#define WRAP_FREE(function) WRAP_AS(1, function, decltype(function), 0, Blocks::frees, nullptr)
#define WRAP_AS(count, function, Signature, failure, blocks, group)                           \
    extern "C" Signature __real_##function __attribute__((weak));                             \
    static Wrapped wrapped_##function(#function, group);                                      \
    static const auto real_##function = wrapped_##function.real =                             \
        reinterpret_cast<void (*)()>(&__real_##function);                                     \
    extern "C" Parameters<Signature>::Result __wrap_##function(DECLARED_##count(Signature)) { \
        return orvane::test::intercept<blocks>(wrapped_##function, failure,                   \
                                               &__real_##function PASSED_##count);            \
    }                                                                                         \
    static_assert(true)

#define DECLARED_0(S)
#define DECLARED_1(S) At<S, 0> a
#define DECLARED_2(S) DECLARED_1(S), At<S, 1> b
#define DECLARED_3(S) DECLARED_2(S), At<S, 2> c
#define DECLARED_4(S) DECLARED_3(S), At<S, 3> d
#define DECLARED_5(S) DECLARED_4(S), At<S, 4> e
#define DECLARED_6(S) DECLARED_5(S), At<S, 5> f
#define DECLARED_7(S) DECLARED_6(S), At<S, 6> g
#define PASSED_0
#define PASSED_1 , a
#define PASSED_2 PASSED_1, b
#define PASSED_3 PASSED_2, c
#define PASSED_4 PASSED_3, d
#define PASSED_5 PASSED_4, e
#define PASSED_6 PASSED_5, f
#define PASSED_7 PASSED_6, g

WRAP_ALLOCATION(1, QELOsapiHeap_allocateBytes);
WRAP_ALLOCATION(2, QELOsapiHeap_allocateArrayOfSize);
WRAP_ALLOCATION(2, QELOsapiHeap_allocateBufferAligned);
WRAP_ALLOCATION(1, QELOsapiHeap_allocateStructureOfSize);
WRAP_FREE(QELOsapiHeap_freeBytes);
WRAP_FREE(QELOsapiHeap_freeArray);
WRAP_FREE(QELOsapiHeap_freeBufferAligned);
WRAP_FREE(QELOsapiHeap_freeStructureBytes);

WRAP(0, QELSystemClock_new, 0);
WRAP(2, QELSystemClock_getTime, 0);
WRAP(1, QELOsapi_global_lockUnless, -1);
WRAP(0, QELOsapi_global_unlock, -1);
WRAP(2, QELOsapiSemaphore_new, 0);
WRAP(2, QELOsapiSemaphore_take, QEL_OSAPI_SEMAPHORE_STATUS_ERROR);
WRAP(7, QELOsapiThread_new, 0);
WRAP(0, QELOsapiThread_getCurrentThreadID, 0);
WRAP(1, QELOsapiThread_sleep, 0);
WRAP(1, PEXA_Utility_sleep, 0);
WRAP(3, MOSKFastBufferPool_new, 0);
WRAP(1, MOSKFastBufferPool_getBuffer, 0);
WRAP(1, DDS_String_alloc, 0);
WRAP(1, DDS_String_dup, 0);
WRAP(2, DDS_String_replace, 0);
WRAP(4, DDS_StringSeq_loan_contiguous, 0);
WRAP(2, DDS_ThreadSettings_t_copy, 0);
WRAP(2, PEXA_Config_Logger_set_output_device, 0);

WRAP(2, DDS_DomainParticipantFactory_get_default_participant_qos, 0);
WRAP(5, DDS_DomainParticipantFactory_create_participant, 0);
WRAP(2, DDS_DomainParticipantFactory_delete_participant, 0);
WRAP(2, DDS_DomainParticipant_get_qos, 0);
WRAP(4, DDS_DomainParticipant_register_type, 0);
WRAP(3, DDS_DomainParticipant_get_default_topic_qos_w_topic_name, 0);
WRAP(6, DDS_DomainParticipant_create_topic, 0);
WRAP(2, DDS_DomainParticipant_delete_topic, 0);
WRAP(2, DDS_DomainParticipant_get_default_publisher_qos, 0);
WRAP(4, DDS_DomainParticipant_create_publisher, 0);
WRAP(2, DDS_DomainParticipant_delete_publisher, 0);
WRAP(2, DDS_DomainParticipant_get_default_subscriber_qos, 0);
WRAP(4, DDS_DomainParticipant_create_subscriber, 0);
WRAP(2, DDS_DomainParticipant_delete_subscriber, 0);
WRAP(5, DDS_DomainParticipant_create_contentfilteredtopic, 0);
WRAP(2, DDS_DomainParticipant_delete_contentfilteredtopic, 0);
WRAP(1, DDS_DomainParticipant_delete_contained_entities, 0);
WRAP(3, DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name, 0);
WRAP(3, DDS_DomainParticipant_get_default_datareader_qos_w_topic_name, 0);
WRAP(5, DDS_Publisher_create_datawriter, 0);
WRAP(1, DDS_Publisher_delete_contained_entities, 0);
WRAP(5, DDS_Subscriber_create_datareader, 0);
WRAP(1, DDS_Subscriber_delete_contained_entities, 0);
WRAP(3, DDS_DataWriter_set_listener, 0);
WRAP(3, DDS_DataWriter_write_untypedI, 0);
WRAP(3, DDS_DataWriter_register_instance_untypedI, 0);
WRAP(1, DDS_DataWriter_flush, 0);
WRAP(3, DDS_DataReader_set_listener, 0);
WRAP(4, DDS_DataReader_read_or_take_untypedI, 0);
WRAP(4, DDS_DataReader_return_loan_untypedI, 0);

// The engine's. Its header defines macros that clash with ours.
extern "C" void dds_write_flush(int writer);
WRAP(1, dds_write_flush, 0);
extern "C" int dds_forwardcdr(int writer, void* data);
WRAP(2, dds_forwardcdr, -10);  // a time-out

// Wrapped at link time rather than replaced: sanitizers bring their own.
static Wrapped new_group(orvane::test::new_expression);
extern "C" {
void* __real__Znwm(std::size_t size);
void* __real__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);

void* __wrap__Znwm(std::size_t size) {
    if (orvane::test::fails_here && new_group.strike() != nullptr) {
        throw std::bad_alloc();
    }
    return __real__Znwm(size);
}
void* __wrap__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) {
    const bool fails = orvane::test::fails_here && new_group.strike() != nullptr;
    return fails ? nullptr : __real__ZnwmRKSt9nothrow_t(size, tag);
}
}
