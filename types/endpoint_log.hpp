/**
 * @file endpoint_log.hpp
 * @brief Errors of typed endpoints in the middleware's log.
 */
#pragma once

#include "pexa/log.h"

namespace orvane::types {

/** @param message a template for one text. */
inline void log_error(const char* context, const QELLogMessageTemplate& message, const char* text) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_DATA, QEL_LOG_LEVEL_ERROR,
                              context, &message, text);
}

inline void log_bad_parameter(const char* context, const char* parameter) {
    log_error(context, DDS_LOG_BAD_PARAMETER_s, parameter);
}

}  // namespace orvane::types
