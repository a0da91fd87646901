#include <gtest/gtest.h>

#include <string>

#include "orvane/admin.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

std::string creation(const char* message) {
    return line("QEL_KX_Orvane_createInstance", message);
}

PEXA_Config_LogVerbosity verbosity_of(int category) {
    return PEXA_Config_Logger_get_verbosity_by_category(
        PEXA_Config_Logger_get_instance(), static_cast<PEXA_Config_LogCategory>(category));
}

/// Restores the verbosities, which a failed creation leaves silent, and forgets the options.
class Creation : public testing::Test {
protected:
    Creation() {
        for (int category = 0; category < PEXA_CONFIG_LOG_CATEGORY_COUNT; ++category) {
            verbosities_[category] = verbosity_of(category);
        }
        // What the platform keeps for the whole process shall be there.
        const RunningLogger warm_up;
    }
    ~Creation() override {
        QEL_KX_Orvane_finalizeInstance();
        QEL_KX_Orvane_setOptions(nullptr);
        QEL_KX_Orvane_unmaskSystemVerbosity(verbosities_);
    }

    /// A creation with these options fails, says so, and leaves nothing.
    static void expect_failure(QEL_KX_Options* options, const std::string& output) {
        SCOPED_TRACE(output);
        const long blocks = live_blocks();
        QEL_KX_Orvane_setOptions(options);
        EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }),
                  output + line("QEL_Orvane_getInstance", "Unable to create Orvane singleton!"));
        EXPECT_EQ(QEL_KX_Orvane_instance, nullptr);
        EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);
        EXPECT_EQ(live_blocks(), blocks);
        EXPECT_EQ(PEXA_Config_Logger_get_output_device(PEXA_Config_Logger_get_instance()), nullptr);
        for (int category = 0; category < PEXA_CONFIG_LOG_CATEGORY_COUNT; ++category) {
            EXPECT_EQ(verbosity_of(category), PEXA_CONFIG_LOG_VERBOSITY_SILENT) << category;
        }
        EXPECT_EQ(gQEL_KX_Orvane_currentOptions, options) << "for the next attempt";
    }

    /// Lets the State writer write without waiting for a reader.
    const Before state_has_a_reader_{"QELOsapiThread_new",
                                     [] { QEL_KX_DDSEntities_gInitialStateSent = 1; }};
    const Options options_ = make_options();

private:
    PEXA_Config_LogVerbosity verbosities_[PEXA_CONFIG_LOG_CATEGORY_COUNT] = {};
};

TEST_F(Creation, IsUndoneWhenAnyStepFailsAndLeavesTheMiddlewareSilent) {
    const std::string with_defaults =
        line("QEL_KX_Orvane_createInstance", "Creating Orvane with default options", "Info");
    const struct {
        const char* function;
        int call;
        std::string output;
        bool has_options = true;
    } failures[] = {
        {"QELOsapiHeap_allocateStructureOfSize", 1,
         creation("Unable to allocate memory for Orvane Instance")},
        {"QELOsapiHeap_allocateStructureOfSize", 2,
         with_defaults + line("QEL_KX_Options_createDefault",
                              "Unable to allocate memory for QEL_KX_Options", "Warning"),
         false},
        {"QELSystemClock_new", 1, with_defaults + creation("Unable to create clock"), false},
        {"QELSystemClock_new", 1, creation("Unable to create clock")},
        {"QELOsapiHeap_allocateStructureOfSize", 2,
         creation("Unable to initialize QEL_KX_ADMIN_State")},
        {"DDS_DomainParticipantFactory_create_participant", 1,
         line("QEL_KX_DDSEntities_create", "Unable to create Domain Participant") +
             creation("Unable to create DDSEntities")},
        {"DDS_DataReader_set_listener", 1, creation("Unable to set listener for CommandRequests")},
        {"QELOsapiThread_new", 1,
         line("LogMessageWriteThread_create", "Unable to create thread!") +
             creation("Unable to create LogMessage Thread")},
        {"DDS_DataWriter_write_untypedI", 1,
         line("QEL_KX_Orvane_writeState", "Unable to write State in DataWriter") +
             creation("Unable to write State")},
        {"PEXA_Config_Logger_set_output_device", 1, creation("Unable to hoop up QEL Logger")},
    };
    for (const auto& failure : failures) {
        const Fault fault(failure.function, failure.call);
        expect_failure(failure.has_options ? options_.get() : nullptr, failure.output);
        EXPECT_TRUE(fault.has_struck()) << failure.output;
    }
    QEL_KX_Options_setRemoteAdministrationEnabled(options_.get(), 0);
    expect_failure(options_.get(), creation("Unable to set listener for CommandRequests"));
}

TEST_F(Creation, OnlyNotesThatTheRefreshedStateWasNotWritten) {
    QEL_KX_Orvane_setOptions(options_.get());
    const Fault fault("DDS_DataWriter_write_untypedI", 2);
    EXPECT_EQ(output_of([] { EXPECT_NE(QEL_KX_Orvane_getInstance(), nullptr); }),
              line("QEL_KX_Orvane_writeState", "Unable to write State in DataWriter") +
                  line("QEL_Orvane_getInstance", "Unable to Write State", "Warning"));
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 1);
}

TEST_F(Creation, LosesNothingWhicheverAllocationFails) {
    constexpr int cap = 200;
    for (const char* function :
         {"QELOsapiHeap_allocateStructureOfSize", "DDS_String_alloc", "MOSKFastBufferPool_new"}) {
        int call = 0;
        for (bool has_failed = true; has_failed && call < cap;) {
            const long blocks = live_blocks();
            QEL_KX_Orvane_setOptions(options_.get());
            {
                const Fault fault(function, ++call);
                // An instance that can do without the memory must end cleanly too.
                static_cast<void>(output_of([] { QEL_KX_Orvane_getInstance(); }));
                has_failed = fault.has_struck();
            }
            QEL_KX_Orvane_finalizeInstance();
            ASSERT_EQ(live_blocks(), blocks) << function << " " << call;
        }
        EXPECT_GT(call, 1) << function << " is never called";
        EXPECT_LT(call, cap);
    }
}

}  // namespace
}  // namespace orvane::test
