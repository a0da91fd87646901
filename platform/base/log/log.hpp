/// @file log.hpp
/// @brief The diagnostic log. The contracts stand in pexa/log.h.
#pragma once

#include <cstdarg>

#include "pexa/log.h"

namespace pexa::base {

bool is_enabled(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level);

void print(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level, const char* context,
           const QELLogMessageTemplate* message, va_list arguments);

/// Reports with the arguments of the template.
void report(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level, const char* context,
            const QELLogMessageTemplate* message, ...);

}  // namespace pexa::base
