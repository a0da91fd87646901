#pragma once

#include <optional>
#include <string>

#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"

namespace orvane::test {

/// A copy of a queued message.
struct Queued {
    DDS_UnsignedLong host_id;
    DDS_UnsignedLong app_id;
    DDS_Long level;
    std::string category;
    std::string message;
    DDS_Time_t timestamp;
};

/// An operational instance without entities and threads, for as long as it lives: what is logged
/// stays in its queue.
class HandMadeInstance {
public:
    static constexpr DDS_UnsignedLong host_id = 0xC0A80001;
    static constexpr DDS_UnsignedLong app_id = 77;

    HandMadeInstance() {
        const QEL_KX_MessageQueueProperty property = {4};
        entities_.rtpsHostId = host_id;
        entities_.rtpsAppId = app_id;
        record_.options = QEL_KX_Options_createDefault();
        record_.filterLevel = QEL_KX_LEVEL_INFO;
        record_.ddsEntities = &entities_;
        record_.state = QEL_KX_ADMIN_StateTypeSupport_create_data();
        record_.state->state = QEL_KX_STATE_OPERATIONAL;
        record_.logMessageWriteThread = &write_thread_;
        record_.messageQueue = QEL_KX_MessageQueue_new(&property);
        record_.clock = QELSystemClock_new();
        core::live_clock = record_.clock;
        core::follow_filter_of(&record_);
        core::store(QEL_KX_Orvane_instance, &record_);
    }
    ~HandMadeInstance() {
        core::store(QEL_KX_Orvane_instance, nullptr);
        core::follow_filter_of(nullptr);
        core::live_clock = nullptr;
        QELSystemClock_delete(record_.clock);
        QEL_KX_MessageQueue_delete(record_.messageQueue);
        QEL_KX_ADMIN_StateTypeSupport_delete_data(record_.state);
        QEL_KX_Options_delete(record_.options);
    }
    HandMadeInstance(const HandMadeInstance&) = delete;
    HandMadeInstance& operator=(const HandMadeInstance&) = delete;

    QEL_KX_Orvane* operator->() { return &record_; }
    QEL_KX_Orvane* get() { return &record_; }

    void set_filter_level(DDS_Long level) {
        core::store(record_.filterLevel, level);
        core::refresh_filter();
    }

    /// Takes the first message out of the queue, if there is one.
    [[nodiscard]] std::optional<Queued> pop() const {
        constexpr QELNtpTime at_once = {0, 0};
        const QEL_KX_MessageQueueRecord* front =
            QEL_KX_MessageQueue_front(record_.messageQueue, &at_once);
        if (front == nullptr) {
            return std::nullopt;
        }
        Queued queued = {front->hostId,   front->appId,   front->level,
                         front->category, front->message, front->timestamp};
        QEL_KX_MessageQueue_pop(record_.messageQueue);
        return queued;
    }

private:
    QEL_KX_DDSEntities entities_ = {};
    LogMessageWriteThread write_thread_ = {};
    QEL_KX_Orvane record_ = {};
};

}  // namespace orvane::test
