/**
 * @file log.h
 * @brief Logging calls with a printf format.
 *
 * The macros log with the process's logger, whoever has started it: C code, C++ code, or an XML
 * configuration. Without a logger they do nothing.
 *
 *     #define ORVANE_CATEGORY "hydraulics"
 *     #include <orvane/log.h>
 *
 *     ORVANE_INFOF("pump %d started in %.1f s", id, seconds);
 *     ORVANE_DEBUGF_IN("hydraulics.valves", "position %d", read_position());
 *
 * The arguments are evaluated only if a message of the level is published or echoed right now. A
 * text is cut to ORVANE_LOG_MESSAGE_BOUND bytes, in front of the UTF-8 character that does not fit.
 * No call changes errno, and none allocates memory for a text of up to 127 bytes, but for what
 * printf does. Any thread, at any time, except in a signal handler. C11 and C++17.
 */
#ifndef ORVANE_LOG_H
#define ORVANE_LOG_H

#include <errno.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "orvane/orvane.h"

/** The category of the macros without one. Define another one before this header is included, also
 *  by another header, or behind an #undef. */
#ifndef ORVANE_CATEGORY
#define ORVANE_CATEGORY ""
#endif

/** Calls of the macros with a level above this one leave no code. A number or a
 *  @ref QEL_KX_LogLevel; every file may have its own. */
#ifndef ORVANE_ACTIVE_LEVEL
#define ORVANE_ACTIVE_LEVEL 0x7fffffff
#endif

/** A function of a header; in C++ one that may be part of other such functions, and of constants.
 */
#ifdef __cplusplus
#define ORVANE_INLINE inline
#define ORVANE_CONSTEXPR constexpr
#else
#define ORVANE_INLINE static inline
#define ORVANE_CONSTEXPR static inline
#endif

PEXA_BEGIN_C

/** @return the process's logger, or NULL. For logging calls only, which notice when it ends. */
ORVANE_INLINE QEL_KX_Orvane* orvane_logger(void) {
    return __atomic_load_n(&QEL_KX_Orvane_instance, __ATOMIC_ACQUIRE);
}

/**
 * Where to cut a text of UTF-8 (RFC 3629).
 * @param text of @p length bytes
 * @return @p length if it is at most @p bound; else the most bytes up to @p bound that do not end
 *   inside a character. Bytes that are no UTF-8 are cut at the bound.
 */
ORVANE_CONSTEXPR size_t orvane_utf8_truncate(const char* text, size_t length, size_t bound) {
    size_t end = bound;
    if (length <= bound) {
        return length;
    }
    while (end > 0 && bound - end < 4 && ((unsigned char)text[end] & 0xC0U) == 0x80U) {
        --end;
    }
    return bound - end < 4 && ((unsigned char)text[end] & 0xC0U) != 0x80U ? end : bound;
}

/**
 * Formats and logs a message, also one that the filter stops.
 * @param time when the message arose; NULL means now
 * @param category not NULL
 */
__attribute__((format(printf, 4, 0))) ORVANE_INLINE void orvane_vlogf_at(const DDS_Time_t* time,
                                                                         DDS_Long level,
                                                                         const char* category,
                                                                         const char* format,
                                                                         va_list arguments) {
    const int error_number = errno;
    /* One byte more than is published shows whether a character ends there. */
    char text[ORVANE_LOG_MESSAGE_BOUND + 2];
    char shortened[ORVANE_LOG_CATEGORY_BOUND + 1];
    const int length = vsnprintf(text, sizeof text, format, arguments);
    const size_t category_length = strlen(category);
    /* An argument that cannot be converted costs the arguments, not the message. */
    const char* message = length < 0 ? format : text;
    if (length > ORVANE_LOG_MESSAGE_BOUND) {
        text[orvane_utf8_truncate(text, sizeof text - 1, ORVANE_LOG_MESSAGE_BOUND)] = '\0';
    }
    if (category_length > ORVANE_LOG_CATEGORY_BOUND) {
        const size_t kept =
            orvane_utf8_truncate(category, category_length, ORVANE_LOG_CATEGORY_BOUND);
        memcpy(shortened, category, kept);
        shortened[kept] = '\0';
        category = shortened;
    }
    if (time == NULL) {
        QEL_KX_Orvane_logMessageWithLevelCategory(orvane_logger(), level, message, category);
    } else {
        const QEL_KX_LogMessageParams params = {level, message, category, *time};
        QEL_KX_Orvane_logMessageWithParams(orvane_logger(), &params);
    }
    errno = error_number;
}

/** The same, now, with the arguments as they are. */
__attribute__((format(printf, 3, 4))) ORVANE_INLINE void orvane_logf(DDS_Long level,
                                                                     const char* category,
                                                                     const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    orvane_vlogf_at(NULL, level, category, format, arguments);
    va_end(arguments);
}

/** @return the writer of the log topic, or NULL without a running logger. */
ORVANE_INLINE DDS_DataWriter* orvane_log_writer(void) {
    const QEL_KX_Orvane* logger = orvane_logger();
    return logger == NULL || QEL_KX_Orvane_isOrvaneRunning() == 0
               ? NULL
               : QEL_KX_DDSEntities_getLogMessageWriter(logger->ddsEntities);
}

/**
 * Waits until a reader of the log has been found. A process that soon ends may have done so before
 * a viewer has found it; others need not wait. Nobody may end the logger meanwhile.
 * @param milliseconds to wait at most, about
 * @return 1, or 0 when the time is over or there is no logger
 */
