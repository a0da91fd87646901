#include "admin/state.hpp"
#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/logging_lock.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"
#include "pexa/osapi.h"

namespace orvane::core {
namespace {

constexpr const char* no_category = "";

/// @return why the parameters are refused, or NULL.
const char* refusal_of(const QEL_KX_LogMessageParams* params) noexcept {
    if (params == nullptr) {
        return "Message params is NULL";
    }
    if (params->message == nullptr) {
        return "Message to be logged is NULL";
    }
    if (params->category == nullptr) {
        return "Message category is NULL";
    }
    return params->timestamp.sec < 0 ? "Invalid message timestamp" : nullptr;
}

/// What the middleware reports while it publishes a message must not become a message again.
bool is_write_thread(const QEL_KX_Orvane& self, DDS_UnsignedLong thread_id) noexcept {
    return self.logMessageWriteThread != nullptr &&
           load(self.logMessageWriteThread->threadId) == thread_id;
}

void echo(const QEL_KX_Orvane& self, const QEL_KX_LogMessageParams& params) {
    if (self.options != nullptr && load(self.options->echo_to_stdout) == 1 &&
        params.message[0] != '\0') {
        QEL_KX_Orvane_printMessage(params.message, "", params.level);
    }
}

bool passes_filter(const QEL_KX_Orvane& self, DDS_Long level) noexcept {
    return self.state != nullptr && admin::state_kind(self) == QEL_KX_STATE_OPERATIONAL &&
           level <= load(self.filterLevel);
}

/// With the global lock held, which keeps the instance's record and all that it points at alive.
void accept(QEL_KX_Orvane& self, const QEL_KX_LogMessageParams& params, const char* context) {
    const DDS_UnsignedLong thread_id = QELOsapiThread_getCurrentThreadID();
    if (thread_id == 0) {
        report(context, "Unable to get current thread Id, message missed", QEL_KX_LEVEL_WARNING);
        return;
    }
    if (is_write_thread(self, thread_id)) {
        return;
    }
    echo(self, params);
    if (passes_filter(self, params.level)) {
        const QEL_KX_MessageQueueRecord record = {
            QEL_KX_DDSEntities_getRtpsHostId(self.ddsEntities),
            QEL_KX_DDSEntities_getRtpsAppId(self.ddsEntities),
            params.level,
            params.category,
            params.message,
            params.timestamp};
        QEL_KX_MessageQueue_push(self.messageQueue, &record);
    }
}

DDS_ReturnCode_t log_message(QEL_KX_Orvane* self, const QEL_KX_LogMessageParams* params) {
    constexpr const char* context = "QEL_KX_Orvane_logMessageWithParams";
    switch (lock_for_logging()) {
        case LoggingLock::Held:
            break;
        case LoggingLock::Abandoned:
            return DDS_RETCODE_OK;
        case LoggingLock::Refused:
            return report(context, "Unable to lock: It is not safe to log message");
    }
    if (const char* refusal = refusal_of(params); refusal != nullptr) {
        report(context, refusal);
    } else if (is_live(self)) {
        accept(*self, *params, context);
    }
    return QELOsapi_global_unlock() == 0
               ? DDS_RETCODE_OK
               : report(context, "Unable to unlock when logging message.");
}

/// The clock that stamps messages for @p self, or NULL if that is not the instance.
QELSystemClock* clock_for(const QEL_KX_Orvane* self) noexcept {
    return is_live(self) ? live_clock.load(std::memory_order_acquire) : nullptr;
}

DDS_ReturnCode_t log_now(QEL_KX_Orvane* self, DDS_Long level, const char* message,
                         const char* category) {
    if (leaves_no_trace(level) && message != nullptr && category != nullptr) {
        return DDS_RETCODE_OK;
    }
    QEL_KX_LogMessageParams params = {level, message, category, {0, 0}};
    // Without an instance the parameters are still looked at, and the message goes nowhere.
    if (QELSystemClock* clock = clock_for(self); clock != nullptr) {
        QELNtpTime now;
        if (QELSystemClock_getTime(clock, &now) == 0) {
            return report("QEL_KX_Orvane_logMessageWithLevelCategory",
                          "Unable to get current Time from internal clock");
        }
        params.timestamp = QELNtpTime_toTime(now);
    }
    return log_message(self, &params);
}

}  // namespace
}  // namespace orvane::core

namespace core = orvane::core;

DDS_ReturnCode_t QEL_KX_Orvane_fatal(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_FATAL, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_severe(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_SEVERE, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_error(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_ERROR, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_warning(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_WARNING, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_notice(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_NOTICE, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_info(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_INFO, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_debug(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_DEBUG, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_trace(QEL_KX_Orvane* self, const char* message) {
    return QEL_KX_Orvane_log(self, QEL_KX_LEVEL_TRACE, message);
}

DDS_ReturnCode_t QEL_KX_Orvane_log(QEL_KX_Orvane* self, DDS_Long level, const char* message) {
    return QEL_KX_Orvane_logMessageWithLevelCategory(self, level, message, core::no_category);
}

DDS_ReturnCode_t QEL_KX_Orvane_logMessageWithLevelCategory(QEL_KX_Orvane* self, DDS_Long level,
                                                           const char* message,
                                                           const char* category) {
    return core::log_now(self, level, message, category);
}

DDS_ReturnCode_t QEL_KX_Orvane_logMessageWithParams(QEL_KX_Orvane* self,
                                                    const QEL_KX_LogMessageParams* params) {
    return core::log_message(self, params);
}
