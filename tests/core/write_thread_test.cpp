#include <memory>
#include <numeric>
#include <thread>

#include "core/shared_field.hpp"
#include "orvane/core.h"
#include "pexa/publication.h"
#include "tests/support/events.hpp"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

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

    /// What the writing thread does in the middle of its first write, and in each flush, which gets
    /// the number of flushes before. To be set before there is a thread.
    std::function<void()> during_first_write;
    std::function<void(std::size_t)> during_flushes;

private:
    DDS_ReturnCode_t write(const QEL_KX_LogMessage& sample, const DDS_Time_t& time) {
        if (const auto action = std::exchange(during_first_write, nullptr)) {
            action();
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

WriteThreadRecord start(ScriptedWriter& writer, const DDS_ThreadSettings_t* settings = nullptr) {
    DDS_ThreadSettings_t defaults;
    DDS_ThreadSettings_t_initialize(&defaults);
    return WriteThreadRecord(LogMessageWriteThread_create(
        writer.handle(), 8, settings == nullptr ? &defaults : settings));
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
    for (const std::size_t queued : {1U, 5U, 8U}) {
        SCOPED_TRACE(queued);
        ScriptedWriter writer(std::vector<DDS_ReturnCode_t>(queued, DDS_RETCODE_TIMEOUT));
        const Calls waits("QELOsapiSemaphore_take");
        WriteThreadRecord thread = start(writer);
        std::vector<std::string> expected;
        for (std::size_t number = 1; number <= queued; ++number) {
            push(*thread, std::to_string(number));
            expected.push_back(written("1"));
            ASSERT_EQ(writer.messages.await(number), expected) << "only the head is tried";
        }
        const bool finds_room = queued < 8;
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
    writer.during_first_write = [&] { has_unsent = true; };
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
    writer.during_first_write = [&] { core::store(thread->run, 0); };
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
    static_cast<void>(output_of([&] { EXPECT_EQ(start(writer, &settings), nullptr); }));
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
