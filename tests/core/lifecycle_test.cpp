#include <gtest/gtest.h>

#include <string>

#include "core/logging_lock.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"
#include "tests/core/faults.hpp"
#include "tests/core/output.hpp"
#include "tests/core/running_logger.hpp"

namespace {

using orvane::test::Fault;
using orvane::test::Finalisation;
using orvane::test::had_write_thread_at_listener_removal;
using orvane::test::output_device_calls;
using orvane::test::output_of;
using orvane::test::TestOptions;
using orvane::test::verbosity_of;

const PEXA_Config_LoggerDevice* installed_device() {
    return PEXA_Config_Logger_get_output_device(PEXA_Config_Logger_get_instance());
}

std::string line(const char* operation, const char* message) {
    return std::string("KX Error: ") + operation + ": " + message + "\n";
}

TEST(Lifecycle, HasNothingToFinaliseBeforeThereIsAnInstance) {
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK); }), "");
    EXPECT_EQ(QEL_KX_Orvane_getMessageQueue(), nullptr);
    EXPECT_EQ(QEL_KX_Orvane_getLogMessageWriteThread(), nullptr);
    EXPECT_EQ(QEL_KX_Orvane_destroy(nullptr), nullptr);
}

TEST(Lifecycle, GivesOneCompleteInstanceUntilItIsFinalised) {
    TestOptions options;
    QEL_KX_Options_setFilterLevel(options.get(), 450);
    QEL_KX_Options_setApplicationKind(options.get(), "test");
    ASSERT_EQ(QEL_KX_Orvane_setOptions(options.get()), 1);
    QEL_KX_Orvane* instance = nullptr;
    EXPECT_EQ(output_of([&] { instance = QEL_KX_Orvane_getInstance(); }), "");
    ASSERT_NE(instance, nullptr);

    EXPECT_EQ(QEL_KX_Orvane_getInstance(), instance);
    EXPECT_EQ(QEL_KX_Orvane_createInstance(), instance);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 1);
    EXPECT_EQ(instance->options, options.get());
    EXPECT_EQ(instance->filterLevel, 450);
    EXPECT_EQ(QEL_KX_Orvane_getLogMessageWriteThread(), instance->logMessageWriteThread);
    EXPECT_EQ(QEL_KX_Orvane_getMessageQueue(), instance->logMessageWriteThread->messageQueue);
    EXPECT_EQ(QEL_KX_MessageQueue_getMessageQueueProperty(instance->messageQueue), 128);
    EXPECT_EQ(installed_device(), &QEL_KX_Orvane_localDevice);
    EXPECT_EQ(instance->loggerDevice, &QEL_KX_Orvane_localDevice);

    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK); }), "");
    EXPECT_EQ(QEL_KX_Orvane_instance, nullptr);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);
    EXPECT_EQ(gQEL_KX_Orvane_currentOptions, nullptr);
    EXPECT_EQ(installed_device(), nullptr);
    EXPECT_STREQ(QEL_KX_Options_getApplicationKind(options.get()), "test");
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK); }), "");
}

TEST(Lifecycle, EndsTheCommandsBeforeTheWriteThreadThatTheyUse) {
    TestOptions options;
    QEL_KX_Orvane_setOptions(options.get());
    ASSERT_NE(QEL_KX_Orvane_getInstance(), nullptr);
    QEL_KX_Orvane_finalizeInstance();
    EXPECT_TRUE(had_write_thread_at_listener_removal());
}

TEST(Lifecycle, FillsTheStateFromOptionsEntitiesAndTheMiddlewareLogger) {
    PEXA_Config_Logger_set_verbosity_by_category(PEXA_Config_Logger_get_instance(),
                                                 PEXA_CONFIG_LOG_CATEGORY_API,
                                                 PEXA_CONFIG_LOG_VERBOSITY_WARNING);
    TestOptions options;
    QEL_KX_Options_setFilterLevel(options.get(), 450);
    QEL_KX_Options_setApplicationKind(options.get(), std::string(300, 'k').c_str());
    QEL_KX_Orvane_setOptions(options.get());
    const Finalisation at_end;
    const QEL_KX_Orvane* instance = QEL_KX_Orvane_getInstance();
    ASSERT_NE(instance, nullptr);
    const QEL_KX_ADMIN_State& state = *instance->state;
    EXPECT_EQ(state.state, QEL_KX_STATE_OPERATIONAL);
    EXPECT_EQ(state.filterLevel, 450);
    EXPECT_EQ(state.applicationKind, std::string(256, 'k'));
    EXPECT_EQ(state.administrationDomainId, ORVANE_TEST_DOMAIN);
    EXPECT_EQ(static_cast<DDS_UnsignedLong>(state.hostAndAppId.rtps_host_id),
              QEL_KX_DDSEntities_getRtpsHostId(instance->ddsEntities));
    EXPECT_EQ(static_cast<DDS_UnsignedLong>(state.hostAndAppId.rtps_app_id),
              QEL_KX_DDSEntities_getRtpsAppId(instance->ddsEntities));
    // The creation itself ran with all categories silent.
    EXPECT_EQ(verbosity_of(PEXA_CONFIG_LOG_CATEGORY_API), PEXA_CONFIG_LOG_VERBOSITY_WARNING);
    EXPECT_EQ(state.qelLoggerVerbosities[4].category, QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API);
    EXPECT_EQ(state.qelLoggerVerbosities[4].verbosity, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING);
    EXPECT_EQ(state.qelLoggerVerbosities[0].verbosity, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR);
    PEXA_Config_Logger_set_verbosity_by_category(PEXA_Config_Logger_get_instance(),
                                                 PEXA_CONFIG_LOG_CATEGORY_API,
                                                 PEXA_CONFIG_LOG_VERBOSITY_ERROR);
}

