/**
 * @file syslog.h
 * @brief syslog(3) that logs with the process's logger. C11 and C++17.
 *
 * A file that includes this header instead of <syslog.h> need not be changed: its calls of syslog
 * and vsyslog go to the logger, in ORVANE_CATEGORY. The facility in a priority says nothing.
 * openlog, closelog and setlogmask have no effect on these calls.
 */
#ifndef ORVANE_SYSLOG_H
#define ORVANE_SYSLOG_H

#include <syslog.h>

#include "orvane/log.h"

PEXA_BEGIN_C

/** @return the level for a priority (RFC 5424, table 2), with or without a facility. */
ORVANE_INLINE DDS_Long orvane_from_syslog_priority(int priority) {
    static const DDS_Long levels[] = {QEL_KX_LEVEL_FATAL, QEL_KX_LEVEL_FATAL,   QEL_KX_LEVEL_SEVERE,
                                      QEL_KX_LEVEL_ERROR, QEL_KX_LEVEL_WARNING, QEL_KX_LEVEL_NOTICE,
                                      QEL_KX_LEVEL_INFO,  QEL_KX_LEVEL_DEBUG};
    return levels[LOG_PRI(priority)];
}

/* Not shared by the files of a program: each has its own category. */

__attribute__((format(printf, 2, 0))) static inline void orvane_vsyslog(int priority,
                                                                        const char* format,
                                                                        va_list arguments) {
    const DDS_Long level = orvane_from_syslog_priority(priority);
    if (level <= (DDS_Long)(ORVANE_ACTIVE_LEVEL) && QEL_KX_Orvane_isLevelEnabled(level) != 0) {
        orvane_vlogf_at(NULL, level, ORVANE_CATEGORY, format, arguments);
    }
}

__attribute__((format(printf, 2, 3))) static inline void orvane_syslog(int priority,
                                                                       const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    orvane_vsyslog(priority, format, arguments);
    va_end(arguments);
}

PEXA_END_C

#define syslog orvane_syslog
#define vsyslog orvane_vsyslog

#endif
