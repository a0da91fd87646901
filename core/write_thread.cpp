#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/core.h"
#include "pexa/config_logger.h"
#include "pexa/osapi.h"
#include "pexa/publication.h"

namespace orvane::core {
namespace {

/// How long the thread waits for a message at a time, and whoever stops it for its end.
constexpr QELNtpTime wait_period = {0, 100 * QEL_NTP_TIME_FRAC_PER_MILLISECOND};
constexpr QELNtpTime no_wait = {0, 0};
/// No longer than the thread may take to wake up, for which a queue has to have room anyway.
constexpr QELNtpTime gathering_time = {0, QEL_NTP_TIME_FRAC_PER_MILLISECOND / 10};

/// A queued record is handed to the typed writer as it is.
const QEL_KX_LogMessage* as_sample(const QEL_KX_MessageQueueRecord* record) noexcept {
    using Record = QEL_KX_MessageQueueRecord;
    using Sample = QEL_KX_LogMessage;
    static_assert(offsetof(Sample, hostAndAppId.rtps_host_id) == offsetof(Record, hostId));
    static_assert(offsetof(Sample, hostAndAppId.rtps_app_id) == offsetof(Record, appId));
    static_assert(offsetof(Sample, level) == offsetof(Record, level));
    static_assert(offsetof(Sample, category) == offsetof(Record, category));
    static_assert(offsetof(Sample, message) == offsetof(Record, message));
    static_assert(sizeof(Sample) == offsetof(Record, timestamp));
    static_assert(alignof(Sample) == alignof(Record));
    return reinterpret_cast<const Sample*>(record);
}

void write(LogMessageWriteThread& self, const QEL_KX_MessageQueueRecord& record,
           const char* context) {
    const DDS_ReturnCode_t result = QEL_KX_LogMessageDataWriter_write_w_timestamp(
        self.writer, as_sample(&record), &DDS_HANDLE_NIL, &record.timestamp);
    if (result == DDS_RETCODE_TIMEOUT) {
        return;
    }
    if (result != DDS_RETCODE_OK) {
        report(context, "Unable to write LogMessage in DataWriter");
    }
    QEL_KX_MessageQueue_pop(self.messageQueue);
}

void flush(LogMessageWriteThread& self) {
    // Only a writer that does not exist or is not enabled can fail, and the write has said so.
    static_cast<void>(DDS_DataWriter_flush(QEL_KX_LogMessageDataWriter_as_datawriter(self.writer)));
}

/// Tells when to let messages gather. Without that, messages that come just as fast as packets
/// leave would have a packet each and the thread would never rest.
class PacketSizes {
public:
    /// @return whether packets have carried hardly a message for so long that a pause is due.
    [[nodiscard]] bool add(std::uint64_t messages) noexcept {
        constexpr std::uint64_t hardly_any = 2;
        constexpr int long_enough = 8;
        if (messages > hardly_any) {
            small_in_a_row_ = 0;
            return false;
        }
        small_in_a_row_ = (small_in_a_row_ + 1) % long_enough;
        return small_in_a_row_ == 0;
    }

private:
    int small_in_a_row_ = 0;
};

/// The writer collects messages into packets as long as the queue has more of them. What it has
/// collected leaves before the thread waits for more.
void publish(LogMessageWriteThread& self, const char* context) {
    PacketSizes sizes;
    std::uint64_t collected = 0;
    while (load(self.run) == 1) {
        const QEL_KX_MessageQueueRecord* record =
            QEL_KX_MessageQueue_front(self.messageQueue, collected > 0 ? &no_wait : &wait_period);
        if (record != nullptr) {
            write(self, *record, context);
            ++collected;
        } else if (collected > 0) {
            flush(self);
            if (sizes.add(collected)) {
                QELOsapiThread_sleep(&gathering_time);
            }
            collected = 0;
        }
    }
    if (collected > 0) {
        flush(self);
    }
}

void run(LogMessageWriteThread& self) {
    constexpr const char* context = "LogMessageWriteThread_run";
    const DDS_UnsignedLong thread_id = QELOsapiThread_getCurrentThreadID();
    store(self.threadId, thread_id);
    if (thread_id == 0) {
        report(context, "Unable to get WrteThread ID.");
    } else {
        publish(self, context);
    }
    store(self.finished, 1, std::memory_order_release);
}

/// @return what could not be had, or NULL with the thread running.
const char* start(LogMessageWriteThread& self, DDS_Long queue_size,
                  const DDS_ThreadSettings_t& settings) {
    self.logger = PEXA_Config_Logger_get_instance();
    if (self.logger == nullptr) {
        return "Unable to access to QEL Logger";
    }
    self.communicationsLogVerbosity = PEXA_Config_Logger_get_verbosity_by_category(
        self.logger, PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION);
    const QEL_KX_MessageQueueProperty property = {queue_size};
    self.messageQueue = QEL_KX_MessageQueue_new(&property);
    if (self.messageQueue == nullptr) {
        return "Unable to create Message Queue";
    }
    self.finished = 0;
    self.run = 1;
    self.thread =
        QELOsapiThread_new("LogMessageWriteThread", settings.priority, settings.mask,
                           settings.stack_size, nullptr, LogMessageWriteThread_run, &self);
    if (self.thread == nullptr) {
        self.finished = 1;
        return "Unable to create thread!";
    }
    return nullptr;
}

LogMessageWriteThread* create(QEL_KX_LogMessageDataWriter* writer, DDS_Long queue_size,
                              const DDS_ThreadSettings_t& settings) {
    constexpr const char* context = "LogMessageWriteThread_create";
    LogMessageWriteThread* self = nullptr;
    QELOsapiHeap_allocateStructure(&self, LogMessageWriteThread);
    if (self == nullptr) {
        report(context, "Unable to allocate memory for LogMessageWriteThread");
        return nullptr;
    }
    std::memset(self, 0, sizeof *self);
    self->writer = writer;
    // As long as there is no thread, nobody need wait for its end.
    self->finished = 1;
    if (const char* failure = start(*self, queue_size, settings); failure != nullptr) {
        report(context, failure);
        LogMessageWriteThread_delete(self);
        return nullptr;
    }
    return self;
}

void destroy(LogMessageWriteThread& self) {
    while (load(self.finished, std::memory_order_acquire) == 0) {
        QELOsapiThread_sleep(&wait_period);
    }
    QELOsapiThread_delete(self.thread);
    store(self.threadId, 0);
    QEL_KX_MessageQueue_delete(self.messageQueue);
    QELOsapiHeap_freeStructure(&self);
}

DDS_ReturnCode_t set_communications_verbosity(LogMessageWriteThread& self,
                                              PEXA_Config_LogVerbosity verbosity) {
    const DDS_ReturnCode_t result = PEXA_Config_Logger_set_verbosity_by_category(
        self.logger, PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, verbosity);
    store(self.communicationsLogVerbosity, verbosity);
    return result;
}

DDS_ReturnCode_t sleep_for(DDS_Long milliseconds) {
    // The remainder of a negative number would become a large number of nanoseconds.
    if (milliseconds < 0) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_Duration_t duration = {milliseconds / 1000,
                                     static_cast<DDS_UnsignedLong>(milliseconds % 1000)};
    return PEXA_Utility_sleep(&duration);
}

}  // namespace
}  // namespace orvane::core

namespace core = orvane::core;

LogMessageWriteThread* LogMessageWriteThread_create(QEL_KX_LogMessageDataWriter* writer,
                                                    DDS_Long queueSize,
                                                    const DDS_ThreadSettings_t* settings) {
    return core::create(writer, queueSize, *settings);
}

void* LogMessageWriteThread_run(void* writeThread) {
    core::run(*static_cast<LogMessageWriteThread*>(writeThread));
    return nullptr;
}

void LogMessageWriteThread_delete(LogMessageWriteThread* self) {
    if (self != nullptr) {
        core::destroy(*self);
    }
}

DDS_ReturnCode_t LogMessageWriteThread_setCommunicationsLogVerbosity(
    LogMessageWriteThread* self, PEXA_Config_LogVerbosity verbosity) {
    return core::set_communications_verbosity(*self, verbosity);
}

DDS_ReturnCode_t QEL_KX_Utility_sleep(DDS_Long milliseconds) {
    return core::sleep_for(milliseconds);
}
