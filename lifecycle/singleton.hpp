/// @file singleton.hpp
/// @brief The one instance of the process: obtaining, finalising, and its options.
#pragma once

#include "orvane/core.h"
#include "platform/internal/status.hpp"

namespace orvane::lifecycle {

/// @name Contracts: QEL_KX_Orvane_getInstance, QEL_KX_Orvane_setOptions
/// @{
QEL_KX_Orvane* get_instance();
pexa::Status set_options(QEL_KX_Options* options);
/// @}

}  // namespace orvane::lifecycle
