#include <gtest/gtest.h>
#include <sched.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "core/shared_field.hpp"
#include "orvane/core.h"
#include "tests/core/faults.hpp"
#include "tests/core/output.hpp"
#include "tests/core/scripted_writer.hpp"

namespace {

using orvane::test::Fault;
using orvane::test::live_allocations;
using orvane::test::output_of;
using orvane::test::ScriptedWriter;
using orvane::test::Written;

std::optional<DDS_Duration_t> slept;
/// What the next sleep of a thread is replaced by, if anything.
std::function<void()> instead_of_sleeping;

/// Stops the thread before it deletes it, as the logger does.
struct Deleter {
    void operator()(LogMessageWriteThread* thread) const {
        orvane::core::store(thread->run, 0);
        LogMessageWriteThread_delete(thread);
    }
};
using OwnedWriteThread = std::unique_ptr<LogMessageWriteThread, Deleter>;

OwnedWriteThread start(ScriptedWriter& writer, const DDS_ThreadSettings_t* settings = nullptr) {
    DDS_ThreadSettings_t defaults;
    DDS_ThreadSettings_t_initialize(&defaults);
    return OwnedWriteThread(LogMessageWriteThread_create(
        writer.handle(), 8, settings == nullptr ? &defaults : settings));
}

/// Ends with its scope, which has to outlast the threads that sleep.
struct InsteadOfSleeping {
    InsteadOfSleeping() = default;
    ~InsteadOfSleeping() { instead_of_sleeping = nullptr; }
    InsteadOfSleeping(const InsteadOfSleeping&) = delete;
    InsteadOfSleeping& operator=(const InsteadOfSleeping&) = delete;
};

void push(LogMessageWriteThread& thread, const char* message) {
    const QEL_KX_MessageQueueRecord record = {0x80000001, 2, 300, "category", message, {5, 6}};
    ASSERT_EQ(QEL_KX_MessageQueue_push(thread.messageQueue, &record), 1);
}

DDS_UnsignedLong wait_for_id(const LogMessageWriteThread& thread) {
    while (orvane::core::load(thread.threadId) == 0) {
        std::this_thread::yield();
    }
    return orvane::core::load(thread.threadId);
}

std::string line(const char* operation, const char* message) {
    return std::string("KX Error: ") + operation + ": " + message + "\n";
}

TEST(WriteThread, PublishesAMessageWithItsOriginAndTime) {
    ScriptedWriter writer;
    const OwnedWriteThread thread = start(writer);
    push(*thread, "text");
    const std::vector<Written> writes = writer.wait_for(1);
    ASSERT_EQ(writes.size(), 1U);
    EXPECT_EQ(static_cast<DDS_UnsignedLong>(writes[0].origin.rtps_host_id), 0x80000001U);
    EXPECT_EQ(writes[0].origin.rtps_app_id, 2);
    EXPECT_EQ(writes[0].level, 300);
    EXPECT_EQ(writes[0].category, "category");
    EXPECT_EQ(writes[0].message, "text");
    EXPECT_EQ(writes[0].timestamp.sec, 5);
    EXPECT_EQ(writes[0].timestamp.nanosec, 6U);
}

TEST(WriteThread, TriesAMessageThatTimedOutAgainWhenTheNextOneComes) {
    ScriptedWriter writer({DDS_RETCODE_TIMEOUT});
    const OwnedWriteThread thread = start(writer);
    EXPECT_EQ(output_of([&] {
                  push(*thread, "first");
                  ASSERT_EQ(writer.wait_for(1).size(), 1U);
                  push(*thread, "second");
                  ASSERT_EQ(writer.wait_for(2).size(), 2U);
                  push(*thread, "third");
              }),
              "");
    const std::vector<Written> writes = writer.wait_for(3);
    ASSERT_EQ(writes.size(), 3U);
    EXPECT_EQ(writes[0].message, "first");
    EXPECT_EQ(writes[1].message, "first");
    EXPECT_EQ(writes[2].message, "second");
}

TEST(WriteThread, LosesAMessageThatCannotBeWrittenAndGoesOn) {
    ScriptedWriter writer({DDS_RETCODE_ERROR});
    EXPECT_EQ(output_of([&] {
                  const OwnedWriteThread thread = start(writer);
                  push(*thread, "lost");
                  push(*thread, "next");
                  const std::vector<Written> writes = writer.wait_for(2);
                  ASSERT_EQ(writes.size(), 2U);
                  EXPECT_EQ(writes[1].message, "next");
              }),
              line("LogMessageWriteThread_run", "Unable to write LogMessage in DataWriter"));
}

TEST(WriteThread, SendsTogetherWhatIsQueuedTogether) {
    ScriptedWriter writer;
    OwnedWriteThread thread;
    writer.during_first_write([&] {
        push(*thread, "second");
        push(*thread, "third");
    });
    thread = start(writer);
    push(*thread, "first");
    EXPECT_EQ(writer.wait_for_flushes(1), std::vector<std::size_t>{3});
}

TEST(WriteThread, PausesAfterEightSmallPacketsInARow) {
    const std::vector<std::size_t> packets = {1, 1, 2, 1, 1, 1, 1, 3, 1, 1, 1, 2, 1, 1, 1, 1};
    ScriptedWriter writer;
    const InsteadOfSleeping gathering;
    OwnedWriteThread thread;
    const auto push_packet = [&](std::size_t messages) {
        for (std::size_t message = 0; message < messages; ++message) {
            push(*thread, "text");
        }
    };
    // Each packet is queued while the one before leaves, the last one in the pause.
    writer.during_flushes([&](std::size_t before) {
        if (before + 1 < packets.size()) {
            push_packet(packets[before + 1]);
        }
    });
    instead_of_sleeping = [&] { push_packet(5); };
    thread = start(writer);
    push_packet(packets.front());

    std::vector<std::size_t> expected(packets.size());
    std::partial_sum(packets.begin(), packets.end(), expected.begin());
    expected.push_back(expected.back() + 5);
    EXPECT_EQ(writer.wait_for_flushes(expected.size()), expected);
}

TEST(WriteThread, SendsWhatItHasWrittenBeforeItEnds) {
    ScriptedWriter writer;
    OwnedWriteThread thread;
    writer.during_first_write([&] { orvane::core::store(thread->run, 0); });
    thread = start(writer);
    push(*thread, "last");
    EXPECT_EQ(writer.wait_for_flushes(1), std::vector<std::size_t>{1});
}

TEST(WriteThread, EndsSoonAfterItsRunFlagWasCleared) {
    ScriptedWriter writer;
    OwnedWriteThread thread = start(writer);
    wait_for_id(*thread);
    const auto begin = std::chrono::steady_clock::now();
    thread.reset();
    // A wait of 100 ms and a poll of 100 ms; the rest is for a loaded machine.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST(WriteThread, DiscardsWhatIsQueuedWhenItEnds) {
    const long allocations = live_allocations();
    ScriptedWriter writer;
    OwnedWriteThread thread = start(writer);
    orvane::core::store(thread->run, 0);
    while (orvane::core::load(thread->finished, std::memory_order_acquire) == 0) {
        std::this_thread::yield();
    }
    push(*thread, std::string(200, 'x').c_str());
    thread.reset();
    EXPECT_EQ(live_allocations(), allocations);
    EXPECT_TRUE(writer.wait_for(0).empty());
}

TEST(WriteThread, HasItsNameAndLeavesTheListOfProcessorsAlone) {
    ScriptedWriter writer;
    DDS_ThreadSettings_t settings;
    DDS_ThreadSettings_t_initialize(&settings);
    ASSERT_NE(DDS_LongSeq_ensure_length(&settings.cpu_list, 1, 1), 0);
    *DDS_LongSeq_get_reference(&settings.cpu_list, 0) = 0;
    settings.cpu_rotation = DDS_THREAD_SETTINGS_CPU_RR_ROTATION;
    const OwnedWriteThread thread = start(writer, &settings);
    DDS_ThreadSettings_t_finalize(&settings);
    ASSERT_NE(thread, nullptr);
    const DDS_UnsignedLong id = wait_for_id(*thread);

    cpu_set_t mine;
    cpu_set_t its;
    ASSERT_EQ(sched_getaffinity(0, sizeof mine, &mine), 0);
    ASSERT_EQ(sched_getaffinity(static_cast<pid_t>(id), sizeof its, &its), 0);
    EXPECT_TRUE(CPU_EQUAL(&mine, &its));
    std::ifstream comm("/proc/self/task/" + std::to_string(id) + "/comm");
    std::string name;
    std::getline(comm, name);
    EXPECT_EQ(name, std::string("LogMessageWriteThread").substr(0, 15));
}

struct CreationFault {
    const char* function;
    int call;
    std::string output;
};

TEST(WriteThread, IsNotMadeWhenAPartCannotBeHad) {
    const std::string name = "LogMessageWriteThread_create";
    const CreationFault faults[] = {
        {"QELOsapiHeap_allocateStructureOfSize", 1,
         line(name.c_str(), "Unable to allocate memory for LogMessageWriteThread")},
        {"PEXA_Config_Logger_get_instance", 1,
         line(name.c_str(), "Unable to access to QEL Logger")},
        {"QELOsapiHeap_allocateStructureOfSize", 2,
         line("QEL_KX_MessageQueue_new", "Unable to allocate memory for Message Queue") +
             line(name.c_str(), "Unable to create Message Queue")},
        {"QELOsapiThread_new", 1, line(name.c_str(), "Unable to create thread!")},
    };
    ASSERT_NE(PEXA_Config_Logger_get_instance(), nullptr);
    for (const CreationFault& fault : faults) {
        const long allocations = live_allocations();
        ScriptedWriter writer;
        const Fault injected(fault.function, fault.call);
        EXPECT_EQ(output_of([&] { EXPECT_EQ(start(writer), nullptr); }), fault.output);
        EXPECT_EQ(live_allocations(), allocations) << fault.output;
    }
}

TEST(WriteThread, EndsAtOnceWhenItCannotLearnItsId) {
    ScriptedWriter writer;
    const Fault fault("QELOsapiThread_getCurrentThreadID");
    EXPECT_EQ(output_of([&] {
                  DDS_ThreadSettings_t settings;
                  DDS_ThreadSettings_t_initialize(&settings);
                  // The run flag stays set.
                  LogMessageWriteThread_delete(
                      LogMessageWriteThread_create(writer.handle(), 8, &settings));
              }),
              line("LogMessageWriteThread_run", "Unable to get WrteThread ID."));
}

TEST(WriteThread, DoesNotSpinOnAQueueWithoutSemaphore) {
    ScriptedWriter writer;
    const std::string output = output_of([&] {
        OwnedWriteThread thread;
        {
            const Fault fault("QELOsapiSemaphore_new", 2);
            thread = start(writer);
        }
        ASSERT_NE(thread, nullptr);
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
    });
    EXPECT_EQ(output.find(line("QEL_KX_MessageQueue_new", "Unable to create counting semaphore")),
              0U);
    // The report of the creation, and one every 100 ms for some half a second at most.
    const auto lines = std::count(output.begin(), output.end(), '\n');
    EXPECT_GE(lines, 2);
    EXPECT_LE(lines, 8);
}

TEST(WriteThread, MirrorsTheVerbosityThatItSets) {
    PEXA_Config_Logger* logger = PEXA_Config_Logger_get_instance();
    const PEXA_Config_LogVerbosity before = PEXA_Config_Logger_get_verbosity_by_category(
        logger, PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION);
    ScriptedWriter writer;
    const OwnedWriteThread thread = start(writer);
    EXPECT_EQ(thread->communicationsLogVerbosity, before);
    EXPECT_EQ(LogMessageWriteThread_setCommunicationsLogVerbosity(
                  thread.get(), PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL),
              DDS_RETCODE_OK);
    EXPECT_EQ(thread->communicationsLogVerbosity, PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL);
    EXPECT_EQ(PEXA_Config_Logger_get_verbosity_by_category(logger,
                                                           PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION),
              PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL);
    LogMessageWriteThread_setCommunicationsLogVerbosity(thread.get(), before);
}

TEST(Sleep, TakesTheRemainingMillisecondsForNanoseconds) {
    struct Case {
        DDS_Long milliseconds;
        DDS_Long seconds;
        DDS_UnsignedLong nanoseconds;
    };
    for (const Case& each :
         {Case{1500, 1, 500}, Case{0, 0, 0}, Case{999, 0, 999}, Case{2147483647, 2147483, 647}}) {
        slept.reset();
        EXPECT_EQ(QEL_KX_Utility_sleep(each.milliseconds), DDS_RETCODE_OK);
        ASSERT_TRUE(slept.has_value());
        EXPECT_EQ(slept->sec, each.seconds);
        EXPECT_EQ(slept->nanosec, each.nanoseconds);
    }
}

TEST(Sleep, RefusesANegativeTime) {
    for (const DDS_Long milliseconds : {-1, -1500}) {
        slept.reset();
        EXPECT_EQ(QEL_KX_Utility_sleep(milliseconds), DDS_RETCODE_BAD_PARAMETER);
        EXPECT_FALSE(slept.has_value());
    }
}

}  // namespace

extern "C" {
DDS_ReturnCode_t __wrap_PEXA_Utility_sleep(const DDS_Duration_t* duration) {
    slept = *duration;
    return DDS_RETCODE_OK;
}

void __real_QELOsapiThread_sleep(const QELNtpTime* time);
void __wrap_QELOsapiThread_sleep(const QELNtpTime* time) {
    if (const auto action = std::exchange(instead_of_sleeping, nullptr)) {
        action();
    } else {
        __real_QELOsapiThread_sleep(time);
    }
}
}
