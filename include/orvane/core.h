/**
 * @file core.h
 * @brief The logger: options, the one instance, logging calls, message queue and write thread.
 *
 * A process has one logger. An application may hand over options, obtains the instance, logs, and
 * finalises the instance before it ends:
 *
 *     QEL_KX_Options* options = QEL_KX_Options_createDefault();
 *     QEL_KX_Options_setDomainId(options, 7);
 *     QEL_KX_Orvane_setOptions(options);
 *     QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
 *     QEL_KX_Orvane_info(logger, "ready");
 *     QEL_KX_Orvane_finalizeInstance();
 *     QEL_KX_Options_delete(options);
 *
 * Failures of the library itself are single lines on standard output, written by
 * QEL_KX_Orvane_printMessage(). Nothing is raised, and nothing of the library or of the
 * middleware's port ends the process: a call that finds no memory fails. Only the DDS engine ends
 * the process where it finds no memory itself. The header compiles as C11 and as C++20.
 */
#ifndef ORVANE_CORE_H
#define ORVANE_CORE_H

#include "orvane/export.h"
#include "orvane/types.h"
#include "pexa/base.h"
#include "pexa/buffer_pool.h"
#include "pexa/config_logger.h"
#include "pexa/domain.h"
#include "pexa/osapi.h"
#include "pexa/thread_settings.h"

PEXA_BEGIN_C

/**
 * Severity of a message; a smaller number is more severe. A message passes the filter when its
 * level is at most the filter level, so a filter of SILENT stops everything but negative levels.
 * Any other number is a valid level too and is printed with the name "KX Silent".
 */
typedef enum QEL_KX_LogLevel {
    QEL_KX_LEVEL_SILENT = 0,
    QEL_KX_LEVEL_FATAL = 100,
    QEL_KX_LEVEL_SEVERE = 200,
    QEL_KX_LEVEL_ERROR = 300,
    QEL_KX_LEVEL_WARNING = 400,
    QEL_KX_LEVEL_NOTICE = 500,
    QEL_KX_LEVEL_INFO = 600,
    QEL_KX_LEVEL_DEBUG = 700,
    QEL_KX_LEVEL_TRACE = 800
} QEL_KX_LogLevel;

/**
 * @name Options
 * @{
 */

/**
 * How the logger starts. Make it with QEL_KX_Options_createDefault(), change it with the setters
 * and hand it to QEL_KX_Orvane_setOptions() before the first QEL_KX_Orvane_getInstance(). The
 * logger borrows the record and its participant and never frees either; both must outlive the
 * instance.
 */
typedef struct QEL_KX_Options {
    /** A participant of the application that the logger uses instead of making its own; borrowed.
     *  NULL, the default: the logger makes and deletes one in @ref domain_id. */
    DDS_DomainParticipant* domain_participant;
    /** Whether an XML configuration wants the logger; a logger started through this interface does
     *  not look at it. Default 1; an XML configuration starts from 0. */
    QELBool enabled;
    /** Whether remote tools may change the settings of this logger. Default 1. */
    QELBool remote_administration_enabled;
    /** Initial filter level, 0 or more. Default @ref QEL_KX_LEVEL_INFO. */
    DDS_Long filter_level;
    /** DDS domain of the logger's own participant, 0 or more; unused with
     *  @ref domain_participant. Default 0. */
    DDS_Long domain_id;
    /** Name of the QoS library of the logger's entities; owned. NULL, the default: built-in QoS. */
    char* qos_library;
    /** Name of the profile within @ref qos_library; owned. NULL, the default: built-in QoS. */
    char* qos_profile;
    /** Most messages that wait for publication, 1 or more. One message more is lost, and said so on
     *  standard output. The memory of all of them is allocated at the start.
     *  Default 128. */
    DDS_Long queue_size;
    /** How the write thread is created; owned. Mask, priority and stack size count, the CPU list
     * and rotation do not. Default: the platform's default thread. */
    DDS_ThreadSettings_t thread;
    /** Free text that names the kind of application in the published State, cut to the State's 256
     *  characters; owned. NULL, the default: empty. */
    char* application_kind;
    /** 1 echoes every logged message to standard output, also those that the filter stops; any
     *  other value does not. While the logger runs, only QEL_KX_Options_setEchoToStdout() changes
     *  it. Default 0. */
    QELBool echo_to_stdout;
    /** Not 0: messages of the middleware's own logger are published like the application's; its
     *  output device is then the library's. 0: that logger is left alone. Default 1. */
    QELBool log_infrastructure_messages;
} QEL_KX_Options;

