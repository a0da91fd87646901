/// @file message_queue.hpp
/// @brief The bounded queue between the logging calls and the write thread.
#pragma once

#include <cstddef>
#include <optional>

#include "orvane/core.h"
#include "platform/internal/status.hpp"

namespace orvane::core {

/// @name Contracts: QEL_KX_MessageQueue_…
/// @{
QEL_KX_MessageQueue* create_queue(const QEL_KX_MessageQueueProperty& property);
/// @return an error after a report, with the queue unchanged.
pexa::Status push(QEL_KX_MessageQueue& queue, const QEL_KX_MessageQueueRecord& record);
const QEL_KX_MessageQueueRecord* front(QEL_KX_MessageQueue& queue, const QELNtpTime* timeout);
void pop(QEL_KX_MessageQueue& queue);
void delete_queue(QEL_KX_MessageQueue* queue);
/// @}

inline const QEL_KX_MessageQueueElement* element_of(const QEL_KX_MessageQueueNode* node) noexcept {
    static_assert(offsetof(QEL_KX_MessageQueueElement, node) == 0);
    return reinterpret_cast<const QEL_KX_MessageQueueElement*>(node);
}

struct QueueHead {
    /// Means nothing without messages. As many as there are follow each other, whatever is pushed.
    const QEL_KX_MessageQueueElement* first;
    DDS_Long count;
};

/// The memory of this queue is what logging calls will write.
void note_written_by_calls(const QEL_KX_MessageQueue& queue) noexcept;

/// @name Whether the consumer has waited for a message in vain. Any thread.
/// @{
void set_consumer_rests(QEL_KX_MessageQueue& queue, bool rests) noexcept;
bool consumer_rests(const QEL_KX_MessageQueue& queue) noexcept;
/// @}

/// Reports that the counting semaphore fails. Such a semaphore does not wait either, and the
/// consumer asks again at once. So this waits instead.
void report_no_unit(const QELNtpTime* timeout);

/// Removes messages from the head, and looks how many are left. @return nothing, with the queue
/// unchanged, after a report.
std::optional<QueueHead> pop_and_look(QEL_KX_MessageQueue& queue, DDS_Long messages);

}  // namespace orvane::core
