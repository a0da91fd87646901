#include "tests/integration/peer.hpp"

#include <malloc.h>

#include <chrono>
#include <iostream>
#include <thread>
#include <utility>

// Defined by the sanitizers' runtimes.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;

/// Bytes that the program has allocated and not freed, also where a sanitizer keeps freed memory.
std::size_t heap_in_use() {
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return __sanitizer_get_current_allocated_bytes();
    }
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

/// Logs no faster than the queue of @p queue_size messages can take, until all are published.
void log_paced(Logger& logger, int count, int queue_size) {
    const auto wait_for_queue = [](int longest) {
        const std::atomic_ref queued{QEL_KX_Orvane_getMessageQueue()->list.count};
        while (queued.load(std::memory_order_relaxed) > longest) {
            std::this_thread::sleep_for(1ms);
        }
    };
    for (int i = 0; i < count; ++i) {
        if (i % 512 == 0) {
            wait_for_queue(queue_size / 2);
        }
        logger.log(QEL_KX_LEVEL_INFO, "flood", "hello");
    }
    wait_for_queue(0);
    tell("memory " + std::to_string(heap_in_use()));
}

}  // namespace

void flood(int domain_id, int count) {
    constexpr int queue_size = 4096;
    OptionsPointer options = make_options(domain_id);
    QEL_KX_Options_setFilterLevel(options.get(), QEL_KX_LEVEL_TRACE);
    QEL_KX_Options_setQueueSize(options.get(), queue_size);
    report_everything();
    Logger logger;
    logger.start(std::move(options));
    std::string line;
    std::getline(std::cin, line);
    log_paced(logger, count / 10, queue_size);
    log_paced(logger, count - count / 10, queue_size);
    logger.log(QEL_KX_LEVEL_INFO, "com.qel.end", "");
    std::cin.get();
}

}  // namespace orvane::tests
