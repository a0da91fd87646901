#include <memory>
#include <numeric>
#include <thread>

#include "core/message_queue.hpp"
#include "core/shared_field.hpp"
#include "core/write_thread.hpp"
#include "orvane/core.h"
#include "pexa/publication.h"
#include "tests/support/events.hpp"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

constexpr QELNtpTime a_long_time = {20, 0};

/// Takes what is written and flushed, and answers writes from a list of results.
class ScriptedWriter {
public:
    /// Results of the first writes; the later ones succeed.
    explicit ScriptedWriter(std::vector<DDS_ReturnCode_t> results = {})
        : results_(std::move(results)) {}

    QEL_KX_LogMessageDataWriter* handle() {
        return reinterpret_cast<QEL_KX_LogMessageDataWriter*>(this);
    }
    Events<std::string> messages;
    Events<std::size_t> flushes;  ///< each with the number of writes before it

    /// What the writing thread does in the middle of each write and in each flush, which get the
    /// number of those before. To be set before there is a thread.
    std::function<void(std::size_t)> during_writes;
    std::function<void(std::size_t)> during_flushes;

private:
    DDS_ReturnCode_t write(const QEL_KX_LogMessage& sample, const DDS_Time_t& time) {
        if (during_writes) {
            during_writes(writes_);
        }
        messages.add(std::to_string(sample.hostAndAppId.rtps_host_id) + " " +
                     std::to_string(sample.hostAndAppId.rtps_app_id) + " " +
                     std::to_string(sample.level) + " " + sample.category + " " + sample.message +
                     " " + std::to_string(time.sec) + "." + std::to_string(time.nanosec));
        return ++writes_ <= results_.size() ? results_[writes_ - 1] : DDS_RETCODE_OK;
    }
    DDS_ReturnCode_t flush() {
        if (during_flushes) {
            during_flushes(flushes.await(0).size());
        }
        flushes.add(writes_);
        return DDS_RETCODE_OK;
    }

    std::vector<DDS_ReturnCode_t> results_;
    std::size_t writes_ = 0;  ///< Of the writing thread.
    Stub<decltype(DDS_DataWriter_write_untypedI)> write_{
        "DDS_DataWriter_write_untypedI",
        [this](DDS_DataWriter*, const void* sample, const DDS_WriteParams_t* params) {
            return write(*static_cast<const QEL_KX_LogMessage*>(sample), params->source_timestamp);
        }};
    Stub<decltype(DDS_DataWriter_flush)> flush_{"DDS_DataWriter_flush",
                                                [this](DDS_DataWriter*) { return flush(); }};
};

/// Stops the thread before it deletes it, as the logger does.
struct StopAndDelete {
    void operator()(LogMessageWriteThread* thread) const {
        core::store(thread->run, 0);
        LogMessageWriteThread_delete(thread);
    }
};
using WriteThreadRecord = std::unique_ptr<LogMessageWriteThread, StopAndDelete>;

WriteThreadRecord start(ScriptedWriter& writer, DDS_Long queue_size = 8,
                        const DDS_ThreadSettings_t* settings = nullptr) {
    DDS_ThreadSettings_t defaults;
    DDS_ThreadSettings_t_initialize(&defaults);
    return WriteThreadRecord(LogMessageWriteThread_create(
        writer.handle(), queue_size, settings == nullptr ? &defaults : settings));
}

void push(LogMessageWriteThread& thread, std::string message) {
    char category[] = "category";
    const QEL_KX_MessageQueueRecord record = {{{-7, 2}, 300, category, message.data()}, {5, 6}};
    ASSERT_EQ(QEL_KX_MessageQueue_push(thread.messageQueue, &record), 1);
}

std::string written(const char* message) {
    return std::string("-7 2 300 category ") + message + " 5.6";
}

TEST(WriteThread, LosesAMessageThatFailedAndReportsIt) {
    ScriptedWriter writer({DDS_RETCODE_ERROR});
    const WriteThreadRecord thread = start(writer);
    EXPECT_EQ(output_of([&] {
                  push(*thread, "first");
                  push(*thread, "second");
                  EXPECT_EQ(writer.messages.await(2),
                            (std::vector<std::string>{written("first"), written("second")}));
              }),
              line("LogMessageWriteThread_run", "Unable to write LogMessage in DataWriter"));
}

