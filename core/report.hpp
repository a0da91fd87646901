#pragma once

#include "orvane/core.h"

namespace orvane::core {

/// Says on standard output what went wrong in the operation @p context.
inline DDS_ReturnCode_t report(const char* context, const char* message,
                               DDS_Long level = QEL_KX_LEVEL_ERROR) {
    return QEL_KX_Orvane_printMessage(message, context, level);
}

}  // namespace orvane::core
