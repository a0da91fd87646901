/// @file message_queue.hpp
/// @brief The bounded queue between the logging calls and the write thread.
#pragma once

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

/// @return what front() returns, at once and without taking a unit.
const QEL_KX_MessageQueueRecord* head(QEL_KX_MessageQueue& queue);

}  // namespace orvane::core
