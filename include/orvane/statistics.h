/**
 * @file statistics.h
 * @brief What became of the messages that were logged.
 *
 * Each accepted message is either published, discarded, or still in the queue. A message that the
 * filter leaves out is not counted.
 *
 * With @ref QEL_KX_STATISTICS_PROPERTY the logger also publishes its statistics, as
 * QEL_KX_ADMIN_Statistics on the topic @ref QEL_KX_STATISTICS_TOPIC_NAME: at its start, then at
 * most once a second as long as something changes, and at its end.
 */
#ifndef ORVANE_STATISTICS_H
#define ORVANE_STATISTICS_H

#include "orvane/export.h"
#include "pexa/base.h"

PEXA_BEGIN_C

#define QEL_KX_STATISTICS_TOPIC_NAME "qel/orvane/statistics"
#define QEL_KX_STATISTICS_REGISTERED_TYPE_NAME "com::qel::kx::admin::Statistics"
/** The property of the participant that has the value "true" where statistics are published. */
#define QEL_KX_STATISTICS_PROPERTY "orvane.statistics"

/** Numbers of messages of one logger since its start, and the state of its queue. */
typedef struct QEL_KX_Statistics {
    /** Taken into the queue. */
    DDS_UnsignedLongLong accepted;
    /** Refused, because the queue was full. */
    DDS_UnsignedLongLong refusedForRoom;
    /** Refused, because there was no memory for a long text. */
    DDS_UnsignedLongLong refusedForMemory;
    /** Handed to the middleware. This is the RTPS sequence number of the last message, too. */
    DDS_UnsignedLongLong published;
    /** Accepted, but never published: the middleware refused them, or the logger ended. */
    DDS_UnsignedLongLong discarded;
    /** Attempts to publish that timed out. The message stayed in the queue. */
    DDS_UnsignedLongLong writeTimeouts;
    /** Messages in the queue: now, as far as the numbers above are of one moment; at most so far,
     * with up to seven that had just been published; and at most at all. */
    DDS_Long queued;
    DDS_Long mostQueued;
    DDS_Long queueSize;
} QEL_KX_Statistics;

/**
 * Reads the statistics of the process's logger, or of the last one when there is none any more. All
 * numbers are 0 before the first one. May be called at any time and from any thread, also from a
 * signal handler. While messages are logged, the numbers are of moments that follow each other
 * closely.
 * @param statistics NULL is ignored
 */
ORVANE_API void QEL_KX_Orvane_getStatistics(QEL_KX_Statistics* statistics);

PEXA_END_C

#endif
