#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "core/filter.hpp"
#include "core/logging_lock.hpp"
#include "orvane/admin.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

std::string creation(const char* message) {
    return line("QEL_KX_Orvane_createInstance", message);
}

const PEXA_Config_LoggerDevice* installed_device() {
    return PEXA_Config_Logger_get_output_device(middleware());
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
        EXPECT_EQ(installed_device(), nullptr);
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

TEST_F(Creation, LosesNothingWhicheverAllocationFails) {
    constexpr int cap = 300;
    for (const char* function : {"QELOsapiHeap_allocateStructureOfSize", "DDS_String_alloc",
                                 "MOSKFastBufferPool_new", new_expression}) {
        int call = 0;
        for (bool has_failed = true; has_failed && call < cap;) {
            const long blocks = live_blocks();
            QEL_KX_Orvane_setOptions(options_.get());
            static_cast<void>(output_of([&] {
                const Fault fault(function, ++call);
                // An instance that can do without the memory must log and end cleanly too.
                QEL_KX_Orvane_info(QEL_KX_Orvane_getInstance(), "a message");
                QEL_KX_Orvane_finalizeInstance();
                has_failed = fault.has_struck();
            }));
            ASSERT_EQ(live_blocks(), blocks) << function << " " << call;
        }
        EXPECT_GT(call, 1) << function << " is never called";
        EXPECT_LT(call, cap);
    }
}

// Cyclone keeps some instances of each life until the domain ends.
TEST(Singleton, LeavesNoTypesToADomainThatAnotherParticipantKeeps) {
    const Node node;
    const auto live = [] { QEL_KX_Orvane_info(RunningLogger().get(), "a message"); };
    live();
    const long blocks = live_blocks();
    for (int life = 0; life < 4; ++life) {
        live();
    }
    // Cyclone lets go of a deleted endpoint's type on a thread of its own.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(patience.sec);
    while (live_blocks() > blocks && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
    }
    EXPECT_LE(live_blocks(), blocks);
}

TEST(Singleton, IsOneCompleteInstanceUntilItIsFinalised) {
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK); }), "");
    const Options options = make_options();
    QEL_KX_Options_setFilterLevel(options.get(), 450);
    QEL_KX_Options_setApplicationKind(options.get(), std::string(300, 'k').c_str());
    ASSERT_EQ(QEL_KX_Orvane_setOptions(options.get()), 1);
    QEL_KX_Orvane* instance = nullptr;
    EXPECT_EQ(output_of([&] { instance = QEL_KX_Orvane_getInstance(); }), "");
    ASSERT_NE(instance, nullptr);

    EXPECT_EQ(QEL_KX_Orvane_createInstance(), instance);
    EXPECT_EQ(verbosity_of(0), PEXA_CONFIG_LOG_VERBOSITY_ERROR) << "no longer silent";
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 1);
    EXPECT_EQ(instance->state->state, QEL_KX_STATE_OPERATIONAL);
    EXPECT_EQ(instance->options, options.get());
    EXPECT_EQ(instance->filterLevel, 450);
    EXPECT_EQ(instance->state->applicationKind, std::string(256, 'k'));
    EXPECT_EQ(QEL_KX_Orvane_getLogMessageWriteThread(), instance->logMessageWriteThread);
    EXPECT_EQ(QEL_KX_Orvane_getMessageQueue(), instance->logMessageWriteThread->messageQueue);
    EXPECT_EQ(QEL_KX_MessageQueue_getMessageQueueProperty(instance->messageQueue), 128);
    EXPECT_EQ(installed_device(), &QEL_KX_Orvane_localDevice);
    EXPECT_EQ(instance->loggerDevice, &QEL_KX_Orvane_localDevice);

    QEL_KX_Orvane_disable();
    EXPECT_EQ(instance->logMessageWriteThread->run, 0);

    // The commands end before the write thread that they use, and that before its writer.
    std::string order;
    const auto note = [&](const char* step) {
        order += QEL_KX_Orvane_getLogMessageWriteThread() == nullptr ? "" : "thread, ";
        order += step;
    };
    const Before removal("DDS_DataReader_set_listener", [&] { note("commands end; "); });
    const Before deletion("DDS_DomainParticipantFactory_delete_participant",
                          [&] { note("entities end"); });
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK); }), "");
    EXPECT_EQ(order, "thread, commands end; entities end");
    EXPECT_FALSE(core::leaves_no_trace(QEL_KX_LEVEL_TRACE)) << "the filter went with the instance";
    EXPECT_EQ(QEL_KX_Orvane_instance, nullptr);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);
    EXPECT_EQ(gQEL_KX_Orvane_currentOptions, nullptr);
    EXPECT_EQ(installed_device(), nullptr);
    EXPECT_EQ(QEL_KX_Options_getFilterLevel(options.get()), 450) << "the application's";
}

TEST(Singleton, IsTheSameForThreadsThatAskForItAtTheSameTime) {
    const Options options = make_options();
    QEL_KX_Orvane_setOptions(options.get());
    std::array<QEL_KX_Orvane*, 4> instances = {};
    {
        std::vector<std::jthread> threads;
        for (QEL_KX_Orvane*& instance : instances) {
            threads.emplace_back([&instance] { instance = QEL_KX_Orvane_getInstance(); });
        }
    }
    EXPECT_NE(instances[0], nullptr);
    EXPECT_EQ(std::count(instances.begin(), instances.end(), instances[0]), 4);
    QEL_KX_Orvane_finalizeInstance();
}

TEST(Singleton, LeavesTheMiddlewareLoggersDeviceAloneWhenToldSo) {
    static const PEXA_Config_LoggerDevice device = {
        nullptr, [](const PEXA_Config_LoggerDevice*, const PEXA_Config_LogMessage*) {}, nullptr};
    PEXA_Config_Logger_set_output_device(middleware(), &device);
    const Calls calls("PEXA_Config_Logger_set_output_device");
    {
        Options options = make_options();
        QEL_KX_Options_setLogInfrastructureMessages(options.get(), 0);
        const RunningLogger logger(std::move(options));
        EXPECT_EQ(logger->loggerDevice, nullptr);
    }
    EXPECT_EQ(calls.count(), 0);
    EXPECT_EQ(installed_device(), &device);
    PEXA_Config_Logger_set_output_device(middleware(), nullptr);
}

TEST(Singleton, RefusesToBeginAChangeFromWithinAnother) {
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    std::optional<core::LifecycleChange> change(std::in_place);
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }), "");
    change.reset();
    QELOsapi_global_unlock();

    const RunningLogger logger;
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    change.emplace();
    EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK);
    change.reset();
    QELOsapi_global_unlock();
    EXPECT_EQ(QEL_KX_Orvane_getInstance(), logger.get());
}

}  // namespace
}  // namespace orvane::test
