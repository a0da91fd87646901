/// @file creation.hpp
/// @brief How an instance is made and unmade.
#pragma once

#include "orvane/core.h"

namespace orvane::lifecycle {

/// @name Contracts: QEL_KX_Orvane_createInstance, QEL_KX_Orvane_destroy
/// @{
QEL_KX_Orvane* create_instance();
QEL_KX_Orvane* destroy(QEL_KX_Orvane* self);
/// @}

/// Frees of an instance that a child process has a copy of what needs neither the engine nor a
/// thread. The queue stays in memory, because a thread may have been changing it during the fork.
void free_copy(QEL_KX_Orvane& copy);

}  // namespace orvane::lifecycle