/*
 * Of the operations below, every one but createDefault, copy and delete refuses a NULL record with
 * the line "QEL_KX_Options is null" and then returns: a setter DDS_RETCODE_NO_DATA, a getter -1, 0
 * or NULL. A setter returns DDS_RETCODE_OK or, with the record unchanged, DDS_RETCODE_BAD_PARAMETER
 * for a refused value (after a line that names the rule). A record is not thread-safe, except that
 * its numbers may be set and read while a logger uses it.
 */

/** @return a new record with the defaults above, or NULL without memory. Free it with
 *  QEL_KX_Options_delete(). */
ORVANE_API QEL_KX_Options* QEL_KX_Options_createDefault(void);
/**
 * Copies all fields but @ref QEL_KX_Options::echo_to_stdout and
 * @ref QEL_KX_Options::log_infrastructure_messages, which stay as they are. Strings and the CPU
 * list are duplicated, a string that the origin lacks stays as it was; the participant is shared.
 * @return 1, or 0 after a line that names the reason: NULL argument, or no memory for a string, and
 *   then the fields copied so far keep their new values.
 */
ORVANE_API DDS_Boolean QEL_KX_Options_copy(QEL_KX_Options* self, const QEL_KX_Options* origin);
/** Frees a record with its strings; NULL is noted by a line. It must not be in use by the logger.
 *  @return DDS_RETCODE_OK. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_delete(QEL_KX_Options* self);

ORVANE_API DDS_DomainParticipant* QEL_KX_Options_getDomainParticipant(const QEL_KX_Options* self);
/** Refuses NULL. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setDomainParticipant(QEL_KX_Options* self,
                                                                DDS_DomainParticipant* participant);
ORVANE_API QELBool QEL_KX_Options_isRemoteAdministrationEnabled(const QEL_KX_Options* self);
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setRemoteAdministrationEnabled(QEL_KX_Options* self,
                                                                          QELBool enabled);
ORVANE_API DDS_Long QEL_KX_Options_getFilterLevel(const QEL_KX_Options* self);
/** Refuses a negative level. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setFilterLevel(QEL_KX_Options* self, DDS_Long level);
ORVANE_API DDS_Long QEL_KX_Options_getDomainId(const QEL_KX_Options* self);
/** Refuses a negative domain. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setDomainId(QEL_KX_Options* self, DDS_Long domainId);
/** @return the record's own string, or NULL. */
ORVANE_API const char* QEL_KX_Options_getQosLibrary(const QEL_KX_Options* self);
/** Stores a copy and frees the previous one. Refuses NULL; DDS_RETCODE_ERROR without memory. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setQosLibrary(QEL_KX_Options* self,
                                                         const char* qosLibrary);
/** @return the record's own string, or NULL. */
ORVANE_API const char* QEL_KX_Options_getQosProfile(const QEL_KX_Options* self);
/** Stores a copy and frees the previous one. Refuses NULL; DDS_RETCODE_ERROR without memory. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setQosProfile(QEL_KX_Options* self,
                                                         const char* qosProfile);
ORVANE_API DDS_Long QEL_KX_Options_getQueueSize(const QEL_KX_Options* self);
/** Refuses a size below 1. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setQueueSize(QEL_KX_Options* self, DDS_Long queueSize);
/** @return the record's own settings, which may be changed in place. */
ORVANE_API DDS_ThreadSettings_t* QEL_KX_Options_getThreadSettings(QEL_KX_Options* self);
/** Stores a deep copy. DDS_RETCODE_ERROR for NULL settings or without memory. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setThreadSettings(QEL_KX_Options* self,
                                                             const DDS_ThreadSettings_t* settings);
/** @return the record's own string, or NULL. */
ORVANE_API const char* QEL_KX_Options_getApplicationKind(const QEL_KX_Options* self);
/** Stores a copy and frees the previous one. Refuses NULL; DDS_RETCODE_ERROR without memory. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setApplicationKind(QEL_KX_Options* self,
                                                              const char* applicationKind);
ORVANE_API QELBool QEL_KX_Options_getEchoToStdout(const QEL_KX_Options* self);
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setEchoToStdout(QEL_KX_Options* self, QELBool echo);
ORVANE_API QELBool QEL_KX_Options_getLogInfrastructureMessages(const QEL_KX_Options* self);
ORVANE_API DDS_ReturnCode_t QEL_KX_Options_setLogInfrastructureMessages(QEL_KX_Options* self,
                                                                        QELBool enabled);
/** @} */

