/// @file printer.hpp
/// @brief Lines on standard output.
#pragma once

#include "orvane/core.h"

namespace orvane::core {

/// Contract: QEL_KX_Orvane_printMessage.
DDS_ReturnCode_t print_message(const char* message, const char* context, DDS_Long level);

}  // namespace orvane::core
