/// @file state.hpp
/// @brief The published State: who may touch it when, and its publication.
///
/// The State sample, its instance handle and the flag of the first publication are guarded by one
/// mutex. It may be taken with the global lock held, never the other way round, and nothing that
/// could come back here or wait for the global lock is called while it is held: not the engine and
/// not the printer.
#pragma once

#include <mutex>

#include "orvane/admin.h"
#include "orvane/core.h"
#include "platform/internal/status.hpp"

namespace orvane::admin {

inline constinit std::mutex state_mutex;

/// Runs @p change with the mutex held.
/// @param change gets the sample; must not call the engine, log, or print.
template <typename Change>
void with_state(QEL_KX_Orvane& logger, Change change) {
    const std::lock_guard lock(state_mutex);
    change(*logger.state);
}

void set_state_kind(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateKind kind) noexcept;

/// Fills who and where the logger is. Needed before the State writer exists, because the first
/// reader may match at once and the identity is the instance's key.
void identify_state(QEL_KX_Orvane& logger, DDS_UnsignedLong host_id, DDS_UnsignedLong app_id,
                    DDS_DomainId_t domain_id) noexcept;

/// @name Publication
/// @{
void set_initial_state_sent(QELBool sent) noexcept;
bool initial_state_sent() noexcept;
void publish_initial_state(QEL_KX_Orvane& logger, DDS_DataWriter* writer);
/// @return an error after a report.
pexa::Status write_state(QEL_KX_Orvane& logger);
/// In a child process that has just been forked: no thread publishes or holds the mutex there.
void forget_publication() noexcept;
/// @}

}  // namespace orvane::admin