/**
 * @name Message queue
 * Bounded, first in, first out: any number of producers, one consumer. It copies what is pushed,
 * allocates nothing for short texts, and never makes a producer wait for the consumer.
 * @{
 */

/** Longest message and category, in characters, that are kept inside a queue element. Longer ones
 *  are allocated, and cut to ORVANE_LOG_MESSAGE_BOUND and ORVANE_LOG_CATEGORY_BOUND. */
#define QEL_KX_MESSAGE_QUEUE_SHORT_MESSAGE 127
#define QEL_KX_MESSAGE_QUEUE_SHORT_CATEGORY 31

/** How a queue is made. */
typedef struct QEL_KX_MessageQueueProperty {
    /** Most messages that it holds, 1 or more. */
    DDS_Long maxSize;
} QEL_KX_MessageQueueProperty;

/** A message as it is queued and published. */
typedef struct QEL_KX_MessageQueueRecord {
    QEL_KX_LogMessage sample;
    /** When it was logged; becomes the source timestamp of the sample. */
    DDS_Time_t timestamp;
} QEL_KX_MessageQueueRecord;

/** Links of an element; all NULL while it is in no list. */
typedef struct QEL_KX_MessageQueueNode {
    struct QEL_KX_MessageQueueList* list;
    struct QEL_KX_MessageQueueNode* next;
    struct QEL_KX_MessageQueueNode* previous;
} QEL_KX_MessageQueueNode;

/** The queued elements in order of arrival: a ring closed by the sentinel. */
typedef struct QEL_KX_MessageQueueList {
    QEL_KX_MessageQueueNode sentinel;
    /** First and last element, the sentinel when there is none. */
    QEL_KX_MessageQueueNode* head;
    QEL_KX_MessageQueueNode* tail;
    DDS_Long count;
} QEL_KX_MessageQueueList;

/** One queued message. A text is the element's own memory when it is not in its buffer, which then
 *  tells the size of that. */
typedef struct QEL_KX_MessageQueueElement {
    QEL_KX_MessageQueueNode node;
    QEL_KX_MessageQueueRecord record;
    char messageBuffer[QEL_KX_MESSAGE_QUEUE_SHORT_MESSAGE + 1];
    char categoryBuffer[QEL_KX_MESSAGE_QUEUE_SHORT_CATEGORY + 1];
} QEL_KX_MessageQueueElement;

typedef struct QEL_KX_MessageQueue {
    DDS_Long maxSize;
    /** Guards the list and the pool. */
    QELOsapiSemaphore* mutex;
    /** A unit for every message pushed whose turn has not come. The write thread takes several. */
    QELOsapiSemaphore* countingSemaphore;
    /** All elements; none is made later. */
    MOSKFastBufferPool* elementPool;
    QEL_KX_MessageQueueList list;
} QEL_KX_MessageQueue;

/**
 * @param property not NULL.
 * @return a queue, or NULL when its record cannot be allocated. A queue whose semaphores or
 * elements could not be made is returned all the same, after a line that says so: it refuses every
 * push. Free it with QEL_KX_MessageQueue_delete().
 */
ORVANE_API QEL_KX_MessageQueue* QEL_KX_MessageQueue_new(
    const QEL_KX_MessageQueueProperty* property);
/**
 * Appends a copy of a message. Any thread.
 * @param record its texts are not NULL and need to live during the call only.
 * @return 1, or 0 after a line that says why and with the queue unchanged: it is full, or there is
 *   no memory for a long text.
 */
ORVANE_API DDS_Boolean QEL_KX_MessageQueue_push(QEL_KX_MessageQueue* self,
                                                const QEL_KX_MessageQueueRecord* record);