ORVANE_INLINE int orvane_wait_for_viewer(long milliseconds) {
    const DDS_Duration_t pause = {0, 1000000};
    DDS_DataWriter* writer = orvane_log_writer();
    for (; writer != NULL; --milliseconds) {
        DDS_PublicationMatchedStatus status;
        if (DDS_DataWriter_get_publication_matched_status(writer, &status) == DDS_RETCODE_OK &&
            status.current_count > 0) {
            return 1;
        }
        if (milliseconds <= 0) {
            return 0;
        }
        PEXA_Utility_sleep(&pause);
    }
    return 0;
}

/**
 * Waits until what has been logged before is published. Nobody may end the logger meanwhile.
 * @param milliseconds to wait at most, about
 * @return how many of them are left, or -1 when the time is over
 */
ORVANE_INLINE long orvane_wait_until_published(long milliseconds) {
    const DDS_Duration_t pause = {0, 1000000};
    QEL_KX_Statistics now;
    QEL_KX_Orvane_getStatistics(&now);
    for (const DDS_UnsignedLongLong logged = now.accepted;
         now.published + now.discarded < logged && QEL_KX_Orvane_isOrvaneRunning() != 0;
         --milliseconds) {
        if (milliseconds <= 0) {
            return -1;
        }
        PEXA_Utility_sleep(&pause);
        QEL_KX_Orvane_getStatistics(&now);
    }
    return milliseconds < 0 ? 0 : milliseconds;
}

/**
 * Waits until the readers have what has been logged before; for the end of a process, which
 * otherwise discards what is still queued. Nobody may end the logger meanwhile.
 * @param milliseconds to wait at most, about; up to a day
 * @return 1, also without a logger; 0 when the time is over
 */
ORVANE_INLINE int orvane_flush(long milliseconds) {
    const long day = 24L * 60 * 60 * 1000;
    const long left = orvane_wait_until_published(milliseconds < day ? milliseconds : day);
    DDS_DataWriter* writer = orvane_log_writer();
    if (left < 0 || writer == NULL) {
        return left >= 0;
    }
    {
        const DDS_Duration_t longest = {(DDS_Long)(left / 1000),
                                        (DDS_UnsignedLong)(left % 1000) * 1000000U};
        return DDS_DataWriter_wait_for_acknowledgments(writer, &longest) == DDS_RETCODE_OK;
    }
}

PEXA_END_C

/** Logs at any level, in any category: ORVANE_LOGF(level, category, format, ...). */
#define ORVANE_LOGF(level, category, ...)                       \
    do {                                                        \
        const DDS_Long orvane_level = (DDS_Long)(level);        \
        if (orvane_level <= (DDS_Long)(ORVANE_ACTIVE_LEVEL) &&  \
            QEL_KX_Orvane_isLevelEnabled(orvane_level) != 0) {  \
            orvane_logf(orvane_level, (category), __VA_ARGS__); \
        }                                                       \
    } while (0)

/** @name At a fixed level, in ORVANE_CATEGORY: ORVANE_INFOF(format, ...) @{ */
#define ORVANE_FATALF(...) ORVANE_LOGF(QEL_KX_LEVEL_FATAL, ORVANE_CATEGORY, __VA_ARGS__)
#define ORVANE_SEVEREF(...) ORVANE_LOGF(QEL_KX_LEVEL_SEVERE, ORVANE_CATEGORY, __VA_ARGS__)
#define ORVANE_ERRORF(...) ORVANE_LOGF(QEL_KX_LEVEL_ERROR, ORVANE_CATEGORY, __VA_ARGS__)
#define ORVANE_WARNINGF(...) ORVANE_LOGF(QEL_KX_LEVEL_WARNING, ORVANE_CATEGORY, __VA_ARGS__)
#define ORVANE_NOTICEF(...) ORVANE_LOGF(QEL_KX_LEVEL_NOTICE, ORVANE_CATEGORY, __VA_ARGS__)
#define ORVANE_INFOF(...) ORVANE_LOGF(QEL_KX_LEVEL_INFO, ORVANE_CATEGORY, __VA_ARGS__)
#define ORVANE_DEBUGF(...) ORVANE_LOGF(QEL_KX_LEVEL_DEBUG, ORVANE_CATEGORY, __VA_ARGS__)
#define ORVANE_TRACEF(...) ORVANE_LOGF(QEL_KX_LEVEL_TRACE, ORVANE_CATEGORY, __VA_ARGS__)
/** @} */

/** @name At a fixed level, in any category: ORVANE_INFOF_IN(category, format, ...) @{ */
#define ORVANE_FATALF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_FATAL, __VA_ARGS__)
#define ORVANE_SEVEREF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_SEVERE, __VA_ARGS__)
#define ORVANE_ERRORF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_ERROR, __VA_ARGS__)
#define ORVANE_WARNINGF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_WARNING, __VA_ARGS__)
#define ORVANE_NOTICEF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_NOTICE, __VA_ARGS__)
#define ORVANE_INFOF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_INFO, __VA_ARGS__)
#define ORVANE_DEBUGF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_DEBUG, __VA_ARGS__)
#define ORVANE_TRACEF_IN(...) ORVANE_LOGF(QEL_KX_LEVEL_TRACE, __VA_ARGS__)
/** @} */

#endif
