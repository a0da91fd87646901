#include <memory>
#include <thread>
#include <tuple>

#include "orvane/core.h"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

constexpr QELNtpTime at_once = {0, 0};
constexpr QELNtpTime twenty_seconds = {20, 0};

struct DeleteQueue {
    void operator()(QEL_KX_MessageQueue* queue) const { QEL_KX_MessageQueue_delete(queue); }
};
using Queue = std::unique_ptr<QEL_KX_MessageQueue, DeleteQueue>;

Queue make_queue(DDS_Long size) {
    const QEL_KX_MessageQueueProperty property = {size};
    return Queue(QEL_KX_MessageQueue_new(&property));
}

DDS_Boolean push(QEL_KX_MessageQueue& queue, std::string message, std::string category = "") {
    const QEL_KX_MessageQueueRecord record = {{{1, 2}, 600, category.data(), message.data()},
                                              {3, 4}};
    return QEL_KX_MessageQueue_push(&queue, &record);
}

/// Takes the first message away. "(nothing)" when there is none.
std::string pop(QEL_KX_MessageQueue& queue) {
    const QEL_KX_MessageQueueRecord* front = QEL_KX_MessageQueue_front(&queue, &at_once);
    std::string message = front == nullptr ? "(nothing)" : front->sample.message;
    QEL_KX_MessageQueue_pop(&queue);
    return message;
}
constexpr const char* push_context = "QEL_KX_MessageQueue_push";

TEST(MessageQueue, WakesItsConsumerWhenHalfOfItIsFull) {
    std::vector<DDS_Long> wake_counts;
    const Stub<decltype(QELOsapiSemaphore_new)> creation(
        "QELOsapiSemaphore_new",
        [&](QELOsapiSemaphoreKind kind, const QELOsapiSemaphoreProperty* property) {
            if (property != nullptr) {
                wake_counts.push_back(property->wakeCount);
            }
            return creation.real(kind, property);
        });
    make_queue(8);
    make_queue(1);
    EXPECT_EQ(wake_counts, (std::vector<DDS_Long>{4, 1}));
}

TEST(MessageQueue, KeepsShortTextsInTheElementAndCutsLongOnes) {
    constexpr struct {
        std::size_t message;
        std::size_t category;
        std::size_t kept_message;
        std::size_t kept_category;
        int allocations;
    } lengths[] = {
        {0, 0, 0, 0, 0},           {127, 31, 127, 31, 0},     {128, 31, 128, 31, 1},
        {127, 32, 127, 32, 1},     {4096, 512, 4096, 512, 2}, {4097, 513, 4096, 512, 2},
        {5000, 600, 4096, 512, 2},
    };
    for (const auto& length : lengths) {
        SCOPED_TRACE(std::to_string(length.message) + "/" + std::to_string(length.category));
        const long blocks_without_queue = live_blocks();
        Queue queue = make_queue(1);
        const std::string message(length.message, 'm');
        const std::string category(length.category, 'c');
        const long blocks = live_blocks();
        ASSERT_EQ(push(*queue, message, category), 1);
        EXPECT_EQ(live_blocks() - blocks, length.allocations);
        const QEL_KX_MessageQueueRecord* front = QEL_KX_MessageQueue_front(queue.get(), &at_once);
        ASSERT_NE(front, nullptr);
        EXPECT_EQ(front->sample.message, message.substr(0, length.kept_message));
        EXPECT_EQ(front->sample.category, category.substr(0, length.kept_category));
        QEL_KX_MessageQueue_pop(queue.get());
        const Calls allocations("DDS_String_alloc");
        ASSERT_EQ(push(*queue, message, category), 1);
        EXPECT_EQ(allocations.count(), 0) << "the memory is used again";
        queue.reset();
        EXPECT_EQ(live_blocks(), blocks_without_queue);
    }
}

TEST(MessageQueue, KeepsTheMemoryOfSomeLongTextsOnly) {
    constexpr struct {
        std::size_t length;
        int kept;
    } sizes[] = {{512, 256}, {513, 64}, {1025, 32}, {4096, 32}};
    for (const auto& size : sizes) {
        SCOPED_TRACE(size.length);
        const Queue queue = make_queue(300);
        const std::string text(size.length, 'x');
        const long blocks = live_blocks();
        for (int number = 0; number < 300; ++number) {
            ASSERT_EQ(push(*queue, text), 1);
        }
        while (queue->list.count > 0) {
            QEL_KX_MessageQueue_pop(queue.get());
        }
        EXPECT_EQ(live_blocks() - blocks, size.kept);
    }
}

