/// @file logger_bridge.hpp
/// @brief What the library does with the middleware's own logger.
#pragma once

#include <chrono>

#include "orvane/admin.h"
#include "platform/internal/status.hpp"

namespace orvane::admin {

/// @name Contracts: QEL_KX_Orvane_…
/// @{
void write_device(const PEXA_Config_LogMessage* message);
void mask_verbosity(PEXA_Config_LogVerbosity* saved);
void unmask_verbosity(const PEXA_Config_LogVerbosity* saved);
void refresh_verbosities(QEL_KX_Orvane& logger);
void refresh_print_format(QEL_KX_Orvane& logger);
void set_middleware_verbosity(QEL_KX_Orvane& logger, PEXA_Config_LogCategory category,
                              PEXA_Config_LogVerbosity verbosity);
/// @param patience as for publish_state(). @return an error after a report.
pexa::Status set_middleware_print_format(QEL_KX_Orvane& logger, PEXA_Config_LogPrintFormat format,
                                         std::chrono::milliseconds patience);
/// @}

}  // namespace orvane::admin
