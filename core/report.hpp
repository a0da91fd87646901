/// @file report.hpp
/// @brief How an operation says that it failed.
#pragma once

#include "core/outcome.hpp"
#include "core/printer.hpp"
#include "orvane/core.h"

namespace orvane::core {

/// Prints a line about the operation @p context on standard output. Neither text is empty.
[[gnu::cold]] inline void report(const char* context, const char* message,
                                 DDS_Long level = QEL_KX_LEVEL_ERROR) {
    print_message(message, context, level);
}

/// Says why an operation has failed.
[[gnu::cold]] inline void report(const char* context, const Outcome& failure) {
    report(context, failure.reason(), failure.level());
}

}  // namespace orvane::core