/**
 * Waits for a unit of the counting semaphore and then looks at the first message, which stays in
 * the queue. The unit is used up: a message that is not popped is seen again only after another
 * push. Consumer thread only.
 * @param timeout how long to wait at most; NULL waits for ever.
 * @return the first message, the queue's own and valid until it is popped; NULL after the time-out
 *   or, with a line, after a failure.
 */
ORVANE_API const QEL_KX_MessageQueueRecord* QEL_KX_MessageQueue_front(QEL_KX_MessageQueue* self,
                                                                      const QELNtpTime* timeout);
/** Drops the first message, if there is one. Consumer thread only. */
ORVANE_API void QEL_KX_MessageQueue_pop(QEL_KX_MessageQueue* self);
/** Frees a queue with all that it holds; nobody may use it any more. NULL is ignored. */
ORVANE_API void QEL_KX_MessageQueue_delete(QEL_KX_MessageQueue* self);
/** @return the most messages that the queue holds. */
ORVANE_API DDS_Long QEL_KX_MessageQueue_getMessageQueueProperty(const QEL_KX_MessageQueue* self);
/** @} */

/**
 * @name Write thread
 * The one consumer of the queue: publishes what is queued.
 * @{
 */
typedef struct LogMessageWriteThread {
    /** The running thread, NULL until it has been started. */
    QELOsapiThread* thread;
    /** Owned. */
    QEL_KX_MessageQueue* messageQueue;
    /** The middleware's logger; borrowed. */
    PEXA_Config_Logger* logger;
    /** Verbosity that the middleware's logger has for its communication category. Atomic. */
    PEXA_Config_LogVerbosity communicationsLogVerbosity;
    /** 1 while the loop is to go on; its owner clears it to stop the thread. Atomic. */
    DDS_Long run;
    /** 1 when the loop has ended or was never begun. Atomic. */
    DDS_Long finished;
    /** Borrowed. */
    QEL_KX_LogMessageDataWriter* writer;
    /** Id of the write thread, 0 until it runs. Atomic. */
    DDS_UnsignedLong threadId;
} LogMessageWriteThread;

/**
 * Makes a queue and starts the thread "LogMessageWriteThread" that publishes from it.
 * @param writer borrowed; must outlive the record.
 * @param queueSize most messages that wait, 1 or more.
 * @param settings of the new thread: mask, priority and stack size.
 * @return the running thread, or NULL after a line that says why. Free it with
 *   LogMessageWriteThread_delete().
 */
ORVANE_API LogMessageWriteThread* LogMessageWriteThread_create(
    QEL_KX_LogMessageDataWriter* writer, DDS_Long queueSize, const DDS_ThreadSettings_t* settings);
/**
 * The thread's function: publishes each message with the time at which it was logged as source
 * timestamp, until the run flag is not 1. A write that times out is tried again at the next
 * message; any other failure loses that message and is reported.
 * @param writeThread the record. @return NULL.
 */
ORVANE_API void* LogMessageWriteThread_run(void* writeThread);
/**
 * Waits until the loop has ended, at most some 200 ms plus one write after the run flag was cleared
 * (and for ever if it was not), then frees the record and the queue with what is still in it. NULL
 * is ignored.
 */
ORVANE_API void LogMessageWriteThread_delete(LogMessageWriteThread* self);
/** Sets and remembers the verbosity of the middleware logger's communication category. Any thread.
 *  @return the middleware logger's result. */
ORVANE_API DDS_ReturnCode_t LogMessageWriteThread_setCommunicationsLogVerbosity(
    LogMessageWriteThread* self, PEXA_Config_LogVerbosity verbosity);
/** @} */

/**
 * @name Instance
 * @{
 */
/** The middleware entities of the logger. */
typedef struct QEL_KX_DDSEntities QEL_KX_DDSEntities;