TEST(MessageQueue, ShowsAMessageThatWasNotPoppedAgainOnlyAfterAnotherPush) {
    const Queue queue = make_queue(2);
    push(*queue, "first");
    ASSERT_NE(QEL_KX_MessageQueue_front(queue.get(), &at_once), nullptr);
    EXPECT_EQ(QEL_KX_MessageQueue_front(queue.get(), &at_once), nullptr);
    push(*queue, "second");
    EXPECT_EQ(pop(*queue), "first");
    EXPECT_EQ(pop(*queue), "(nothing)") << "the second message's unit was used up by the first";
}

TEST(MessageQueue, IsUnchangedByAPushThatFails) {
    const struct {
        const char* function;
        int call;
        std::string report;
    } faults[] = {
        {"QELOsapiSemaphore_take", 1, line(push_context, "Unable to take message queue mutex")},
        {"MOSKFastBufferPool_getBuffer", 1, line(push_context, "Unable to get new queue element")},
        {"DDS_String_alloc", 1, line(push_context, "Unable to allocate message")},
        {"DDS_String_alloc", 2, line(push_context, "Unable to allocate category")},
    };
    const std::string long_text(200, 'x');
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.report);
        const long blocks = live_blocks();
        Queue queue = make_queue(2);
        ASSERT_EQ(push(*queue, "before"), 1);
        {
            const Fault injected(fault.function, fault.call);
            EXPECT_EQ(output_of([&] { EXPECT_EQ(push(*queue, long_text, long_text), 0); }),
                      fault.report);
        }
        EXPECT_EQ(push(*queue, "after"), 1) << "no element is lost";
        EXPECT_EQ(output_of([&] { EXPECT_EQ(push(*queue, long_text), 0) << "it is full"; }),
                  line(push_context, "Max queue size reached, message will get lost", "Warning"));
        EXPECT_EQ(pop(*queue), "before");
        EXPECT_EQ(pop(*queue), "after");
        EXPECT_EQ(push(*queue, "again"), 1);
        EXPECT_EQ(pop(*queue), "again");
        EXPECT_EQ(pop(*queue), "(nothing)");
        queue.reset();
        EXPECT_EQ(live_blocks(), blocks);
    }
}

TEST(MessageQueue, LacksAPartThatCouldNotBeMadeAndRefusesEveryPush) {
    const long blocks = live_blocks();
    for (const auto& [call, report, push_report] :
         {std::tuple{1, "Unable to create mutex", "Unable to take message queue mutex"},
          {2, "Unable to create counting semaphore", "Unable to get new queue element"}}) {
        Queue queue;
        {
            const Fault fault("QELOsapiSemaphore_new", call);
            EXPECT_EQ(output_of([&] { queue = make_queue(1); }),
                      line("QEL_KX_MessageQueue_new", report));
        }
        EXPECT_EQ(output_of([&] { EXPECT_EQ(push(*queue, "lost"), 0); }),
                  line(push_context, push_report));
        // A consumer that asks again and again must not spin.
        const Calls sleeps("QELOsapiThread_sleep");
        static_cast<void>(output_of([&] { EXPECT_EQ(pop(*queue), "(nothing)"); }));
        EXPECT_EQ(sleeps.count(), 1);
    }
    EXPECT_EQ(live_blocks(), blocks);
}

TEST(MessageQueue, GivesTheConsumerWhatSeveralProducersPushEachInItsOrder) {
    constexpr int messages = 400;
    const Queue queue = make_queue(16);
    const auto produce = [&](int producer) {
        for (int number = 0; number < messages;) {
            // Every third is too long for the element's own buffer.
            const std::string rest(number % 3 == 0 ? 150U : 1U, '.');
            number += push(*queue, std::to_string(number) + rest, std::to_string(producer));
            std::this_thread::yield();
        }
    };
    // A full queue says so.
    static_cast<void>(output_of([&] {
        int next[3] = {};
        std::vector<std::jthread> threads;
        for (const int producer : {0, 1, 2}) {
            threads.emplace_back(produce, producer);
        }
        for (int received = 0; received < 3 * messages; ++received) {
            const auto* front = QEL_KX_MessageQueue_front(queue.get(), &twenty_seconds);
            ASSERT_NE(front, nullptr);
            ASSERT_EQ(std::stoi(front->sample.message), next[std::stoi(front->sample.category)]++);
            QEL_KX_MessageQueue_pop(queue.get());
        }
    }));
    EXPECT_EQ(pop(*queue), "(nothing)");
}

}  // namespace
}  // namespace orvane::test
