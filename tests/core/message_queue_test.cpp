#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvane/core.h"
#include "tests/core/faults.hpp"
#include "tests/core/output.hpp"

namespace {

using orvane::test::Fault;
using orvane::test::lent_buffers;
using orvane::test::live_allocations;
using orvane::test::output_of;

constexpr QELNtpTime at_once = {0, 0};
constexpr QELNtpTime ten_milliseconds = {0, 10 * QEL_NTP_TIME_FRAC_PER_MILLISECOND};
constexpr QELNtpTime ten_seconds = {10, 0};

struct Deleter {
    void operator()(QEL_KX_MessageQueue* queue) const { QEL_KX_MessageQueue_delete(queue); }
};
using OwnedQueue = std::unique_ptr<QEL_KX_MessageQueue, Deleter>;

OwnedQueue make_queue(DDS_Long size) {
    const QEL_KX_MessageQueueProperty property = {size};
    return OwnedQueue(QEL_KX_MessageQueue_new(&property));
}

DDS_Boolean push(QEL_KX_MessageQueue& queue, const std::string& message,
                 const std::string& category = "") {
    const QEL_KX_MessageQueueRecord record = {1, 2, 600, category.c_str(), message.c_str(), {3, 4}};
    return QEL_KX_MessageQueue_push(&queue, &record);
}

/// Takes the first message away. "(nothing)" when there is none.
std::string pop(QEL_KX_MessageQueue& queue) {
    const QEL_KX_MessageQueueRecord* front = QEL_KX_MessageQueue_front(&queue, &at_once);
    std::string message = front == nullptr ? "(nothing)" : front->message;
    QEL_KX_MessageQueue_pop(&queue);
    return message;
}

std::string line(const char* operation, const char* message, const char* level = "Error") {
    return std::string("KX ") + level + ": QEL_KX_" + operation + ": " + message + "\n";
}

constexpr const char* push_context = "MessageQueue_push";
constexpr const char* front_context = "MEssageQueue_front";
constexpr const char* pop_context = "MessageQueue_pop";

void push_one(QEL_KX_MessageQueue& queue, bool works) {
    EXPECT_EQ(push(queue, "another"), works ? 1 : 0);
    EXPECT_EQ(lent_buffers(), works ? 2 : 1);
}
void look_at_front(QEL_KX_MessageQueue& queue, bool works) {
    EXPECT_EQ(QEL_KX_MessageQueue_front(&queue, &ten_milliseconds) != nullptr, works);
}
void pop_one(QEL_KX_MessageQueue& queue, bool works) {
    QEL_KX_MessageQueue_pop(&queue);
    EXPECT_EQ(lent_buffers(), works ? 0 : 1);
}

struct Lengths {
    std::size_t message;
    std::size_t category;
    std::size_t kept_message;
    std::size_t kept_category;
    int allocations;
};

constexpr Lengths lengths[] = {
    {0, 0, 0, 0, 0},           {127, 31, 127, 31, 0},     {128, 31, 128, 31, 1},
    {127, 32, 127, 32, 1},     {4096, 512, 4096, 512, 2}, {4097, 513, 4096, 512, 2},
    {5000, 600, 4096, 512, 2},
};

TEST(MessageQueue, KeepsShortTextsInTheElementAndCutsLongOnes) {
    for (const Lengths& length : lengths) {
        SCOPED_TRACE(std::to_string(length.message) + "/" + std::to_string(length.category));
        const OwnedQueue queue = make_queue(1);
        const std::string message(length.message, 'm');
        const std::string category(length.category, 'c');
        const long allocations = live_allocations();
        ASSERT_EQ(push(*queue, message, category), 1);
        EXPECT_EQ(live_allocations() - allocations, length.allocations);
        const QEL_KX_MessageQueueRecord* front = QEL_KX_MessageQueue_front(queue.get(), &at_once);
        ASSERT_NE(front, nullptr);
        EXPECT_EQ(front->message, message.substr(0, length.kept_message));
        EXPECT_EQ(front->category, category.substr(0, length.kept_category));
        QEL_KX_MessageQueue_pop(queue.get());
        EXPECT_EQ(live_allocations(), allocations);
        EXPECT_EQ(lent_buffers(), 0);
    }
}

TEST(MessageQueue, LosesTheNewMessageWhenItIsFull) {
    const OwnedQueue queue = make_queue(1);
    ASSERT_EQ(push(*queue, "first"), 1);
    EXPECT_EQ(output_of([&] { EXPECT_EQ(push(*queue, "second"), 0); }),
              line(push_context, "Max queue size reached, message will get lost", "Warning"));
    EXPECT_EQ(pop(*queue), "first");
    EXPECT_EQ(push(*queue, "third"), 1);
    EXPECT_EQ(pop(*queue), "third");
    EXPECT_EQ(pop(*queue), "(nothing)");
}

TEST(MessageQueue, KeepsTheOrderWhileElementsAreUsedAgain) {
    const OwnedQueue queue = make_queue(3);
    for (int round = 0; round < 5; ++round) {
        for (const char* message : {"a", "b", "c"}) {
            ASSERT_EQ(push(*queue, message), 1);
        }
        EXPECT_EQ(pop(*queue), "a");
        ASSERT_EQ(push(*queue, "d"), 1);
        EXPECT_EQ(pop(*queue), "b");
        EXPECT_EQ(pop(*queue), "c");
        EXPECT_EQ(pop(*queue), "d");
    }
}

TEST(MessageQueue, ShowsAMessageThatWasNotPoppedAgainOnlyAfterAnotherPush) {
    const OwnedQueue queue = make_queue(2);
    push(*queue, "first");
    ASSERT_NE(QEL_KX_MessageQueue_front(queue.get(), &at_once), nullptr);
    EXPECT_EQ(QEL_KX_MessageQueue_front(queue.get(), &at_once), nullptr);
    push(*queue, "second");
    EXPECT_EQ(pop(*queue), "first");
    EXPECT_EQ(pop(*queue), "(nothing)") << "the second message's unit was used up by the first";
}

TEST(MessageQueue, FreesTheLongTextsThatItStillHolds) {
    const long allocations = live_allocations();
    OwnedQueue queue = make_queue(2);
    push(*queue, std::string(128, 'x'), std::string(32, 'y'));
    push(*queue, std::string(128, 'x'), std::string(32, 'y'));
    queue.reset();
    EXPECT_EQ(live_allocations(), allocations);
    EXPECT_EQ(lent_buffers(), 0);
}

struct PushFault {
    const char* function;
    int call;
    const char* message;
    const char* report;
};

const std::string long_text(200, 'x');

TEST(MessageQueue, IsUnchangedByAPushThatFails) {
    constexpr PushFault faults[] = {
        {"QELOsapiSemaphore_take", 1, "m", "Unable to take message queue mutex"},
        {"MOSKFastBufferPool_getBuffer", 1, "m", "Unable to get new queue element"},
        {"DDS_String_alloc", 1, "m", "Unable to allocate message"},
        {"DDS_String_alloc", 2, "m", "Unable to allocate category"},
    };
    for (const PushFault& fault : faults) {
        const OwnedQueue queue = make_queue(2);
        ASSERT_EQ(push(*queue, "before"), 1);
        const long allocations = live_allocations();
        const long buffers = lent_buffers();
        {
            const Fault injected(fault.function, fault.call);
            EXPECT_EQ(output_of([&] { EXPECT_EQ(push(*queue, long_text, long_text), 0); }),
                      line(push_context, fault.report));
        }
        EXPECT_EQ(live_allocations(), allocations) << fault.report;
        EXPECT_EQ(lent_buffers(), buffers) << fault.report;
        EXPECT_EQ(push(*queue, "after"), 1);
        EXPECT_EQ(pop(*queue), "before");
        EXPECT_EQ(pop(*queue), "after");
        EXPECT_EQ(pop(*queue), "(nothing)");
    }
}

TEST(MessageQueue, ReportsASemaphoreThatFailsAndGoesOnWhereItCan) {
    const struct {
        const char* function;
        int call;
        /// What is called, and whether it does its work all the same.
        void (*operation)(QEL_KX_MessageQueue& queue, bool works);
        bool works;
        const char* context;
        const char* report;
    } cases[] = {
        {"QELOsapiSemaphore_give", 1, push_one, true, push_context,
         "Unable to give message queue mutex"},
        {"QELOsapiSemaphore_give", 2, push_one, true, push_context,
         "Unable to give message queue counting semaphore"},
        {"QELOsapiSemaphore_take", 1, look_at_front, false, front_context,
         "Unable to take message queue counting semaphore"},
        {"QELOsapiSemaphore_take", 2, look_at_front, false, front_context,
         "Unable to take message queue mutex"},
        {"QELOsapiSemaphore_give", 1, look_at_front, true, front_context,
         "Unable to give message queue mutex"},
        {"QELOsapiSemaphore_take", 1, pop_one, false, pop_context,
         "Unable to take message queue mutex"},
        {"QELOsapiSemaphore_give", 1, pop_one, true, pop_context,
         "Unable to give message queue mutex"},
    };
    for (const auto& one : cases) {
        const OwnedQueue queue = make_queue(2);
        push(*queue, "queued");
        const Fault fault(one.function, one.call);
        EXPECT_EQ(output_of([&] { one.operation(*queue, one.works); }),
                  line(one.context, one.report));
    }
}

TEST(MessageQueue, ReportsALossBeforeAMutexThatIsNotGivenBack) {
    const OwnedQueue queue = make_queue(1);
    push(*queue, "queued");
    const Fault fault("QELOsapiSemaphore_give");
    EXPECT_EQ(output_of([&] { push_one(*queue, false); }),
              line(push_context, "Max queue size reached, message will get lost", "Warning") +
                  line(push_context, "Unable to give message queue mutex"));
}

TEST(MessageQueue, IsNotMadeWithoutMemoryForItsRecord) {
    const Fault fault("QELOsapiHeap_allocateStructureOfSize");
    EXPECT_EQ(output_of([] { EXPECT_EQ(make_queue(1), nullptr); }),
              line("MessageQueue_new", "Unable to allocate memory for Message Queue"));
}

struct PartFault {
    const char* function;
    int call;
    const char* report;
    const char* push_report;
};

TEST(MessageQueue, LacksAPartThatCouldNotBeMadeAndRefusesEveryPush) {
    constexpr PartFault faults[] = {
        {"QELOsapiSemaphore_new", 1, "Unable to create mutex",
         "Unable to take message queue mutex"},
        {"QELOsapiSemaphore_new", 2, "Unable to create counting semaphore",
         "Unable to get new queue element"},
        {"MOSKFastBufferPool_new", 1, "Unable to create element pool",
         "Unable to get new queue element"},
    };
    for (const PartFault& fault : faults) {
        SCOPED_TRACE(fault.report);
        const long allocations = live_allocations();
        OwnedQueue queue;
        {
            const Fault injected(fault.function, fault.call);
            EXPECT_EQ(output_of([&] { queue = make_queue(1); }),
                      line("MessageQueue_new", fault.report));
        }
        ASSERT_NE(queue, nullptr);
        EXPECT_EQ(output_of([&] { EXPECT_EQ(push(*queue, "lost"), 0); }),
                  line(push_context, fault.push_report));
        static_cast<void>(output_of([&] { EXPECT_EQ(pop(*queue), "(nothing)"); }));
        queue.reset();
        EXPECT_EQ(live_allocations(), allocations);
    }
}

TEST(MessageQueue, GivesTheConsumerWhatSeveralProducersPushEachInItsOrder) {
    constexpr int producers = 3;
    constexpr int messages = 400;
    const OwnedQueue queue = make_queue(16);
    std::vector<std::jthread> threads;
    std::string silence = output_of([&] {
        for (int producer = 0; producer < producers; ++producer) {
            threads.emplace_back([&queue, producer] {
                for (int number = 0; number < messages;) {
                    // Every third is too long for the element's own buffer.
                    const std::string text = std::to_string(number) + "." +
                                             std::string(number % 3 == 0 ? 150U : 1U, '.');
                    number += push(*queue, text, std::to_string(producer));
                    std::this_thread::yield();
                }
            });
        }
        int next[producers] = {};
        for (int received = 0; received < producers * messages; ++received) {
            const QEL_KX_MessageQueueRecord* front =
                QEL_KX_MessageQueue_front(queue.get(), &ten_seconds);
            ASSERT_NE(front, nullptr);
            int& expected = next[std::stoi(front->category)];
            ASSERT_EQ(std::stoi(front->message), expected);
            ++expected;
            QEL_KX_MessageQueue_pop(queue.get());
        }
        threads.clear();
    });
    EXPECT_EQ(pop(*queue), "(nothing)");
    EXPECT_EQ(lent_buffers(), 0);
}

}  // namespace
