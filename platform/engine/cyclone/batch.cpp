#include "platform/engine/cyclone/batch.hpp"

#include <ctime>
#include <limits>

namespace pexa::engine::cyclone {

namespace {

// Moves on with the kernel's ticks, every few milliseconds, and costs a quarter of the exact clock.
std::int64_t tick() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * 1'000'000'000 + now.tv_nsec;
}

// Any thread's heartbeat names the oldest sample of the history as the first that there is. A
// sample that the history has dropped by then is lost, even if it is sent afterwards.
std::int64_t most_samples(const Qos& qos) {
    if (!qos.batching.value_or(false)) {
        return 0;
    }
    const HistoryPolicy history = qos.history.value_or(HistoryPolicy{});
    return history.kind == HistoryKind::keep_all ? std::numeric_limits<std::int64_t>::max()
                                                 : history.depth;
}

}  // namespace

Batch::Batch(const Qos& qos) : limit_(most_samples(qos)) {}

bool Batch::is_old() const {
    return samples_.load(std::memory_order_relaxed) > 0 &&
           tick() != first_at_.load(std::memory_order_relaxed);
}

bool Batch::add() {
    if (limit_ == 0) {
        return false;
    }
    const std::int64_t before = samples_.fetch_add(1, std::memory_order_relaxed);
    if (before == 0) {
        first_at_.store(tick(), std::memory_order_relaxed);
    }
    return before + 1 >= limit_;
}

}  // namespace pexa::engine::cyclone
