/**
 * @file endpoint_report.hpp
 * @brief How typed endpoints report to the middleware's log.
 */
#pragma once

#include "pexa/log.h"

namespace orvane::types {

/** Reports at the error level; `message` takes one text. */
inline void report(const char* context, const QELLogMessageTemplate& message, const char* text) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_DATA, QEL_LOG_LEVEL_ERROR,
                              context, &message, text);
}

inline void report_bad_parameter(const char* context, const char* parameter) {
    report(context, DDS_LOG_BAD_PARAMETER_s, parameter);
}

}  // namespace orvane::types
