#include "pexa/log.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>

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
    std::printf("%s\n", text);
}

constexpr unsigned module_count = 3;
constexpr size_t most_text = 1023;

constinit ModuleMasks masks[module_count];

// Held while the pair is copied, so that a function never meets another one's data; a report that
// gets this far is going to format text and to be written somewhere.
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

}  // namespace

DDS_UnsignedLong QELLog_getInstrumentationMask(QELLogModule module) {
    const ModuleMasks* found = masks_of(module);
    return found == nullptr ? 0 : found->instrumentation.load(std::memory_order_relaxed);
}

void QELLog_setInstrumentationMask(QELLogModule module, DDS_UnsignedLong mask) {
    if (ModuleMasks* found = masks_of(module)) {
        found->instrumentation.store(mask, std::memory_order_relaxed);
    }
}

DDS_UnsignedLong QELLog_getSubmoduleMask(QELLogModule module) {
    const ModuleMasks* found = masks_of(module);
    return found == nullptr ? 0 : found->submodules.load(std::memory_order_relaxed);
}

void QELLog_setSubmoduleMask(QELLogModule module, DDS_UnsignedLong mask) {
    if (ModuleMasks* found = masks_of(module)) {
        found->submodules.store(mask, std::memory_order_relaxed);
    }
}

QELBool QELLog_isEnabled(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level) {
    if (level < QEL_LOG_LEVEL_ERROR || level > QEL_LOG_LEVEL_STATUS_ALL) {
        return 0;
    }
    const bool enabled = (QELLog_getInstrumentationMask(module) & QEL_LOG_BIT(level)) != 0 &&
                         (QELLog_getSubmoduleMask(module) & submodule) != 0;
    return enabled ? 1 : 0;
}

void QELLog_printContextAndMsg(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level,
                               const char* context, const QELLogMessageTemplate* message, ...) {
    if (message == nullptr || QELLog_isEnabled(module, submodule, level) == 0) {
        return;
    }
    char text[most_text + 1];
    va_list arguments;
    va_start(arguments, message);
    format(text, context, message->format, arguments);
    va_end(arguments);
    const Sink sink = get_sink();
    sink.function(sink.data, module, level, text);
}

void QELLog_setSink(QELLogSink sink, void* sinkData) {
    const std::lock_guard guard(sink_mutex);
    current_sink = sink == nullptr ? Sink{print_to_standard_output, nullptr} : Sink{sink, sinkData};
}
