#include "platform/engine/log.hpp"

#include <dds/dds.h>

#include <array>
#include <atomic>
#include <mutex>

#include "platform/engine/cyclone/domain_trace.hpp"

namespace pexa::engine {

namespace {

struct CategoryBit {
    LogCategory category;
    std::uint32_t bit;
};

// A line with several bits counts as the first of them.
constexpr std::array<CategoryBit, log_category_count> category_bits{{
    {LogCategory::fatal, DDS_LC_FATAL},
    {LogCategory::error, DDS_LC_ERROR},
    {LogCategory::warning, DDS_LC_WARNING},
    {LogCategory::info, DDS_LC_INFO},
    {LogCategory::config, DDS_LC_CONFIG},
    {LogCategory::discovery, DDS_LC_DISCOVERY},
    {LogCategory::data, DDS_LC_DATA},
    {LogCategory::radmin, DDS_LC_RADMIN},
    {LogCategory::timing, DDS_LC_TIMING},
    {LogCategory::traffic, DDS_LC_TRAFFIC},
    {LogCategory::topic, DDS_LC_TOPIC},
    {LogCategory::tcp, DDS_LC_TCP},
    {LogCategory::plist, DDS_LC_PLIST},
    {LogCategory::whc, DDS_LC_WHC},
    {LogCategory::throttle, DDS_LC_THROTTLE},
    {LogCategory::rhc, DDS_LC_RHC},
    {LogCategory::content, DDS_LC_CONTENT},
    {LogCategory::trace, DDS_LC_TRACE},
}};

LogCategory category_of(std::uint32_t priority) {
    for (const CategoryBit& entry : category_bits) {
        if ((priority & entry.bit) != 0) {
            return entry.category;
        }
    }
    return LogCategory::trace;
}

std::uint32_t engine_mask(LogMask mask) {
    std::uint32_t bits = 0;
    for (const CategoryBit& entry : category_bits) {
        if ((mask & log_bit(entry.category)) != 0) {
            bits |= entry.bit;
        }
    }
    return bits;
}

struct Target {
    LogSink sink = nullptr;
    void* context = nullptr;
};

std::mutex installation_mutex;
// Written only while neither of the engine's sinks leads here.
Target target;
std::atomic<LogMask> chosen_mask{log_bit(LogCategory::fatal) | log_bit(LogCategory::error) |
                                 log_bit(LogCategory::warning)};

extern "C" void forward_log(void*, const dds_log_data_t* data) {
    const LogCategory category = category_of(data->priority);
    const LogMask passing =
        chosen_mask.load(std::memory_order_relaxed) | log_bit(LogCategory::fatal);
    if ((passing & log_bit(category)) == 0) {
        return;
    }
    std::string_view text(data->message, data->size);
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        if (!line.empty()) {
            target.sink(target.context, category, line);
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

}  // namespace

void set_log_sink(LogSink sink, void* context) noexcept {
    const std::lock_guard lock(installation_mutex);
    // Each call waits until no thread uses the former sink.
    dds_set_log_sink(nullptr, nullptr);
    dds_set_trace_sink(nullptr, nullptr);
    target = {sink, context};
    if (sink == nullptr) {
        return;
    }
    // The same function and argument for both: the engine then hands over a line only once.
    dds_set_log_sink(forward_log, &target);
    dds_set_trace_sink(forward_log, &target);
}

void set_log_mask(LogMask mask) noexcept {
    const std::lock_guard lock(installation_mutex);
    chosen_mask.store(mask, std::memory_order_relaxed);
    dds_set_log_mask(engine_mask(mask));
    cyclone::set_trace_mask(engine_mask(mask));
}

LogMask log_mask() noexcept {
    return chosen_mask.load(std::memory_order_relaxed);
}

}  // namespace pexa::engine
