// An instance that keeps what is logged in its queue.
#pragma once

#include <optional>
#include <string>

#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"
#include "tests/support/logger.hpp"

namespace orvane::test {

/// A message as it was queued.
struct QueuedMessage {
    QEL_KX_HostAndAppId origin;
    DDS_Long level;
    std::string category;
    std::string text;
    DDS_Time_t time;
};

/// The process's instance, operational, without entities and threads.
class QueuedLogger {
public:
    explicit QueuedLogger(DDS_Long queue_size) {
        const QEL_KX_MessageQueueProperty property = {queue_size};
        entities_.rtpsHostId = 0xC0A80001;
        entities_.rtpsAppId = 77;
        bare_->ddsEntities = &entities_;
        bare_->state->state = QEL_KX_STATE_OPERATIONAL;
        bare_->logMessageWriteThread = &write_thread_;
        bare_->messageQueue = QEL_KX_MessageQueue_new(&property);
        bare_->clock = QELSystemClock_new();
        core::call_start.clock = bare_->clock;
        core::follow_filter_of(bare_.get());
        core::store(QEL_KX_Orvane_instance, bare_.get());
    }
    ~QueuedLogger() {
        core::store(QEL_KX_Orvane_instance, nullptr);
        core::follow_filter_of(nullptr);
        core::call_start.clock = nullptr;
        QELSystemClock_delete(bare_->clock);
        QEL_KX_MessageQueue_delete(bare_->messageQueue);
        bare_->ddsEntities = nullptr;
    }
    QueuedLogger(const QueuedLogger&) = delete;
    QueuedLogger& operator=(const QueuedLogger&) = delete;

    QEL_KX_Orvane* get() { return bare_.get(); }

    void set_filter_level(DDS_Long level) {
        core::store(bare_->filterLevel, level);
        core::refresh_filter();
    }

    /// Takes the first message out of the queue, if there is one.
    std::optional<QueuedMessage> pop() {
        constexpr QELNtpTime at_once = {0, 0};
        const auto* front = QEL_KX_MessageQueue_front(bare_->messageQueue, &at_once);
        if (front == nullptr) {
            return std::nullopt;
        }
        const QEL_KX_LogMessage& sample = front->sample;
        QueuedMessage message{sample.hostAndAppId, sample.level, sample.category, sample.message,
                              front->timestamp};
        QEL_KX_MessageQueue_pop(bare_->messageQueue);
        return message;
    }

private:
    BareLogger bare_;
    QEL_KX_DDSEntities entities_ = {};
    LogMessageWriteThread write_thread_ = {};
};

}  // namespace orvane::test
