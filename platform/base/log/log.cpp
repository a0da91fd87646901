#include "platform/base/log/log.hpp"

#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>

#include "pexa/osapi.h"

namespace pexa::base {

namespace {

struct ModuleMasks {
    std::atomic<DDS_UnsignedLong> instrumentation{QEL_LOG_BIT(QEL_LOG_LEVEL_ERROR)};
    std::atomic<DDS_UnsignedLong> submodules{DDS_SUBMODULE_MASK_ALL};
};

struct Sink {
    QELLogSink function;
    void* data;
};

void print_to_standard_output(void* /*data*/, QELLogModule /*module*/, QELLogLevel /*level*/,
                              const char* text) {
    QELOsapi_printLine("%s\n", text);
}

constexpr unsigned module_count = 3;
constexpr size_t most_text = 1023;

constinit ModuleMasks masks[module_count];

// Held while the pair is copied, so that a function never gets another function's data. Its cost
// does not matter: a report that comes here will be formatted and written.
constinit std::mutex sink_mutex;
constinit Sink current_sink = {print_to_standard_output, nullptr};

ModuleMasks* masks_of(QELLogModule module) {
    const auto index = static_cast<unsigned>(module);
    return index < module_count ? &masks[index] : nullptr;
}

Sink get_sink() {
    const std::lock_guard guard(sink_mutex);
    return current_sink;
}

void format(char (&text)[most_text + 1], const char* context, const char* message,
            va_list arguments) {
    const int prefix = std::snprintf(text, sizeof text, "%s:", context == nullptr ? "" : context);
    if (prefix >= 0 && static_cast<size_t>(prefix) < most_text) {
        std::vsnprintf(text + prefix, sizeof text - static_cast<size_t>(prefix), message,
                       arguments);
    }
}

DDS_UnsignedLong load(std::atomic<DDS_UnsignedLong> ModuleMasks::*mask, QELLogModule module) {
    const ModuleMasks* found = masks_of(module);
    return found == nullptr ? 0 : (found->*mask).load(std::memory_order_relaxed);
}

void store(std::atomic<DDS_UnsignedLong> ModuleMasks::*mask, QELLogModule module,
           DDS_UnsignedLong value) {
    if (ModuleMasks* found = masks_of(module)) {
        (found->*mask).store(value, std::memory_order_relaxed);
    }
}

void set_sink(QELLogSink sink, void* data) {
    const std::lock_guard guard(sink_mutex);
    current_sink = sink == nullptr ? Sink{print_to_standard_output, nullptr} : Sink{sink, data};
}

}  // namespace

bool is_enabled(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level) {
    return level >= QEL_LOG_LEVEL_ERROR && level <= QEL_LOG_LEVEL_STATUS_ALL &&
           (load(&ModuleMasks::instrumentation, module) & QEL_LOG_BIT(level)) != 0 &&
           (load(&ModuleMasks::submodules, module) & submodule) != 0;
}

void print(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level, const char* context,
           const QELLogMessageTemplate* message, va_list arguments) {
    if (message == nullptr || !is_enabled(module, submodule, level)) {
        return;
    }
    char text[most_text + 1];
    format(text, context, message->format, arguments);
    const Sink sink = get_sink();
    sink.function(sink.data, module, level, text);
}

void free_sink_lock() {
    std::construct_at(&sink_mutex);
}

// NOLINTNEXTLINE(cert-dcl50-cpp): takes what the exported function takes
void report(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level, const char* context,
            const QELLogMessageTemplate* message, ...) {
    va_list arguments;
    va_start(arguments, message);
    print(module, submodule, level, context, message, arguments);
    va_end(arguments);
}

}  // namespace pexa::base

using pexa::base::ModuleMasks;

DDS_UnsignedLong QELLog_getInstrumentationMask(QELLogModule module) {
    return pexa::base::load(&ModuleMasks::instrumentation, module);
}

void QELLog_setInstrumentationMask(QELLogModule module, DDS_UnsignedLong mask) {
    pexa::base::store(&ModuleMasks::instrumentation, module, mask);
}

DDS_UnsignedLong QELLog_getSubmoduleMask(QELLogModule module) {
    return pexa::base::load(&ModuleMasks::submodules, module);
}

void QELLog_setSubmoduleMask(QELLogModule module, DDS_UnsignedLong mask) {
    pexa::base::store(&ModuleMasks::submodules, module, mask);
}

QELBool QELLog_isEnabled(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level) {
    return pexa::base::is_enabled(module, submodule, level) ? 1 : 0;
}

// A call with variable arguments cannot be forwarded in one line.
void QELLog_printContextAndMsg(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level,
                               const char* context, const QELLogMessageTemplate* message, ...) {
    va_list arguments;
    va_start(arguments, message);
    pexa::base::print(module, submodule, level, context, message, arguments);
    va_end(arguments);
}

void QELLog_setSink(QELLogSink sink, void* sinkData) {
    pexa::base::set_sink(sink, sinkData);
}
