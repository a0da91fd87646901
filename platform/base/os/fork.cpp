#include "platform/base/os/fork.hpp"

#include <pthread.h>

#include <algorithm>
#include <atomic>

#include "pexa/osapi.h"
#include "platform/base/log/log.hpp"
#include "platform/internal/status.hpp"

namespace pexa::base {
namespace {

constexpr std::size_t most_functions = 16;

constinit std::atomic<int> engine_uses = 0;
constinit std::atomic<bool> engine_lost = false;
constinit std::atomic<void (*)()> functions[most_functions] = {};

void in_child() {
    if (engine_uses.load(std::memory_order_relaxed) > 0) {
        engine_lost.store(true, std::memory_order_relaxed);
    }
    forget_thread_id();
    free_global_lock();
    free_sink_lock();
    for (const auto& function : functions) {
        if (const auto call = function.load(std::memory_order_acquire); call != nullptr) {
            call();
        }
    }
}

[[maybe_unused]] const int registration = pthread_atfork(nullptr, nullptr, in_child);

Status call_in_child(void (*function)()) {
    const bool kept = std::ranges::any_of(functions, [function](std::atomic<void (*)()>& place) {
        void (*none)() = nullptr;
        return place.compare_exchange_strong(none, function, std::memory_order_release);
    });
    return kept ? Status::ok : Status::out_of_resources;
}

}  // namespace
}  // namespace pexa::base

void QELOsapi_beginEngineUse(void) {
    pexa::base::engine_uses.fetch_add(1, std::memory_order_relaxed);
}

void QELOsapi_endEngineUse(void) {
    pexa::base::engine_uses.fetch_sub(1, std::memory_order_relaxed);
}

QELBool QELOsapi_isEngineLost(void) {
    return pexa::base::engine_lost.load(std::memory_order_relaxed) ? 1 : 0;
}

int QELOsapi_callInChild(void (*function)(void)) {
    return pexa::base::call_in_child(function) == pexa::Status::ok ? 0 : -1;
}
