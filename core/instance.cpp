#include "core/instance.hpp"

#include "core/logging_lock.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"
#include "pexa/config_logger.h"
#include "pexa/osapi.h"

QEL_KX_Orvane* QEL_KX_Orvane_instance = nullptr;
DDS_Long gQEL_KX_Orvane_initialized = 0;
QEL_KX_Options* gQEL_KX_Orvane_currentOptions = nullptr;
const PEXA_Config_LoggerDevice QEL_KX_Orvane_localDevice = {nullptr, QEL_KX_Orvane_writeDevice,
                                                            nullptr};

namespace orvane::core {
namespace {

// The flag is what publishes the instance to threads that do not take the lock.
bool is_initialized() noexcept {
    return load(gQEL_KX_Orvane_initialized, std::memory_order_acquire) != 0;
}

void set_initialized(DDS_Long value) noexcept {
    store(gQEL_KX_Orvane_initialized, value, std::memory_order_release);
}

void set_instance(QEL_KX_Orvane* created) noexcept {
    store(QEL_KX_Orvane_instance, created, std::memory_order_release);
}

/// With the global lock held.
void create(const char* context) {
    const LifecycleChange change;
    PEXA_Config_LogVerbosity verbosities[PEXA_CONFIG_LOG_CATEGORY_COUNT] = {};
    QEL_KX_Orvane_maskSystemVerbosity(verbosities);
    QEL_KX_Orvane* created = QEL_KX_Orvane_createInstance();
    set_instance(created);
    if (created == nullptr) {
        // The middleware's logger stays silent: what it would go on to say is about an instance
        // that does not exist.
        report(context, "Unable to create Orvane singleton!");
        return;
    }
    QEL_KX_Orvane_unmaskSystemVerbosity(verbosities);
    QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(created);
    if (QEL_KX_Orvane_writeState(created) == 0) {
        report(context, "Unable to Write State", QEL_KX_LEVEL_WARNING);
    }
    set_initialized(1);
}

QEL_KX_Orvane* get_instance() {
    constexpr const char* context = "QEL_Orvane_getInstance";
    if (is_initialized()) {
        return instance();
    }
    if (QELOsapi_global_lock() != 0) {
        report(context, "Unable to lock when creating Orvane singleton!");
        return instance();
    }
    if (!is_initialized() && !LifecycleChange::is_under_way()) {
        create(context);
    }
    if (QELOsapi_global_unlock() != 0) {
        report(context, "Unable to unlock when creating Orvane singleton!");
    }
    return instance();
}

DDS_ReturnCode_t finalize() {
    constexpr const char* context = "QEL_KX_Orvane_finalizeInstance";
    if (!is_initialized()) {
        return DDS_RETCODE_OK;
    }
    if (QELOsapi_global_lock() != 0) {
        report(context, "Unable to lock when finalizing Orvane singleton!");
        return DDS_RETCODE_ERROR;
    }
    if (QEL_KX_Orvane* self = instance(); self != nullptr && !LifecycleChange::is_under_way()) {
        const LifecycleChange change;
        QEL_KX_Orvane_disable();
        QEL_KX_Orvane* gone = QEL_KX_Orvane_destroy(self);
        // As long as there seems to be an instance, no new options are accepted that this would
        // forget.
        store(gQEL_KX_Orvane_currentOptions, nullptr);
        set_instance(gone);
        set_initialized(0);
    }
    if (QELOsapi_global_unlock() != 0) {
        report(context, "Unable to unlock when finalizing Orvane singleton!");
        return DDS_RETCODE_ERROR;
    }
    return DDS_RETCODE_OK;
}

DDS_Boolean set_options(QEL_KX_Options* options) {
    if (instance() != nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    store(gQEL_KX_Orvane_currentOptions, options);
    return DDS_BOOLEAN_TRUE;
}

}  // namespace

}  // namespace orvane::core

namespace core = orvane::core;

QEL_KX_Orvane* QEL_KX_Orvane_getInstance(void) {
    return core::get_instance();
}

DDS_ReturnCode_t QEL_KX_Orvane_finalizeInstance(void) {
    return core::finalize();
}

DDS_Boolean QEL_KX_Orvane_setOptions(QEL_KX_Options* options) {
    return core::set_options(options);
}

DDS_Long QEL_KX_Orvane_isOrvaneRunning(void) {
    return core::load(gQEL_KX_Orvane_initialized, std::memory_order_acquire);
}

QEL_KX_MessageQueue* QEL_KX_Orvane_getMessageQueue(void) {
    const QEL_KX_Orvane* self = core::instance();
    return self == nullptr ? nullptr : self->messageQueue;
}

LogMessageWriteThread* QEL_KX_Orvane_getLogMessageWriteThread(void) {
    const QEL_KX_Orvane* self = core::instance();
    return self == nullptr ? nullptr : self->logMessageWriteThread;
}
