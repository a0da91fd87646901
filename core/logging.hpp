/// @file logging.hpp
/// @brief Logging calls.
#pragma once

#include "orvane/core.h"

namespace orvane::core {

/// @name Contracts: QEL_KX_Orvane_logMessage…
/// What fails is reported, and the message is lost.
/// @{
void log_now(QEL_KX_Orvane* self, DDS_Long level, const char* message, const char* category);
void log_message(QEL_KX_Orvane* self, const QEL_KX_LogMessageParams* params);
/// @}

}  // namespace orvane::core
