/// @file commands.hpp
/// @brief Remote commands: taking them, executing them, answering them.
#pragma once

#include "orvane/admin.h"
#include "platform/internal/status.hpp"

namespace orvane::admin {

/// @name Contracts: QEL_KX_Orvane_…
/// @{
void take_commands(QEL_KX_Orvane& logger, DDS_DataReader* reader);
void process_command(QEL_KX_Orvane& logger, QEL_KX_ADMIN_CommandRequest& request);
pexa::Status set_filter_level(QEL_KX_Orvane& logger, DDS_Long level);
/// @}

}  // namespace orvane::admin
