/**
 * @file log.h
 * @brief The middleware's diagnostic log: levels, masks, message templates.
 *
 * Every module of the middleware reports here. A report has a level, a submodule bit of its module,
 * a context (the operation's name) and a template with its arguments. It is written when the
 * module's instrumentation mask has the level's bit and the module's submodule mask has the
 * submodule's bit. The line is "<context>:<message>". It goes to the sink, which is standard output
 * until the middleware logger of libpexac sets its own.
 */
#ifndef PEXA_LOG_H
#define PEXA_LOG_H

#include "pexa/base.h"

PEXA_BEGIN_C

/** Levels. 1 is the most severe. Level n is bit n-1 of an instrumentation mask. */
typedef enum QELLogLevel {
    QEL_LOG_LEVEL_ERROR = 1,
    QEL_LOG_LEVEL_WARNING = 2,
    QEL_LOG_LEVEL_STATUS_LOCAL = 3,
    QEL_LOG_LEVEL_STATUS_REMOTE = 4,
    QEL_LOG_LEVEL_STATUS_ALL = 5
} QELLogLevel;

/** Bit of a level in an instrumentation mask. */
#define QEL_LOG_BIT(level) (1u << ((unsigned)(level)-1u))

/** The modules. Each belongs to one category of the middleware logger. */
typedef enum QELLogModule {
    QEL_LOG_MODULE_OSAPI = 0,
    QEL_LOG_MODULE_CDR = 1,
    QEL_LOG_MODULE_DDS = 2
} QELLogModule;

/** Submodule bits of the DDS module. */
#define DDS_SUBMODULE_MASK_ENTITY 0x01u
#define DDS_SUBMODULE_MASK_DOMAIN 0x02u
#define DDS_SUBMODULE_MASK_TOPIC 0x04u
#define DDS_SUBMODULE_MASK_QOS 0x08u
/** Typed readers and writers, type support and sequences. */
#define DDS_SUBMODULE_MASK_DATA 0x10u
#define DDS_SUBMODULE_MASK_ALL 0xffffffffu

/** A printf format. The name of a template ends in the conversions of its arguments. */
typedef struct QELLogMessageTemplate {
    const char* format;
} QELLogMessageTemplate;

/** "bad parameter: %s" */
PEXA_API extern const QELLogMessageTemplate DDS_LOG_BAD_PARAMETER_s;
/** "precondition not met: %s" */
PEXA_API extern const QELLogMessageTemplate DDS_LOG_PRECONDITION_NOT_MET_s;
/** "sequence does not own its buffer" */
PEXA_API extern const QELLogMessageTemplate DDS_LOG_SEQUENCE_NOT_OWNER;
/** "could not set %s" */
PEXA_API extern const QELLogMessageTemplate DDS_LOG_SET_FAILURE_s;
/** "could not get %s" */
PEXA_API extern const QELLogMessageTemplate DDS_LOG_GET_FAILURE_s;
/** "could not create %s" */
PEXA_API extern const QELLogMessageTemplate DDS_LOG_CREATE_FAILURE_s;
/** "memory allocated: maximum %d becomes %d" */
PEXA_API extern const QELLogMessageTemplate DDS_LOG_MEMORY_ALLOCATED_dd;
/** "assertion failed: %s" */
PEXA_API extern const QELLogMessageTemplate QEL_LOG_ASSERT_FAILURE_s;
/** "insufficient space: %d available, %d needed" */
PEXA_API extern const QELLogMessageTemplate QEL_LOG_INSUFFICIENT_SPACE_FAILURE_dd;
/** "could not allocate %d bytes" */
PEXA_API extern const QELLogMessageTemplate QEL_LOG_MALLOC_FAILURE_d;
/** "%s failed" */
PEXA_API extern const QELLogMessageTemplate QEL_LOG_ANY_FAILURE_s;
/** "%s" */
PEXA_API extern const QELLogMessageTemplate QEL_LOG_ANY_s;

/** @return the module's mask; all modules start with the bit of ERROR. Lock-free. */
PEXA_API DDS_UnsignedLong QELLog_getInstrumentationMask(QELLogModule module);
PEXA_API void QELLog_setInstrumentationMask(QELLogModule module, DDS_UnsignedLong mask);
/** @return the module's submodule mask; all bits are set at the start. Lock-free. */
PEXA_API DDS_UnsignedLong QELLog_getSubmoduleMask(QELLogModule module);
PEXA_API void QELLog_setSubmoduleMask(QELLogModule module, DDS_UnsignedLong mask);
/** @return nonzero when the masks let such a report pass. Lock-free. */
PEXA_API QELBool QELLog_isEnabled(QELLogModule module, DDS_UnsignedLong submodule,
                                  QELLogLevel level);

/**
 * Writes one report if the masks let it pass. A line is cut to 1023 bytes. Allocates nothing and
 * holds no lock while the sink runs.
 */
PEXA_API void QELLog_printContextAndMsg(QELLogModule module, DDS_UnsignedLong submodule,
                                        QELLogLevel level, const char* context,
                                        const QELLogMessageTemplate* message, ...);

/** Receives every report that the masks let pass, on the thread that reports. @p text has no
 *  newline. */
typedef void (*QELLogSink)(void* sinkData, QELLogModule module, QELLogLevel level,
                           const char* text);
/** Replaces the sink; NULL means standard output. Does not wait for a running call of the old sink,
 *  so the record behind @p sinkData must live as long as the process. */
PEXA_API void QELLog_setSink(QELLogSink sink, void* sinkData);

PEXA_END_C

#endif
