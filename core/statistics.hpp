/// @file statistics.hpp
/// @brief Counts what becomes of messages, for the one logger of the process.
///
/// A number has one writer at a time: who holds the mutex of the logger's queue, or the logger's
/// write thread. So counting is a plain addition. Everybody may read. A queue that is not the
/// logger's does not count.
#pragma once

#include "orvane/core.h"
#include "orvane/statistics.h"

namespace orvane::core {

/// A logger with a queue of so many messages begins: all numbers are 0.
void restart_statistics(DDS_Long queue_size) noexcept;
/// Its queue. There are no messages in it yet.
void count_messages_of(const QEL_KX_MessageQueue& queue) noexcept;
bool is_counted(const QEL_KX_MessageQueue& queue) noexcept;

/// @name With the queue's mutex held
/// @{
void count_accepted(const QEL_KX_MessageQueue& queue) noexcept;
void count_refused_for_room(const QEL_KX_MessageQueue& queue) noexcept;
void count_refused_for_memory(const QEL_KX_MessageQueue& queue) noexcept;
/// @}

/// @name On the write thread, or after its end
/// @{
void count_published(const QEL_KX_MessageQueue& queue) noexcept;
void count_write_timeout(const QEL_KX_MessageQueue& queue) noexcept;
void count_discarded(const QEL_KX_MessageQueue& queue) noexcept;
/// The queue is about to be deleted. What is left in it is discarded.
void end_counting(const QEL_KX_MessageQueue& queue) noexcept;
/// @}

QEL_KX_Statistics read_statistics() noexcept;

}  // namespace orvane::core
