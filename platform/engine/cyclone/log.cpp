#include "platform/engine/log.hpp"

#include <dds/dds.h>

#include <atomic>
#include <mutex>
#include <new>

#include "platform/engine/cyclone/domain_trace.hpp"
#include "platform/engine/cyclone/never_destroyed.hpp"
#include "platform/engine/cyclone/refusals.hpp"
#include "platform/internal/standard_error.hpp"

namespace pexa::engine {

namespace {

struct CategoryRow {
    std::uint32_t bits;
    LogCategory category;
};

// A line with bits of several rows belongs to the first of them.
constexpr CategoryRow category_rows[] = {
    {DDS_LC_FATAL, LogCategory::fatal},
    {DDS_LC_ERROR, LogCategory::error},
    {DDS_LC_WARNING, LogCategory::warning},
    {DDS_LC_INFO, LogCategory::info},
    {DDS_LC_CONFIG, LogCategory::configuration},
    {DDS_LC_DISCOVERY, LogCategory::discovery},
    {DDS_LC_DATA | DDS_LC_RADMIN, LogCategory::traffic},
    {DDS_LC_TIMING, LogCategory::internals},
    {DDS_LC_TRAFFIC, LogCategory::traffic},
    {DDS_LC_TOPIC, LogCategory::topics},
    {DDS_LC_TCP, LogCategory::traffic},
    {DDS_LC_PLIST | DDS_LC_WHC, LogCategory::storage},
    {DDS_LC_THROTTLE, LogCategory::traffic},
    {DDS_LC_RHC | DDS_LC_CONTENT, LogCategory::storage},
    {DDS_LC_TRACE, LogCategory::internals},
};

LogCategory category_of(std::uint32_t bits) {
    for (const CategoryRow& row : category_rows) {
        if ((bits & row.bits) != 0) {
            return row.category;
        }
    }
    return LogCategory::internals;
}

std::uint32_t to_cyclone(LogMask mask) {
    std::uint32_t bits = 0;
    for (const CategoryRow& row : category_rows) {
        if ((mask & log_bit(row.category)) != 0) {
            bits |= row.bits;
        }
    }
    return bits;
}

struct Target {
    LogSink sink = nullptr;
    void* context = nullptr;
};

cyclone::RefusalLimit& refusal_limit() {
    static cyclone::NeverDestroyed<cyclone::RefusalLimit> limit;
    return limit.get();
}

thread_local HiddenErrors* errors_of_thread = nullptr;

std::mutex installation_mutex;
// Written only while neither of Cyclone's sinks leads here.
Target target;
std::atomic<LogMask> chosen_mask{log_bit(LogCategory::fatal) | log_bit(LogCategory::error) |
                                 log_bit(LogCategory::warning)};

extern "C" void forward_log(void*, const dds_log_data_t* data) {
    std::string_view text(data->message, data->size);
    LogCategory category = category_of(data->priority);
    const bool is_refusal = category == LogCategory::warning && cyclone::is_refusal(text);
    if (is_refusal) {
        category = LogCategory::error;
    }
    const LogMask passing =
        chosen_mask.load(std::memory_order_relaxed) | log_bit(LogCategory::fatal);
    const bool passes = (passing & log_bit(category)) != 0;
    if (!passes && category != LogCategory::error) {
        return;
    }
    if (passes && is_refusal &&
        !refusal_limit().passes(text, cyclone::RefusalLimit::Clock::now())) {
        return;
    }
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        if (!line.empty()) {
            if (category == LogCategory::fatal) {
                // The process ends right after this line.
                write_to_standard_error(1000, line);
            }
            if (passes) {
                target.sink(target.context, category, line);
            } else {
                HiddenErrors::note(line);
            }
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

}  // namespace

HiddenErrors::HiddenErrors() noexcept {
    errors_of_thread = this;
}

HiddenErrors::~HiddenErrors() {
    errors_of_thread = nullptr;
}

void HiddenErrors::note(std::string_view line) noexcept {
    if (errors_of_thread != nullptr) {
        try {
            errors_of_thread->lines_.emplace_back(line);
        } catch (const std::bad_alloc&) {
            // The failure itself is reported all the same.
            return;
        }
    }
}

void set_log_sink(LogSink sink, void* context) noexcept {
    const std::lock_guard lock(installation_mutex);
    // Each call waits until no thread uses the former sink.
    dds_set_log_sink(nullptr, nullptr);
    dds_set_trace_sink(nullptr, nullptr);
    target = {sink, context};
    if (sink == nullptr) {
        return;
    }
    // With the same function and argument for both, Cyclone hands over each line only once.
    dds_set_log_sink(forward_log, &target);
    dds_set_trace_sink(forward_log, &target);
}

void set_log_mask(LogMask mask) noexcept {
    const std::lock_guard lock(installation_mutex);
    chosen_mask.store(mask, std::memory_order_relaxed);
    // Errors and warnings always come as far as forward_log, which looks for those that count.
    dds_set_log_mask(
        to_cyclone(mask | log_bit(LogCategory::error) | log_bit(LogCategory::warning)));
    cyclone::set_trace_mask(to_cyclone(mask));
}

}  // namespace pexa::engine
