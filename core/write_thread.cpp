#include "core/write_thread.hpp"

#include <cstring>

#include "core/message_queue.hpp"
#include "core/publishing.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "core/statistics.hpp"
#include "pexa/config_logger.h"
#include "pexa/osapi.h"
#include "platform/internal/cancellation.hpp"

namespace orvane::core {
namespace {

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

Outcome start(LogMessageWriteThread& self, DDS_Long queue_size,
              const DDS_ThreadSettings_t& settings) {
    self.logger = PEXA_Config_Logger_get_instance();
    if (self.logger == nullptr) {
        return Outcome::failed("Unable to access to QEL Logger");
    }
    self.communicationsLogVerbosity = PEXA_Config_Logger_get_verbosity_by_category(
        self.logger, PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION);
    self.messageQueue = create_queue({queue_size});
    if (self.messageQueue == nullptr) {
        return Outcome::failed("Unable to create Message Queue");
    }
    self.finished = 0;
    self.run = 1;
    self.thread =
        QELOsapiThread_new("LogMessageWriteThread", settings.priority, settings.mask,
                           settings.stack_size, nullptr, LogMessageWriteThread_run, &self);
    if (self.thread == nullptr) {
        self.finished = 1;
        return Outcome::failed("Unable to create thread!");
    }
    return Outcome::done();
}

}  // namespace

LogMessageWriteThread* create_write_thread(QEL_KX_LogMessageDataWriter* writer, DDS_Long queue_size,
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
    // Without a thread there is no end to wait for.
    self->finished = 1;
    if (const Outcome started = start(*self, queue_size, settings); started.has_failed()) {
        report(context, started);
        delete_write_thread(self);
        return nullptr;
    }
    return self;
}

void delete_write_thread(LogMessageWriteThread* self) {
    if (self == nullptr) {
        return;
    }
    const pexa::NoCancellation whole_deletion;
    while (load(self->finished, std::memory_order_acquire) == 0) {
        QELOsapiThread_sleep(&wait_period);
    }
    QELOsapiThread_delete(self->thread);
    store(self->threadId, 0);
    if (self->messageQueue != nullptr) {
        end_counting(*self->messageQueue);
    }
    delete_queue(self->messageQueue);
    QELOsapiHeap_freeStructure(self);
}

void end_rest(LogMessageWriteThread& self) {
    constexpr int looks = 10;
    constexpr QELNtpTime pause = {0, QEL_NTP_TIME_FRAC_PER_MILLISECOND / 2};
    if (!consumer_rests(*self.messageQueue)) {
        return;
    }
    // When it fails, the thread ends its wait by itself.
    static_cast<void>(QELOsapiSemaphore_give(self.messageQueue->countingSemaphore));
    for (int look = 0; look < looks && load(self.finished, std::memory_order_acquire) == 0;
         ++look) {
        QELOsapiThread_sleep(&pause);
    }
}

DDS_ReturnCode_t set_communications_verbosity(LogMessageWriteThread& self,
                                              PEXA_Config_LogVerbosity verbosity) {
    const DDS_ReturnCode_t result = PEXA_Config_Logger_set_verbosity_by_category(
        self.logger, PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, verbosity);
    store(self.communicationsLogVerbosity, verbosity);
    return result;
}

}  // namespace orvane::core

namespace core = orvane::core;

LogMessageWriteThread* LogMessageWriteThread_create(QEL_KX_LogMessageDataWriter* writer,
                                                    DDS_Long queueSize,
                                                    const DDS_ThreadSettings_t* settings) {
    return core::create_write_thread(writer, queueSize, *settings);
}

void* LogMessageWriteThread_run(void* writeThread) {
    core::run(*static_cast<LogMessageWriteThread*>(writeThread));
    return nullptr;
}

void LogMessageWriteThread_delete(LogMessageWriteThread* self) {
    core::delete_write_thread(self);
}

DDS_ReturnCode_t LogMessageWriteThread_setCommunicationsLogVerbosity(
    LogMessageWriteThread* self, PEXA_Config_LogVerbosity verbosity) {
    return core::set_communications_verbosity(*self, verbosity);
}
