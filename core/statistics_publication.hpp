/// @file statistics_publication.hpp
/// @brief Publishes the statistics of the logger, where that is wanted.
#pragma once

#include "core/outcome.hpp"
#include "orvane/core.h"
#include "orvane/statistics.h"
#include "orvane/types.h"

namespace orvane::core {

/// Begins to note viewers: before the writer of messages tells of any.
void forget_viewers() noexcept;

/// Begins, before there is a write thread.
/// @param log_writer of the logger's messages
Outcome begin_statistics(QEL_KX_ADMIN_StatisticsDataWriter* writer, DDS_DataWriter* log_writer,
                         const QEL_KX_HostAndAppId& logger);

/// Notes a reader that the writer of messages has begun to send to. May be called by any thread.
void note_viewer(const DDS_InstanceHandle_t& reader) noexcept;

/// Publishes what has changed, unless it is less than a second since the last time. Called on the
/// write thread of @p queue.
void publish_changed_statistics(const QEL_KX_MessageQueue& queue);

/// Publishes for the last time. Called behind the end of the write thread, before the writer's.
/// Behind @ref forget_statistics it only frees.
void end_statistics();

/// The writer is about to be deleted. Nothing happens when the publication has ended, or is that of
/// another logger.
void drop_statistics(const DDS_DataWriter* log_writer);

/// In a child process: the publication is lost, with the thread that may have been in it.
void forget_statistics() noexcept;

}  // namespace orvane::core