TEST(WriteThread, PublishesWhatTimedOutWhenTheNextMessageComesWhetherThatFindsRoomOrNot) {
    // The thread looks at one message at a time, or at four.
    for (const auto& [queue_size, queued] :
         {std::pair(8, 1U), {8, 5U}, {8, 8U}, {64, 1U}, {64, 5U}, {64, 64U}}) {
        SCOPED_TRACE(std::to_string(queued) + " of " + std::to_string(queue_size));
        ScriptedWriter writer(std::vector<DDS_ReturnCode_t>(queued, DDS_RETCODE_TIMEOUT));
        const Calls waits("QELOsapiSemaphore_take");
        WriteThreadRecord thread = start(writer, queue_size);
        std::vector<std::string> expected;
        for (std::size_t number = 1; number <= queued; ++number) {
            push(*thread, std::to_string(number));
            expected.push_back(written("1"));
            ASSERT_EQ(writer.messages.await(number), expected) << "only the head is tried";
        }
        const bool finds_room = static_cast<int>(queued) < queue_size;
        char text[] = "next";
        const QEL_KX_MessageQueueRecord next = {{{-7, 2}, 300, text, text}, {5, 6}};
        static_cast<void>(output_of([&] {
            EXPECT_EQ(QEL_KX_MessageQueue_push(thread->messageQueue, &next), finds_room ? 1 : 0);
        }));
        for (std::size_t number = 1; number <= queued; ++number) {
            expected.push_back(written(std::to_string(number).c_str()));
        }
        if (finds_room) {
            expected.push_back("-7 2 300 next next 5.6");
        }
        ASSERT_EQ(writer.messages.await(expected.size()), expected);
        EXPECT_TRUE(writer.flushes.await_if([&](const std::vector<std::size_t>& flushes) {
            return !flushes.empty() && flushes.back() == expected.size();
        })) << "the thread knows that nothing is left";
        push(*thread, "last");
        expected.push_back(written("last"));
        EXPECT_EQ(writer.messages.await(expected.size()), expected);
        thread.reset();
        EXPECT_LT(waits.count(), 200) << "the thread waits and does not spin";
    }
}

TEST(WriteThread, VisitsTheQueueOnceForSeveralMessages) {
    constexpr int messages = 41;
    ScriptedWriter writer({DDS_RETCODE_OK, DDS_RETCODE_OK, DDS_RETCODE_TIMEOUT});
    WriteThreadRecord thread;
    std::vector<std::string> expected = {written("0"), written("1"), written("2")};
    std::atomic<int> visits = 0;
    writer.during_writes = [&](std::size_t before) {
        for (int number = 1; before == 0 && number < messages; ++number) {
            push(*thread, std::to_string(number));
            visits = 0;
        }
    };
    for (int number = 2; number < messages; ++number) {
        expected.push_back(written(std::to_string(number).c_str()));
    }
    const Stub<decltype(QELOsapiSemaphore_take)> take(
        "QELOsapiSemaphore_take", [&](QELOsapiSemaphore* semaphore, const QELNtpTime* timeout) {
            visits += timeout == nullptr;
            return take.real(semaphore, timeout);
        });
    thread = start(writer, 128);
    push(*thread, "0");
    EXPECT_EQ(writer.messages.await(expected.size()), expected);
    EXPECT_EQ(writer.flushes.await(1), std::vector<std::size_t>{expected.size()});
    EXPECT_EQ(thread->messageQueue->list.count, 0) << "they have left before the thread waits";
    EXPECT_LE(visits, 1 + (messages + 7) / 8) << "for eight at a time";
    thread.reset();
}

TEST(WriteThread, LeavesInTheQueueWhatItHasNotWrittenWhenItEnds) {
    ScriptedWriter writer;
    WriteThreadRecord thread;
    writer.during_writes = [&](std::size_t before) {
        if (before == 0) {
            for (const char* number : {"1", "2", "3", "4", "5"}) {
                push(*thread, number);
            }
        }
        core::store(thread->run, before == 2 ? 0 : 1);
    };
    thread = start(writer, 128);
    push(*thread, "0");
    while (core::load(thread->finished, std::memory_order_acquire) == 0) {
        std::this_thread::yield();
    }
    EXPECT_EQ(thread->messageQueue->list.count, 3);
}

TEST(WriteThread, IsWokenWhenItRestsAndHasToEnd) {
    ScriptedWriter writer;
    Events<QELOsapiSemaphoreStatus> waits;
    const Stub<decltype(QELOsapiSemaphore_take)> take(
        "QELOsapiSemaphore_take", [&](QELOsapiSemaphore* semaphore, const QELNtpTime* timeout) {
            if (timeout == nullptr) {
                return take.real(semaphore, timeout);
            }
            const bool rests = !waits.await(0).empty();
            const QELOsapiSemaphoreStatus status =
                take.real(semaphore, rests ? &a_long_time : timeout);
            waits.add(status);
            return status;
        });
    WriteThreadRecord thread = start(writer);
    EXPECT_EQ(waits.await(1), std::vector{QEL_OSAPI_SEMAPHORE_STATUS_TIMEOUT});
    while (!core::consumer_rests(*thread->messageQueue)) {
        std::this_thread::yield();
    }
    core::store(thread->run, 0);
    core::end_rest(*thread);
    EXPECT_EQ(waits.await(2).back(), QEL_OSAPI_SEMAPHORE_STATUS_OK);
}

