#include "core/filter.hpp"

#include <limits>
#include <memory>
#include <mutex>

#include "core/shared_field.hpp"

namespace orvane::core {
namespace {

constexpr DDS_Long none = std::numeric_limits<DDS_Long>::min();
constexpr DDS_Long all = std::numeric_limits<DDS_Long>::max();

// Makes reading the settings and storing the threshold one step. After two changes at the same time
// the threshold then follows the later one. No other lock is taken while it is held.
constinit std::mutex mutex;
constinit const QEL_KX_Orvane* followed = nullptr;

void refresh_with_mutex() noexcept {
    const DDS_Long level = followed == nullptr ? none
                           : load(followed->options->echo_to_stdout) == 1
                               ? all
                               : load(followed->filterLevel);
    call_start.last_traced_level.store(followed == nullptr ? all : level,
                                       std::memory_order_relaxed);
    call_start.last_enabled_level.store(level, std::memory_order_relaxed);
}

}  // namespace

void follow_filter_of(const QEL_KX_Orvane* self) noexcept {
    const std::lock_guard lock(mutex);
    followed = self;
    refresh_with_mutex();
}

void refresh_filter() noexcept {
    const std::lock_guard lock(mutex);
    refresh_with_mutex();
}

void free_filter_lock() noexcept {
    std::construct_at(&mutex);
}

void silence_filter() noexcept {
    followed = nullptr;
    call_start.last_traced_level.store(none, std::memory_order_relaxed);
    call_start.last_enabled_level.store(none, std::memory_order_relaxed);
}

}  // namespace orvane::core