/** The logger. Applications pass the pointer on and look at no field. */
typedef struct QEL_KX_Orvane {
    /** The application's record, or one that the creation made and the destruction deletes. */
    QEL_KX_Options* options;
    /** The filter level in force. Atomic. */
    DDS_Long filterLevel;
    /** Owned. */
    QEL_KX_DDSEntities* ddsEntities;
    /** The State sample as it is or will be published; owned. */
    QEL_KX_ADMIN_State* state;
    /** Instance of the published State, NIL until a first reader has matched. */
    DDS_InstanceHandle_t stateInstanceHandle;
    /** Owned. */
    LogMessageWriteThread* logMessageWriteThread;
    /** The write thread's queue; borrowed. */
    QEL_KX_MessageQueue* messageQueue;
    /** The device installed in the middleware's logger, NULL when none was. */
    const PEXA_Config_LoggerDevice* loggerDevice;
    /** Source of the messages' timestamps; owned. */
    QELSystemClock* clock;
} QEL_KX_Orvane;

/*
 * State of the process. The library reads and writes these atomically; applications use the
 * operations below.
 */
/** The instance, NULL while there is none. */
ORVANE_API extern QEL_KX_Orvane* QEL_KX_Orvane_instance;
/** 1 from the end of a creation by QEL_KX_Orvane_getInstance() to the end of the finalisation. */
ORVANE_API extern DDS_Long gQEL_KX_Orvane_initialized;
/** What QEL_KX_Orvane_setOptions() was given; borrowed. */
ORVANE_API extern QEL_KX_Options* gQEL_KX_Orvane_currentOptions;
/** Receives the messages of the middleware's logger, see QEL_KX_Orvane_writeDevice(); constant, as
 *  that logger may still be inside it after its removal. */
ORVANE_API extern const PEXA_Config_LoggerDevice QEL_KX_Orvane_localDevice;

/**
 * Gives the instance and creates it when there is none: participant (unless the options bring one),
 * topics, writers, the command reader and the write thread. While that goes on the middleware's
 * logger is silent, and it stays so if the creation fails.
 *
 * Any thread, except from a listener of a participant that is handed to the logger: the creation
 * may wait for that listener.
 * @return the instance, the same at every call; NULL after lines that say why it could not be
 *   created. A later call tries again. NULL after a line in a child process that was forked while
 *   there was an instance or another participant of the middleware.
 */
ORVANE_API QEL_KX_Orvane* QEL_KX_Orvane_getInstance(void);
/** The creation itself; for QEL_KX_Orvane_getInstance(), with the global lock held.
 *  @return a complete instance, or NULL with everything undone. */
ORVANE_API QEL_KX_Orvane* QEL_KX_Orvane_createInstance(void);
/**
 * Undoes a creation, complete or not; with the global lock held. Logging calls that wait for the
 * lock meanwhile give up, because the engine's threads that must end first may be among them.
 * @param self may be NULL. @return NULL.
 */
ORVANE_API QEL_KX_Orvane* QEL_KX_Orvane_destroy(QEL_KX_Orvane* self);
/**
 * Ends the logger: publishes the State NONOPERATIONAL, stops the write thread (messages still
 * queued are discarded) and frees everything that the creation made. Options handed over are
 * forgotten and remain the application's. Takes some milliseconds, or up to some 100 ms more after
 * a message of the last tenth of a second or where a reader of the log has gone. Any thread but
 * those of listeners. In a child process it frees the child's copy of the instance.
 * @return DDS_RETCODE_OK, also when there was nothing to do; DDS_RETCODE_ERROR when the global lock
 *   could not be taken (nothing has changed) or not be released.
 */
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_finalizeInstance(void);
/**
 * Hands over the options of the next instance.
 * @param options borrowed until QEL_KX_Orvane_finalizeInstance(); NULL means the defaults.
 * @return 1, or 0 with nothing changed: an instance exists.
 */
ORVANE_API DDS_Boolean QEL_KX_Orvane_setOptions(QEL_KX_Options* options);
/** @return 1 while there is a complete instance. Any thread. */
ORVANE_API DDS_Long QEL_KX_Orvane_isOrvaneRunning(void);
/** @return the instance's queue, or NULL. It must not race with the finalisation. */
ORVANE_API QEL_KX_MessageQueue* QEL_KX_Orvane_getMessageQueue(void);
/** @return the instance's write thread, or NULL. It must not race with the finalisation. */
ORVANE_API LogMessageWriteThread* QEL_KX_Orvane_getLogMessageWriteThread(void);
/** @} */