TEST(WriteThread, PausesAfterEightSmallBatchesInARow) {
    const std::vector<std::size_t> batches = {1, 1, 2, 1, 1, 1, 1, 3, 1, 1, 1, 2, 1, 1, 1, 1};
    ScriptedWriter writer;
    WriteThreadRecord thread;
    const auto push_batch = [&](std::size_t messages) {
        for (std::size_t message = 0; message < messages; ++message) {
            push(*thread, "text");
        }
    };
    // Each batch is queued while the one before leaves, the last one in the pause.
    writer.during_flushes = [&](std::size_t before) {
        if (before + 1 < batches.size()) {
            push_batch(batches[before + 1]);
        }
    };
    bool has_paused = false;
    const Before pause("QELOsapiThread_sleep", [&] {
        if (!std::exchange(has_paused, true)) {
            push_batch(5);
        }
    });
    thread = start(writer);
    push_batch(batches.front());

    std::vector<std::size_t> expected(batches.size());
    std::partial_sum(batches.begin(), batches.end(), expected.begin());
    expected.push_back(expected.back() + 5);
    EXPECT_EQ(writer.flushes.await(expected.size()), expected);
    thread.reset();
}

TEST(WriteThread, SendsWhatItHasWrittenBeforeItWaits) {
    ScriptedWriter writer;
    std::atomic<bool> has_unsent = false;
    std::atomic<int> waits = 0;
    writer.during_writes = [&](std::size_t) { has_unsent = true; };
    writer.during_flushes = [&](std::size_t) { has_unsent = false; };
    const Stub<decltype(QELOsapiSemaphore_take)> take(
        "QELOsapiSemaphore_take", [&](QELOsapiSemaphore* semaphore, const QELNtpTime* timeout) {
            waits += has_unsent && timeout != nullptr && timeout->frac != 0;
            return take.real(semaphore, timeout);
        });
    const WriteThreadRecord thread = start(writer);
    push(*thread, "lone");
    EXPECT_EQ(writer.flushes.await(1), std::vector<std::size_t>{1});
    EXPECT_EQ(waits, 0);
}

TEST(WriteThread, SendsWhatItHasWrittenBeforeItEnds) {
    ScriptedWriter writer;
    WriteThreadRecord thread;
    writer.during_writes = [&](std::size_t) { core::store(thread->run, 0); };
    thread = start(writer);
    push(*thread, "last");
    EXPECT_EQ(writer.flushes.await(1), std::vector<std::size_t>{1});
}

TEST(WriteThread, DiscardsWhatIsQueuedWhenItEnds) {
    const long blocks = live_blocks();
    ScriptedWriter writer;
    WriteThreadRecord thread = start(writer);
    core::store(thread->run, 0);
    while (core::load(thread->finished, std::memory_order_acquire) == 0) {
        std::this_thread::yield();
    }
    push(*thread, std::string(200, 'x'));
    thread.reset();
    EXPECT_EQ(live_blocks(), blocks);
    EXPECT_TRUE(writer.messages.await(0).empty());
}

TEST(WriteThread, HasThePriorityOfItsSettingsAndLeavesTheListOfProcessorsAlone) {
    ScriptedWriter writer;
    DDS_ThreadSettings_t settings;
    DDS_ThreadSettings_t_initialize(&settings);
    settings.priority = 7;
    ASSERT_NE(DDS_LongSeq_ensure_length(&settings.cpu_list, 1, 1), 0);
    const Stub<decltype(QELOsapiThread_new)> creation(
        "QELOsapiThread_new", [&](auto, int priority, auto, auto, auto cpus, auto, auto) {
            EXPECT_EQ(priority, 7);
            EXPECT_EQ(cpus, nullptr);
            return nullptr;
        });
    const Calls creations("QELOsapiThread_new");
    static_cast<void>(output_of([&] { EXPECT_EQ(start(writer, 8, &settings), nullptr); }));
    DDS_ThreadSettings_t_finalize(&settings);
    EXPECT_EQ(creations.count(), 1);
}

TEST(Sleep, TakesTheRemainingMillisecondsForNanoseconds) {
    std::string slept;
    const Stub<decltype(PEXA_Utility_sleep)> sleep(
        "PEXA_Utility_sleep", [&](const DDS_Duration_t* duration) {
            slept += std::to_string(duration->sec) + "." + std::to_string(duration->nanosec) + " ";
            return DDS_RETCODE_OK;
        });
    for (const DDS_Long milliseconds : {1500, 0, 2147483647}) {
        EXPECT_EQ(QEL_KX_Utility_sleep(milliseconds), DDS_RETCODE_OK);
    }
    EXPECT_EQ(QEL_KX_Utility_sleep(-1), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(slept, "1.500 0.0 2147483.647 ");
}

}  // namespace
}  // namespace orvane::test
