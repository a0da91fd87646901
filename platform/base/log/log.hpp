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

/// In a child process that has just been forked: a thread that does not exist there may hold it.
void free_sink_lock();

}  // namespace pexa::base
