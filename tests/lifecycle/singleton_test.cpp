#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "core/logging_lock.hpp"
#include "orvane/admin.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

const PEXA_Config_LoggerDevice* installed_device() {
    return PEXA_Config_Logger_get_output_device(PEXA_Config_Logger_get_instance());
}

TEST(Singleton, HasNothingToFinaliseBeforeThereIsAnInstance) {
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK); }), "");
    EXPECT_EQ(QEL_KX_Orvane_getMessageQueue(), nullptr);
    EXPECT_EQ(QEL_KX_Orvane_getLogMessageWriteThread(), nullptr);
    EXPECT_EQ(QEL_KX_Orvane_destroy(nullptr), nullptr);
    EXPECT_EQ(output_of([] { QEL_KX_Orvane_initialize(nullptr); }),
              line("QEL_KX_Orvane_initialize", "QEL_KX_Orvane is NULL"));
}

TEST(Singleton, IsOneCompleteInstanceUntilItIsFinalised) {
    const Options options = make_options();
    QEL_KX_Options_setFilterLevel(options.get(), 450);
    QEL_KX_Options_setApplicationKind(options.get(), std::string(300, 'k').c_str());
    ASSERT_EQ(QEL_KX_Orvane_setOptions(options.get()), 1);
    QEL_KX_Orvane* instance = nullptr;
    EXPECT_EQ(output_of([&] { instance = QEL_KX_Orvane_getInstance(); }), "");
    ASSERT_NE(instance, nullptr);

    EXPECT_EQ(QEL_KX_Orvane_createInstance(), instance);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 1);
    EXPECT_EQ(instance->options, options.get());
    EXPECT_EQ(instance->filterLevel, 450);
    EXPECT_EQ(instance->state->applicationKind, std::string(256, 'k'));
    EXPECT_EQ(QEL_KX_Orvane_getLogMessageWriteThread(), instance->logMessageWriteThread);
    EXPECT_EQ(QEL_KX_Orvane_getMessageQueue(), instance->logMessageWriteThread->messageQueue);
    EXPECT_EQ(QEL_KX_MessageQueue_getMessageQueueProperty(instance->messageQueue), 128);
    EXPECT_EQ(installed_device(), &QEL_KX_Orvane_localDevice);
    EXPECT_EQ(instance->loggerDevice, &QEL_KX_Orvane_localDevice);

    // The commands end before the write thread that they use.
    bool had_write_thread = false;
    const Before removal("DDS_DataReader_set_listener", [&] {
        had_write_thread = QEL_KX_Orvane_getLogMessageWriteThread() != nullptr;
    });
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK); }), "");
    EXPECT_TRUE(had_write_thread);
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
    PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), &device);
    const Calls calls("PEXA_Config_Logger_set_output_device");
    {
        Options options = make_options();
        QEL_KX_Options_setLogInfrastructureMessages(options.get(), 0);
        const RunningLogger logger(std::move(options));
        EXPECT_EQ(logger->loggerDevice, nullptr);
    }
    EXPECT_EQ(calls.count(), 0);
    EXPECT_EQ(installed_device(), &device);
    PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), nullptr);
}

TEST(Singleton, SaysWhenTheLockCannotBeHadOrGivenBack) {
    const struct {
        const char* function;
        bool after;
        const char* creation;
        const char* finalisation;
    } failures[] = {
        {"QELOsapi_global_lock", false, "Unable to lock when creating Orvane singleton!",
         "Unable to lock when finalizing Orvane singleton!"},
        {"QELOsapi_global_unlock", true, "Unable to unlock when creating Orvane singleton!",
         "Unable to unlock when finalizing Orvane singleton!"}};
    for (const auto& failure : failures) {
        const Options options = make_options();
        QEL_KX_Orvane_setOptions(options.get());
        std::optional<Fault> fault(std::in_place, failure.function,
                                   FaultPlan{.after = failure.after});
        EXPECT_EQ(
            output_of([&] { EXPECT_EQ(QEL_KX_Orvane_getInstance() != nullptr, failure.after); }),
            line("QEL_Orvane_getInstance", failure.creation));
        fault.reset();
        EXPECT_NE(PEXA_Config_Logger_get_verbosity_by_category(PEXA_Config_Logger_get_instance(),
                                                               PEXA_CONFIG_LOG_CATEGORY_PLATFORM),
                  PEXA_CONFIG_LOG_VERBOSITY_SILENT);
        QEL_KX_Orvane* const instance = QEL_KX_Orvane_getInstance();
        fault.emplace(failure.function, FaultPlan{.after = failure.after});
        EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_ERROR); }),
                  line("QEL_KX_Orvane_finalizeInstance", failure.finalisation));
        fault.reset();
        EXPECT_EQ(QEL_KX_Orvane_instance, failure.after ? nullptr : instance);
        if (!failure.after) {
            EXPECT_EQ(instance->state->state, QEL_KX_STATE_OPERATIONAL) << "goes on";
        }
        EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK);
    }
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
