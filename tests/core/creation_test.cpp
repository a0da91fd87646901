#include <gtest/gtest.h>

#include <string>

#include "orvane/admin.h"
#include "orvane/core.h"
#include "tests/core/faults.hpp"
#include "tests/core/output.hpp"
#include "tests/core/running_logger.hpp"

namespace {

using orvane::test::Fault;
using orvane::test::Finalisation;
using orvane::test::KeptVerbosities;
using orvane::test::lent_buffers;
using orvane::test::live_allocations;
using orvane::test::output_of;
using orvane::test::TestOptions;
using orvane::test::verbosity_of;

std::string line(const char* operation, const char* message, const char* level = "Error") {
    return std::string("KX ") + level + ": " + operation + ": " + message + "\n";
}

std::string creation(const char* message) {
    return line("QEL_KX_Orvane_createInstance", message);
}

const std::string no_singleton =
    line("QEL_Orvane_getInstance", "Unable to create Orvane singleton!");

/// Creates and finalises once, so that what the platform keeps for the whole process is there.
void warm_up() {
    const KeptVerbosities verbosities;
    TestOptions options;
    const Finalisation at_end;
    QEL_KX_Orvane_setOptions(options.get());
    ASSERT_NE(QEL_KX_Orvane_getInstance(), nullptr);
}

struct Failure {
    const char* function;
    int call;
    std::string output;
};

void expect_nothing_left(long allocations) {
    EXPECT_EQ(QEL_KX_Orvane_instance, nullptr);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);
    EXPECT_EQ(live_allocations(), allocations);
    EXPECT_EQ(PEXA_Config_Logger_get_output_device(PEXA_Config_Logger_get_instance()), nullptr);
    for (DDS_Long category = 0; category < PEXA_CONFIG_LOG_CATEGORY_COUNT; ++category) {
        EXPECT_EQ(verbosity_of(category), PEXA_CONFIG_LOG_VERBOSITY_SILENT) << category;
    }
}

TEST(Creation, IsUndoneWhenAnyStepFailsAndLeavesTheMiddlewareSilent) {
    const Failure failures[] = {
        {"QELOsapiHeap_allocateStructureOfSize", 1,
         creation("Unable to allocate memory for Orvane Instance")},
        {"QELSystemClock_new", 1, creation("Unable to create clock")},
        {"QEL_KX_ADMIN_StateTypeSupport_create_data", 1,
         creation("Unable to initialize QEL_KX_ADMIN_State")},
        {"QEL_KX_DDSEntities_create", 1, creation("Unable to create DDSEntities")},
        {"DDS_DataReader_set_listener", 1, creation("Unable to set listener for CommandRequests")},
        {"QELOsapiThread_new", 1,
         line("LogMessageWriteThread_create", "Unable to create thread!") +
             creation("Unable to create LogMessage Thread")},
        {"QEL_KX_Orvane_writeState", 1, creation("Unable to write State")},
        {"PEXA_Config_Logger_set_output_device", 1, creation("Unable to hoop up QEL Logger")},
    };
    warm_up();
    const KeptVerbosities verbosities;
    TestOptions options;
    const long allocations = live_allocations();
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.output);
        QEL_KX_Orvane_setOptions(options.get());
        const Fault fault(failure.function, failure.call);
        EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }),
                  failure.output + no_singleton);
        EXPECT_TRUE(fault.has_struck());
        expect_nothing_left(allocations);
        // The application's options are still those of the next attempt.
        EXPECT_EQ(gQEL_KX_Orvane_currentOptions, options.get());
    }
    const Finalisation at_end;
    EXPECT_NE(QEL_KX_Orvane_getInstance(), nullptr);
}

TEST(Creation, FailsWithoutRemoteAdministration) {
    const KeptVerbosities verbosities;
    TestOptions options;
    QEL_KX_Options_setRemoteAdministrationEnabled(options.get(), 0);
    QEL_KX_Orvane_setOptions(options.get());
    const long allocations = live_allocations();
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }),
              creation("Unable to set listener for CommandRequests") + no_singleton);
    expect_nothing_left(allocations);
    QEL_KX_Orvane_setOptions(nullptr);
}

TEST(Creation, DeletesTheDefaultOptionsThatItMade) {
    const Failure failures[] = {
        {"QEL_KX_DDSEntities_create", 1, creation("Unable to create DDSEntities")},
        {"QELOsapiHeap_allocateStructureOfSize", 2,
         line("QEL_KX_Options_createDefault", "Unable to allocate memory for QEL_KX_Options",
              "Warning")},
    };
    const KeptVerbosities verbosities;
    const long allocations = live_allocations();
    for (const Failure& failure : failures) {
        const Fault fault(failure.function, failure.call);
        EXPECT_EQ(
            output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }),
            line("QEL_KX_Orvane_createInstance", "Creating Orvane with default options", "Info") +
                failure.output + no_singleton);
        expect_nothing_left(allocations);
    }
}

TEST(Creation, DoesNotBeginWithoutTheGlobalLock) {
    const KeptVerbosities verbosities;
    const Fault fault("QELOsapi_global_lock");
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }),
              line("QEL_Orvane_getInstance", "Unable to lock when creating Orvane singleton!"));
    EXPECT_EQ(verbosity_of(0), verbosities.saved()[0]);
}

TEST(Creation, OnlyNotesThatTheRefreshedStateWasNotWritten) {
    TestOptions options;
    const Finalisation at_end;
    QEL_KX_Orvane_setOptions(options.get());
    const Fault fault("QEL_KX_Orvane_writeState", 2);
    EXPECT_EQ(output_of([] { EXPECT_NE(QEL_KX_Orvane_getInstance(), nullptr); }),
              line("QEL_Orvane_getInstance", "Unable to Write State", "Warning"));
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 1);
}

/// Fails the first, the second, … call of an allocating function until a creation succeeds.
void sweep(const char* function) {
    constexpr int cap = 200;
    const KeptVerbosities verbosities;
    TestOptions options;
    const long allocations = live_allocations();
    bool created = false;
    int failures = 0;
    for (; !created && failures < cap; ++failures) {
        QEL_KX_Orvane_setOptions(options.get());
        const Fault fault(function, failures + 1);
        static_cast<void>(output_of([&] { created = QEL_KX_Orvane_getInstance() != nullptr; }));
        if (created) {
            // A part may do without, as the queue does; the logger must end cleanly then.
            created = !fault.has_struck();
            static_cast<void>(output_of([] { QEL_KX_Orvane_finalizeInstance(); }));
        }
        ASSERT_EQ(live_allocations(), allocations) << "call " << failures + 1;
        ASSERT_EQ(lent_buffers(), 0) << "call " << failures + 1;
    }
    EXPECT_TRUE(created);
    EXPECT_GT(failures, 1) << "no call at all";
    QEL_KX_Orvane_setOptions(nullptr);
}

TEST(Creation, LosesNothingWhicheverAllocationFails) {
    warm_up();
    sweep("QELOsapiHeap_allocateStructureOfSize");
    sweep("DDS_String_alloc");
    sweep("MOSKFastBufferPool_new");
}

}  // namespace
