/**
 * @file rcutils_handler.h
 * @brief An output handler for ROS 2 that logs with the process's logger. C11 and C++17.
 *
 *     #include <orvane/rcutils_handler.h>
 *
 *     rcutils_logging_set_output_handler(orvane_rcutils_handler);
 *
 * The name of the ROS logger, which is the node's, becomes the category. A message keeps its time.
 * ROS filters first, so a level that a remote tool sets has an effect as far as ROS lets messages
 * pass: `--log-level debug` leaves the choice to the tool.
 */
#ifndef ORVANE_RCUTILS_HANDLER_H
#define ORVANE_RCUTILS_HANDLER_H

#include <rcutils/logging.h>

#include "orvane/log.h"

PEXA_BEGIN_C

/** @return the level for any severity of rcutils. A severity between two that have a name counts as
 *  the less severe one. */
ORVANE_INLINE DDS_Long orvane_from_rcutils_severity(int severity) {
    return severity >= RCUTILS_LOG_SEVERITY_FATAL   ? QEL_KX_LEVEL_FATAL
           : severity >= RCUTILS_LOG_SEVERITY_ERROR ? QEL_KX_LEVEL_ERROR
           : severity >= RCUTILS_LOG_SEVERITY_WARN  ? QEL_KX_LEVEL_WARNING
           : severity >= RCUTILS_LOG_SEVERITY_INFO  ? QEL_KX_LEVEL_INFO
           : severity >= RCUTILS_LOG_SEVERITY_DEBUG ? QEL_KX_LEVEL_DEBUG
                                                    : QEL_KX_LEVEL_TRACE;
}

/** @return the severity of rcutils for any level; less severe than DEBUG is 1, because 0 means that
 *  a logger has no severity of its own. */
ORVANE_INLINE int orvane_to_rcutils_severity(DDS_Long level) {
    return level <= QEL_KX_LEVEL_SEVERE    ? RCUTILS_LOG_SEVERITY_FATAL
           : level <= QEL_KX_LEVEL_ERROR   ? RCUTILS_LOG_SEVERITY_ERROR
           : level <= QEL_KX_LEVEL_WARNING ? RCUTILS_LOG_SEVERITY_WARN
           : level <= QEL_KX_LEVEL_INFO    ? RCUTILS_LOG_SEVERITY_INFO
           : level <= QEL_KX_LEVEL_DEBUG   ? RCUTILS_LOG_SEVERITY_DEBUG
                                           : 1;
}

/** For rcutils_logging_set_output_handler(). Without a logger of the process it does nothing.
 *  @param timestamp nanoseconds since 1970-01-01 UTC */
ORVANE_INLINE void orvane_rcutils_handler(const rcutils_log_location_t* location, int severity,
                                          const char* name, rcutils_time_point_value_t timestamp,
                                          const char* format, va_list* arguments) {
    const DDS_Long level = orvane_from_rcutils_severity(severity);
    (void)location;
    if (QEL_KX_Orvane_isLevelEnabled(level) != 0) {
        const DDS_Time_t time = {(DDS_Long)(timestamp / 1000000000),
                                 (DDS_UnsignedLong)(timestamp % 1000000000)};
        va_list copy;
        /* Another handler may come behind this one. */
        va_copy(copy, *arguments);
        orvane_vlogf_at(&time, level, name == NULL ? "" : name, format, copy);
        va_end(copy);
    }
}

PEXA_END_C

#endif
