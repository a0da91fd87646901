#include "core/logging.hpp"

#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/logging_call.hpp"
#include "core/logging_lock.hpp"
#include "core/message_queue.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "pexa/osapi.h"

namespace orvane::core {
namespace {

constexpr const char* no_category = "";

Outcome validate(const QEL_KX_LogMessageParams* params) noexcept {
    if (params == nullptr) {
        return Outcome::failed("Message params is NULL");
    }
    if (params->message == nullptr) {
        return Outcome::failed("Message to be logged is NULL");
    }
    if (params->category == nullptr) {
        return Outcome::failed("Message category is NULL");
    }
    return Outcome::done_if(params->timestamp.sec >= 0, "Invalid message timestamp");
}

/// What the middleware reports while it publishes a message must not become a message again.
bool is_write_thread(const QEL_KX_Orvane& self, DDS_UnsignedLong thread_id) noexcept {
    return self.logMessageWriteThread != nullptr &&
           load(self.logMessageWriteThread->threadId) == thread_id;
}

void echo(const QEL_KX_Orvane& self, const QEL_KX_LogMessageParams& params) {
    if (self.options != nullptr && load(self.options->echo_to_stdout) == 1 &&
        params.message[0] != '\0') {
        print_message(params.message, "", params.level);
    }
}

bool passes_filter(const QEL_KX_Orvane& self, DDS_Long level) noexcept {
    return self.state != nullptr && state_kind(self) == QEL_KX_STATE_OPERATIONAL &&
           level <= load(self.filterLevel);
}

QEL_KX_HostAndAppId identity_of(const QEL_KX_DDSEntities* entities) noexcept {
    return entities == nullptr ? QEL_KX_HostAndAppId{}
                               : QEL_KX_HostAndAppId{static_cast<DDS_Long>(entities->rtpsHostId),
                                                     static_cast<DDS_Long>(entities->rtpsAppId)};
}

/// Refers to the texts of the parameters. The queue copies them.
QEL_KX_MessageQueueRecord make_record(const QEL_KX_Orvane& self,
                                      const QEL_KX_LogMessageParams& params) noexcept {
    QEL_KX_MessageQueueRecord record = {};
    record.sample.hostAndAppId = identity_of(self.ddsEntities);
    record.sample.level = params.level;
    record.sample.category = const_cast<char*>(params.category);
    record.sample.message = const_cast<char*>(params.message);
    record.timestamp = params.timestamp;
    return record;
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
        // The queue has reported a loss, and a logging call does not fail because of it.
        static_cast<void>(push(*self.messageQueue, make_record(self, params)));
    }
}

/// The clock that stamps messages for @p self, or NULL if that is not the instance.
QELSystemClock* clock_for(const QEL_KX_Orvane* self) noexcept {
    return is_live(self) ? call_start.clock.load(std::memory_order_acquire) : nullptr;
}

}  // namespace

void log_message(QEL_KX_Orvane* self, const QEL_KX_LogMessageParams* params) {
    constexpr const char* context = "QEL_KX_Orvane_logMessageWithParams";
    const LoggingCall call;
    if (call.is_nested()) {
        return;
    }
    switch (lock_for_logging()) {
        case LoggingLock::Held:
            break;
        case LoggingLock::Abandoned:
            return;
        case LoggingLock::Refused:
            report(context, "Unable to lock: It is not safe to log message");
            return;
    }
    if (const Outcome valid = validate(params); valid.has_failed()) {
        report(context, valid);
    } else if (is_live(self)) {
        accept(*self, *params, context);
    }
    if (QELOsapi_global_unlock() != 0) {
        report(context, "Unable to unlock when logging message.");
    }
}

void log_now(QEL_KX_Orvane* self, DDS_Long level, const char* message, const char* category) {
    if (leaves_no_trace(level) && message != nullptr && category != nullptr) {
        return;
    }
    QEL_KX_LogMessageParams params = {level, message, category, {0, 0}};
    // Without an instance the parameters are still looked at, and the message goes nowhere.
    if (QELSystemClock* clock = clock_for(self); clock != nullptr) {
        prefetch_for_call(self);
        QELNtpTime now;
        if (QELSystemClock_getTime(clock, &now) == 0) {
            report("QEL_KX_Orvane_logMessageWithLevelCategory",
                   "Unable to get current Time from internal clock");
            return;
        }
        params.timestamp = QELNtpTime_toTime(now);
    }
    log_message(self, &params);
}

}  // namespace orvane::core

namespace core = orvane::core;

DDS_Boolean QEL_KX_Orvane_isLevelEnabled(DDS_Long level) {
    return core::is_enabled(level) ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_ReturnCode_t QEL_KX_Orvane_fatal(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_FATAL, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_severe(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_SEVERE, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_error(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_ERROR, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_warning(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_WARNING, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_notice(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_NOTICE, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_info(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_INFO, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_debug(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_DEBUG, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_trace(QEL_KX_Orvane* self, const char* message) {
    core::log_now(self, QEL_KX_LEVEL_TRACE, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_log(QEL_KX_Orvane* self, DDS_Long level, const char* message) {
    core::log_now(self, level, message, core::no_category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_logMessageWithLevelCategory(QEL_KX_Orvane* self, DDS_Long level,
                                                           const char* message,
                                                           const char* category) {
    core::log_now(self, level, message, category);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t QEL_KX_Orvane_logMessageWithParams(QEL_KX_Orvane* self,
                                                    const QEL_KX_LogMessageParams* params) {
    core::log_message(self, params);
    return DDS_RETCODE_OK;
}
