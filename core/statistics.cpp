#include "core/statistics.hpp"

#include <algorithm>
#include <atomic>

namespace orvane::core {
namespace {

/// A number with one writer at a time.
template <typename Value>
class Counted {
public:
    Value get() const noexcept { return value_.load(std::memory_order_acquire); }
    void set(Value value) noexcept { value_.store(value, std::memory_order_release); }
    void add(Value more) noexcept { set(value_.load(std::memory_order_relaxed) + more); }

private:
    std::atomic<Value> value_{0};
};

using Number = Counted<DDS_UnsignedLongLong>;

/// The writers of the two parts do not share a cache line.
constexpr std::size_t cache_line = 64;

struct alignas(cache_line) OfCalls {
    Number accepted;
    Number refused_for_room;
    Number refused_for_memory;
    Counted<DDS_Long> most_queued;
    Counted<DDS_Long> queue_size;
};
struct alignas(cache_line) OfWriteThread {
    Number published;
    Number discarded;
    Number write_timeouts;
};
constinit OfCalls of_calls;
constinit OfWriteThread of_write_thread;
/// Of the logger. It is set before messages come, and compared only.
constinit std::atomic<const QEL_KX_MessageQueue*> counted_queue = nullptr;

void add_if_counted(const QEL_KX_MessageQueue& queue, Number& number) noexcept {
    if (is_counted(queue)) {
        number.add(1);
    }
}

}  // namespace

void restart_statistics(DDS_Long queue_size) noexcept {
    for (Number* number : {&of_calls.accepted, &of_calls.refused_for_room,
                           &of_calls.refused_for_memory, &of_write_thread.published,
                           &of_write_thread.discarded, &of_write_thread.write_timeouts}) {
        number->set(0);
    }
    of_calls.most_queued.set(0);
    of_calls.queue_size.set(queue_size);
    counted_queue.store(nullptr, std::memory_order_relaxed);
}

void count_messages_of(const QEL_KX_MessageQueue& queue) noexcept {
    counted_queue.store(&queue, std::memory_order_relaxed);
}

bool is_counted(const QEL_KX_MessageQueue& queue) noexcept {
    return counted_queue.load(std::memory_order_relaxed) == &queue;
}

void count_accepted(const QEL_KX_MessageQueue& queue) noexcept {
    if (is_counted(queue)) {
        of_calls.accepted.add(1);
        of_calls.most_queued.set(std::max(of_calls.most_queued.get(), queue.list.count));
    }
}

void count_refused_for_room(const QEL_KX_MessageQueue& queue) noexcept {
    add_if_counted(queue, of_calls.refused_for_room);
}

void count_refused_for_memory(const QEL_KX_MessageQueue& queue) noexcept {
    add_if_counted(queue, of_calls.refused_for_memory);
}

void count_published(const QEL_KX_MessageQueue& queue) noexcept {
    add_if_counted(queue, of_write_thread.published);
}

void count_write_timeout(const QEL_KX_MessageQueue& queue) noexcept {
    add_if_counted(queue, of_write_thread.write_timeouts);
}

void count_discarded(const QEL_KX_MessageQueue& queue) noexcept {
    add_if_counted(queue, of_write_thread.discarded);
}

void end_counting(const QEL_KX_MessageQueue& queue) noexcept {
    if (is_counted(queue)) {
        of_write_thread.discarded.add(static_cast<DDS_UnsignedLongLong>(queue.list.count));
        counted_queue.store(nullptr, std::memory_order_relaxed);
    }
}

QEL_KX_Statistics read_statistics() noexcept {
    QEL_KX_Statistics now{};
    // A message is accepted before it is anything else.
    now.published = of_write_thread.published.get();
    now.discarded = of_write_thread.discarded.get();
    now.writeTimeouts = of_write_thread.write_timeouts.get();
    now.accepted = of_calls.accepted.get();
    now.refusedForRoom = of_calls.refused_for_room.get();
    now.refusedForMemory = of_calls.refused_for_memory.get();
    now.mostQueued = of_calls.most_queued.get();
    now.queueSize = of_calls.queue_size.get();
    now.queued = static_cast<DDS_Long>(now.accepted - now.published - now.discarded);
    return now;
}

}  // namespace orvane::core

void QEL_KX_Orvane_getStatistics(QEL_KX_Statistics* statistics) {
    if (statistics != nullptr) {
        *statistics = orvane::core::read_statistics();
    }
}
