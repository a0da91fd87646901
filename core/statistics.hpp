/// @file statistics.hpp
/// @brief Counts what becomes of messages, for the one logger of the process.
///
/// A number has one writer at a time: who holds the queue's mutex, or the write thread. So counting
/// is a plain addition. Everybody may read.
#pragma once

#include "orvane/statistics.h"

namespace orvane::core {

/// A logger with a queue of so many messages begins: all numbers are 0.
void restart_statistics(DDS_Long queue_size) noexcept;

/// @name With the queue's mutex held
/// @{
/// @param queued messages in the queue now
void count_accepted(DDS_Long queued) noexcept;
void count_refused_for_room() noexcept;
void count_refused_for_memory() noexcept;
/// @}

/// @name On the write thread, or after its end
/// @{
void count_published() noexcept;
void count_write_timeout() noexcept;
void count_discarded(DDS_Long messages) noexcept;
/// @}

QEL_KX_Statistics read_statistics() noexcept;

}  // namespace orvane::core