TEST(Lifecycle, AcceptsOptionsOnlyWhileThereIsNoInstance) {
    TestOptions options;
    TestOptions others;
    EXPECT_EQ(QEL_KX_Orvane_setOptions(nullptr), 1);
    EXPECT_EQ(QEL_KX_Orvane_setOptions(options.get()), 1);
    const Finalisation at_end;
    QEL_KX_Orvane* instance = QEL_KX_Orvane_getInstance();
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(QEL_KX_Orvane_setOptions(others.get()), 0);
    EXPECT_EQ(gQEL_KX_Orvane_currentOptions, options.get());
    EXPECT_EQ(instance->options, options.get());
}

TEST(Lifecycle, LeavesTheMiddlewareLoggersDeviceAloneWhenToldSo) {
    static const PEXA_Config_LoggerDevice device = {
        nullptr, [](const PEXA_Config_LoggerDevice*, const PEXA_Config_LogMessage*) {}, nullptr};
    PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), &device);
    const int calls = output_device_calls();
    TestOptions options;
    QEL_KX_Options_setLogInfrastructureMessages(options.get(), 0);
    QEL_KX_Orvane_setOptions(options.get());
    const QEL_KX_Orvane* instance = QEL_KX_Orvane_getInstance();
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->loggerDevice, nullptr);
    QEL_KX_Orvane_finalizeInstance();
    EXPECT_EQ(output_device_calls(), calls);
    EXPECT_EQ(installed_device(), &device);
    PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), nullptr);
}

TEST(Lifecycle, GoesOnWhenTheLockForTheFinalisationIsRefused) {
    TestOptions options;
    QEL_KX_Orvane_setOptions(options.get());
    const Finalisation at_end;
    QEL_KX_Orvane* instance = QEL_KX_Orvane_getInstance();
    const Fault fault("QELOsapi_global_lock");
    EXPECT_EQ(
        output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_ERROR); }),
        line("QEL_KX_Orvane_finalizeInstance", "Unable to lock when finalizing Orvane singleton!"));
    EXPECT_EQ(QEL_KX_Orvane_getInstance(), instance);
    EXPECT_EQ(instance->state->state, QEL_KX_STATE_OPERATIONAL);
}

TEST(Lifecycle, ReportsALockThatCannotBeGivenBack) {
    TestOptions options;
    QEL_KX_Orvane_setOptions(options.get());
    {
        const Fault fault("QELOsapi_global_unlock");
        EXPECT_EQ(
            output_of([] { EXPECT_NE(QEL_KX_Orvane_getInstance(), nullptr); }),
            line("QEL_Orvane_getInstance", "Unable to unlock when creating Orvane singleton!"));
    }
    const Fault fault("QELOsapi_global_unlock");
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_ERROR); }),
              line("QEL_KX_Orvane_finalizeInstance",
                   "Unable to unlock when finalizing Orvane singleton!"));
    EXPECT_EQ(QEL_KX_Orvane_instance, nullptr);
}

TEST(Lifecycle, RefusesToBeginAChangeFromWithinAnother) {
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    {
        const orvane::core::LifecycleChange change;
        EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }), "");
    }
    QELOsapi_global_unlock();

    TestOptions options;
    QEL_KX_Orvane_setOptions(options.get());
    const Finalisation at_end;
    QEL_KX_Orvane* instance = QEL_KX_Orvane_getInstance();
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    {
        const orvane::core::LifecycleChange change;
        EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK);
    }
    QELOsapi_global_unlock();
    EXPECT_EQ(QEL_KX_Orvane_getInstance(), instance);
}

}  // namespace