/**
 * @name Logging
 * Any thread, also listeners, at any time: a call with NULL or with the pointer of an instance that
 * has been finalised does nothing. A call takes the time, echoes the message to standard output if
 * the options say so, and queues it for publication if its level is at most the filter level. It
 * waits for other logging calls and for a creation or finalisation at most, never for the network.
 *
 * Texts are not kept; a message is published up to 4096 characters, a category up to 512. Messages
 * logged on the write thread itself are dropped.
 *
 * A signal handler may log even when it has interrupted a logging call of its thread; its message
 * is then lost. The calls are not async-signal-safe all the same: a long text allocates memory, and
 * the echo prints. A child process that was forked while there was an instance logs nothing. The
 * calls leave errno as it was.
 *
 * All return DDS_RETCODE_OK: what fails is said on standard output, and the message is lost.
 * @{
 */

/** A message as QEL_KX_Orvane_logMessageWithParams() takes it. */
typedef struct QEL_KX_LogMessageParams {
    DDS_Long level;
    /** Not NULL; an empty message is published but not echoed. */
    const char* message;
    /** Free text, not NULL. */
    const char* category;
    /** When the message arose, with seconds of 0 or more; its source timestamp. */
    DDS_Time_t timestamp;
} QEL_KX_LogMessageParams;

/**
 * Tells whether a message is worth its text.
 * @return 1 when a message of that level would be published or echoed right now, 0 when it would
 *   leave no trace, and without an instance. A load; any thread, at any time, also in a signal
 *   handler or in a child process.
 */
ORVANE_API DDS_Boolean QEL_KX_Orvane_isLevelEnabled(DDS_Long level);

/** @name At a fixed level, with an empty category @{ */
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_fatal(QEL_KX_Orvane* self, const char* message);
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_severe(QEL_KX_Orvane* self, const char* message);
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_error(QEL_KX_Orvane* self, const char* message);
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_warning(QEL_KX_Orvane* self, const char* message);
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_notice(QEL_KX_Orvane* self, const char* message);
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_info(QEL_KX_Orvane* self, const char* message);
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_debug(QEL_KX_Orvane* self, const char* message);
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_trace(QEL_KX_Orvane* self, const char* message);
/** @} */
/** At any level, with an empty category. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_log(QEL_KX_Orvane* self, DDS_Long level,
                                              const char* message);
/** With a category. */
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_logMessageWithLevelCategory(QEL_KX_Orvane* self,
                                                                      DDS_Long level,
                                                                      const char* message,
                                                                      const char* category);
/** With a category and a time of the caller's. */
ORVANE_API DDS_ReturnCode_t
QEL_KX_Orvane_logMessageWithParams(QEL_KX_Orvane* self, const QEL_KX_LogMessageParams* params);
/**
 * Prints "<name of the level>: <context>: <message>" as one line on standard output; a message that
 * ends in a newline gets no second one. Lines of several threads do not mix.
 * @return DDS_RETCODE_OK; after a line that says so DDS_RETCODE_PRECONDITION_NOT_MET for a NULL
 * text and DDS_RETCODE_BAD_PARAMETER for an empty message.
 */
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_printMessage(const char* message, const char* context,
                                                       DDS_Long level);
/**
 * Copies what the library has printed on standard output in the calling thread since the last such
 * call, and forgets it. So an application can show why an operation has failed: it forgets what was
 * before with a NULL buffer, calls the operation, and takes the lines.
 * @param buffer gets the lines, each with its newline, and a NUL behind them; NULL only forgets
 * @param size of the buffer, in bytes. The first 511 bytes of the lines are kept; what is cut may
 *   end inside a line or a character.
 * @return the number of bytes before the NUL.
 */
ORVANE_API DDS_UnsignedLong QEL_KX_Orvane_takeReports(char* buffer, DDS_UnsignedLong size);
/** @} */

/**
 * Sleeps for @p milliseconds / 1000 seconds and as many nanoseconds as milliseconds remain: 1500
 * sleeps for one second and 500 nanoseconds.
 * @return the middleware's result; DDS_RETCODE_BAD_PARAMETER for a negative number.
 */
ORVANE_API DDS_ReturnCode_t QEL_KX_Utility_sleep(DDS_Long milliseconds);

PEXA_END_C

#endif
