/**
 * @file syslog.h
 * @brief syslog(3) that logs with the process's logger. C11 and C++20.
 *
 * A file that includes this header instead of <syslog.h> need not be changed: its calls of syslog
 * and vsyslog go to the logger, in ORVANE_CATEGORY. `%m` and the facility in a priority may be
 * there; the facility says nothing. openlog, closelog and setlogmask have no effect on these calls.
 */
#ifndef ORVANE_SYSLOG_H
#define ORVANE_SYSLOG_H

#include <syslog.h>

#include "orvane/log.h"

PEXA_BEGIN_C

/** @return the level for a priority (RFC 5424, table 2), with or without a facility. */
static inline DDS_Long orvane_from_syslog_priority(int priority) {
    static const DDS_Long levels[] = {QEL_KX_LEVEL_FATAL, QEL_KX_LEVEL_FATAL,   QEL_KX_LEVEL_SEVERE,
                                      QEL_KX_LEVEL_ERROR, QEL_KX_LEVEL_WARNING, QEL_KX_LEVEL_NOTICE,
                                      QEL_KX_LEVEL_INFO,  QEL_KX_LEVEL_DEBUG};
    return levels[LOG_PRI(priority)];
}

PEXA_END_C

#define syslog(priority, ...) \
    ORVANE_LOGF(orvane_from_syslog_priority(priority), ORVANE_CATEGORY, __VA_ARGS__)
#define vsyslog(priority, format, arguments)                                              \
    do {                                                                                  \
        if (QEL_KX_Orvane_isLevelEnabled(orvane_from_syslog_priority(priority)) != 0) {   \
            orvane_vlogf_at(NULL, orvane_from_syslog_priority(priority), ORVANE_CATEGORY, \
                            (format), (arguments));                                       \
        }                                                                                 \
    } while (0)

#endif
