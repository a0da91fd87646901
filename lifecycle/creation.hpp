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

}  // namespace orvane::lifecycle
