/**
 * @file admin.h
 * @brief The logger's DDS entities, its published State, remote commands, and the bridge to the
 * middleware's own logger.
 *
 * Nothing here is needed to log; the operations are what the logger itself consists of, and what
 * tools and tests may look at. A failure is reported on standard output by
 * QEL_KX_Orvane_printMessage() with the operation's name as context.
 *
 * Threads: the logger is created and finalised under the process-wide lock; the State writer's
 * publication-matched callback and the command reader's data-available callback run on threads of
 * the middleware, or on an application's thread that makes a reader or writes a command in this
 * process. Where nothing else is said, an operation may be called from any thread while its logger
 * or its entities live, and NULL must not be given for a logger, a request or a buffer.
 */
#ifndef ORVANE_ADMIN_H
#define ORVANE_ADMIN_H

#include "orvane/export.h"
#include "orvane/types.h"
#include "pexa/config_logger.h"
#include "pexa/domain.h"
#include "pexa/publication.h"
#include "pexa/subscription.h"

PEXA_BEGIN_C

typedef struct QEL_KX_Options QEL_KX_Options;
typedef struct QEL_KX_Orvane QEL_KX_Orvane;

/**
 * @name Topics
 * The contract with other applications: the names of the topics and the type names under which
 * their types are registered (these differ from the types' own names).
 * @{
 */
#define QEL_KX_LOG_TOPIC_NAME "qel/orvane"
#define QEL_KX_STATE_TOPIC_NAME "qel/orvane/administration/state"
#define QEL_KX_COMMAND_REQUEST_TOPIC_NAME "qel/orvane/administration/command_request"
#define QEL_KX_COMMAND_RESPONSE_TOPIC_NAME "qel/orvane/administration/command_response"

#define QEL_KX_LOG_REGISTERED_TYPE_NAME "com::qel::kx::LogMessage"
#define QEL_KX_STATE_REGISTERED_TYPE_NAME "com::qel::kx::admin::State"
#define QEL_KX_COMMAND_REQUEST_REGISTERED_TYPE_NAME "com::qel::kx::admin::CommandRequest"
#define QEL_KX_COMMAND_RESPONSE_REGISTERED_TYPE_NAME "com::qel::kx::admin::CommandResponse"

/** The view of the command requests through which a logger sees only those addressed to it. */
#define QEL_KX_COMMAND_REQUEST_FILTERED_TOPIC_NAME "CommandRequestContentFilteredTopic"
/** Its filter; the parameters are the logger's host id and application id as signed decimals. */
#define QEL_KX_COMMAND_REQUEST_FILTER_EXPRESSION \
    "targetHostAndAppId.rtps_host_id = %0 and targetHostAndAppId.rtps_app_id = %1"

/** Number of topics that a logger may create. */
#define QEL_KX_TOPIC_COUNT 4
/** @} */

/** Category of the log messages that come from the middleware's own logger. */
#define QEL_KX_MIDDLEWARE_LOGGER_CATEGORY "com.qel.pexa.config.Logger"

/**
 * Every DDS entity that a logger uses. The record owns what it created itself; a participant of the
 * application and topics that existed before are borrowed and survive it.
 */
typedef struct QEL_KX_DDSEntities {
    /** 1: the participant is the record's own; 0: it came with the options. */
    QELBool participantCreated;
    DDS_DomainParticipantFactory* participantFactory;
    DDS_DomainParticipant* participant;
    DDS_Topic* logTopic;
    /** Has all three writers. */
    DDS_Publisher* publisher;
    /** NULL without remote administration, as is everything that has to do with commands. */
    DDS_Subscriber* subscriber;
    QEL_KX_LogMessageDataWriter* logMessageWriter;
    DDS_Topic* stateTopic;
    QEL_KX_ADMIN_StateDataWriter* stateWriter;
    /** Installed on the State writer; its listener data is the logger. */
    DDS_DataWriterListener stateWriterListener;
    DDS_Topic* commandRequestTopic;
    DDS_ContentFilteredTopic* commandRequestFilteredTopic;
    QEL_KX_ADMIN_CommandRequestDataReader* commandRequestReader;
    DDS_Topic* commandResponseTopic;
    QEL_KX_ADMIN_CommandResponseDataWriter* commandResponseWriter;
    /** Log, State, command request, command response; NULL for a topic that existed before. */
    DDS_Topic* createdTopics[QEL_KX_TOPIC_COUNT];
    /** Identity of the participant on the wire. */
    DDS_UnsignedLong rtpsHostId;
    DDS_UnsignedLong rtpsAppId;
    /** The options' names, borrowed; NULL or empty means no profile. */
    const char* qosLibrary;
    const char* qosProfile;
} QEL_KX_DDSEntities;

/**
 * @name Life of the entities
 * To be called by one thread at a time: the logger holds the process-wide lock.
 * @{
 */
/**
 * Makes all entities that the logger's options ask for, and fills the identity and the domain in
 * the logger's State, if it has one. Resets @ref QEL_KX_DDSEntities_gInitialStateSent.
 * @param logger borrowed; it, its options and its State must outlive the record.
 * @return the record, to be released with @ref QEL_KX_DDSEntities_destroy; NULL after a reported
 *   failure, with everything undone.
 */
ORVANE_API QEL_KX_DDSEntities* QEL_KX_DDSEntities_create(QEL_KX_Orvane* logger);
/** Deletes what the record owns and frees it; NULL is ignored. Waits for running callbacks. */
ORVANE_API void QEL_KX_DDSEntities_destroy(QEL_KX_DDSEntities* entities);
/**
 * Deletes what the record owns and empties it of entities. A failing step is reported as a warning
 * and does not stop the rest.
 * @return the last failing step's code, OK when none failed or there is nothing to delete (NULL is
 *   reported as a warning).
 */
ORVANE_API DDS_ReturnCode_t
QEL_KX_DDSEntities_deleteContainedEntities(QEL_KX_DDSEntities* entities);
/** Zero-fills a record; NULL is reported. */
ORVANE_API void QEL_KX_DDSEntities_initialize(QEL_KX_DDSEntities* entities);
/** @} */

/**
 * @name QoS of the entities
 * Each operation initialises @p qos and fills it from the record's QoS profile if that exists, else
 * from the middleware's defaults, and then forces what the logger's protocol needs. The caller
 * hands over a zero-filled record and finalises it in every case.
 *
 * Forced on writers: latency budget zero, AUTOMATIC liveliness, reception order, SHARED ownership;
 * on readers the same with an infinite deadline and latency budget. By topic, for the QoS of the
 * topic itself only when no profile is used:
 *
 * | topic            | durability (topic, writer) | reliability | history without a profile |
 * |------------------|----------------------------|-------------|---------------------------|
 * | log              | TRANSIENT_LOCAL            | RELIABLE    | KEEP_LAST 10              |
 * | State            | TRANSIENT_LOCAL            | RELIABLE    | KEEP_LAST 1               |
 * | command request  |                            | RELIABLE    | KEEP_LAST 10 (reader)     |
 * | command response |                            | RELIABLE    | KEEP_LAST 10              |
 *
 * @return OK; BAD_PARAMETER for NULL; OUT_OF_RESOURCES; what the middleware returned.
 * @{
 */
/** @return 1 if both names are neither NULL nor empty and that library has that profile. */
ORVANE_API DDS_Boolean QEL_KX_DDSEntities_doesQosLibraryAndProfileExist(
    const QEL_KX_DDSEntities* entities, const char* library, const char* profile);
/** The participant's name becomes the options' application kind, unless that is NULL or empty. */
ORVANE_API DDS_ReturnCode_t QEL_KX_DDSEntities_getDomainParticipantQos(
    const QEL_KX_DDSEntities* entities, DDS_DomainParticipantQos* qos,
    const QEL_KX_Options* options);
/** Presentation is reset: instance scope, neither coherent nor ordered. */
ORVANE_API DDS_ReturnCode_t QEL_KX_DDSEntities_getPublisherQos(const QEL_KX_DDSEntities* entities,
                                                               DDS_PublisherQos* qos);
/** Presentation is reset as for the publisher. */
ORVANE_API DDS_ReturnCode_t QEL_KX_DDSEntities_getSubscriberQos(const QEL_KX_DDSEntities* entities,
                                                                DDS_SubscriberQos* qos);
/** @param topicName compared without regard to case, here and below. */
ORVANE_API DDS_ReturnCode_t QEL_KX_DDSEntities_getTopicQos(const QEL_KX_DDSEntities* entities,
                                                           DDS_TopicQos* qos,
                                                           const char* topicName);
ORVANE_API DDS_ReturnCode_t QEL_KX_DDSEntities_getDataWriterQos(const QEL_KX_DDSEntities* entities,
                                                                DDS_DataWriterQos* qos,
                                                                const char* topicName);
ORVANE_API DDS_ReturnCode_t QEL_KX_DDSEntities_getDataReaderQos(const QEL_KX_DDSEntities* entities,
                                                                DDS_DataReaderQos* qos,
                                                                const char* topicName);
/** @} */

/**
 * @name Access to the entities
 * Each returns the field as it is, and 0 or NULL for a NULL record. What is returned stays the
 * record's.
 * @{
 */
ORVANE_API DDS_UnsignedLong QEL_KX_DDSEntities_getRtpsHostId(const QEL_KX_DDSEntities* entities);
ORVANE_API DDS_UnsignedLong QEL_KX_DDSEntities_getRtpsAppId(const QEL_KX_DDSEntities* entities);
ORVANE_API DDS_DomainParticipant* QEL_KX_DDSEntities_getDomainParticipant(
    const QEL_KX_DDSEntities* entities);
ORVANE_API QEL_KX_LogMessageDataWriter* QEL_KX_DDSEntities_getLogMessageWriter(
    const QEL_KX_DDSEntities* entities);
ORVANE_API QEL_KX_ADMIN_StateDataWriter* QEL_KX_DDSEntities_getStateWriter(
    const QEL_KX_DDSEntities* entities);
/** @return NULL without remote administration. */
ORVANE_API QEL_KX_ADMIN_CommandRequestDataReader* QEL_KX_DDSEntities_getCommandRequestReader(
    const QEL_KX_DDSEntities* entities);
/** @return NULL without remote administration. */
ORVANE_API QEL_KX_ADMIN_CommandResponseDataWriter* QEL_KX_DDSEntities_getCommandResponseWriter(
    const QEL_KX_DDSEntities* entities);
/** @} */

/**
 * @name State
 * The State is kept in memory from the beginning, published as a whole when the first reader has
 * matched, and after every change from then on; later readers get the last one from the writer's
 * history.
 * @{
 */
/** 1 once the State has been published for the first time. */
ORVANE_API extern QELBool QEL_KX_DDSEntities_gInitialStateSent;
/** @return @ref QEL_KX_DDSEntities_gInitialStateSent. */
ORVANE_API QELBool QEL_KX_DDSEntities_hasInitialStateBeenSent(void);
/**
 * The State writer's publication-matched callback: registers the State's instance and publishes the
 * first State. Does nothing once either has been done.
 * @param listenerData the logger.
 * @param status not looked at, may be NULL.
 */
ORVANE_API void QEL_KX_DDSEntities_stateWriterOnPublicationMatched(
    void* listenerData, DDS_DataWriter* writer, const DDS_PublicationMatchedStatus* status);
/**
 * Publishes the State as it is now. Waits while another thread publishes, up to five seconds; after
 * that the State is left to that thread, and this call reports a failure. In a listener that is
 * called from within a publication, the State is published after it.
 * @return 1: published, to be published after the present one, or nothing to do yet (no reader so
 *   far, or the writer is disabled); 0 after a reported failure.
 */
ORVANE_API DDS_Boolean QEL_KX_Orvane_writeState(QEL_KX_Orvane* logger);
/** Makes the logger NONOPERATIONAL, lets its write thread end and publishes the State. Does nothing
 *  without a logger; the caller keeps the logger from being destroyed meanwhile. */
ORVANE_API void QEL_KX_Orvane_disable(void);
/** Zero-fills a freshly allocated logger; NULL is reported. */
ORVANE_API void QEL_KX_Orvane_initialize(QEL_KX_Orvane* logger);
/** @} */

/**
 * @name Commands
 * @{
 */
/**
 * The command reader's data-available callback: takes all requests and executes them in order.
 * Takes nothing unless the State is OPERATIONAL.
 * @param logger the QEL_KX_Orvane.
 */
ORVANE_API void QEL_KX_Orvane_CommandRequestListener_on_data_available(void* logger,
                                                                       DDS_DataReader* reader);
/**
 * Executes one request and publishes the response to it, behind the State that shows its effect.
 * While another thread publishes, both are left to that thread. A kind of command that is none of
 * the enumeration's is answered NOT_SUPPORTED.
 * @param request not kept; not const only because reading a sequence may initialise its record.
 */
ORVANE_API void QEL_KX_Orvane_processCommand(QEL_KX_Orvane* logger,
                                             QEL_KX_ADMIN_CommandRequest* request);
/**
 * Changes the level from which on messages are filtered out and publishes the State. While another
 * thread publishes, the State is left to that thread. A level that is in force already publishes
 * nothing.
 * @param level any number from 0 on; 0 filters out everything.
 * @return OK, also when the State could not be written; ERROR for a negative level, with nothing
 *   changed.
 */
ORVANE_API DDS_ReturnCode_t QEL_KX_Orvane_setFilterLevel(QEL_KX_Orvane* logger, DDS_Long level);
/** @} */

/**
 * @name The middleware's logger
 * @{
 */
/**
 * The write operation of QEL_KX_Orvane_localDevice. Logs the message in the category
 * @ref QEL_KX_MIDDLEWARE_LOGGER_CATEGORY, or prints it on standard output while there is no
 * complete logger. Runs on whatever thread the middleware logs from.
 */
ORVANE_API void QEL_KX_Orvane_writeDevice(const PEXA_Config_LoggerDevice* device,
                                          const PEXA_Config_LogMessage* message);
/**
 * Saves the verbosity of every category and silences the logger.
 * @param saved receives @ref PEXA_CONFIG_LOG_CATEGORY_COUNT verbosities; without a middleware
 *   logger (reported) all are silent.
 */
ORVANE_API void QEL_KX_Orvane_maskSystemVerbosity(PEXA_Config_LogVerbosity* saved);
/** Restores what @ref QEL_KX_Orvane_maskSystemVerbosity saved. */
ORVANE_API void QEL_KX_Orvane_unmaskSystemVerbosity(const PEXA_Config_LogVerbosity* saved);
/** Copies the middleware's verbosities into the State; publishes nothing. */
ORVANE_API void QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(QEL_KX_Orvane* logger);
/** Copies the middleware's print format into the State; publishes nothing. */
ORVANE_API void QEL_KX_Orvane_updateQELLoggerPrintFormatState(QEL_KX_Orvane* logger);
/** Sets the middleware's verbosity of a category, refreshes all five in the State and publishes
 *  it; the write thread keeps a copy of the communication category's. */
ORVANE_API void QEL_KX_Orvane_setQELLoggerVerbosityByCategory(QEL_KX_Orvane* logger,
                                                              PEXA_Config_LogCategory category,
                                                              PEXA_Config_LogVerbosity verbosity);
/**
 * Sets the middleware's print format and publishes the State with the format then in force, as
 * @ref QEL_KX_Orvane_writeState does.
 * @return 1, or 0 after a reported failure: no middleware logger, or the State was not written.
 */
ORVANE_API DDS_Boolean QEL_KX_Orvane_setQELLoggerPrintFormat(QEL_KX_Orvane* logger,
                                                             PEXA_Config_LogPrintFormat format);
/** @} */

/**
 * @name Translations
 * Between the middleware's numbers and the library's. Any number may be given.
 * @{
 */
/** An unknown category is taken for API. */
ORVANE_API QEL_KX_ADMIN_QELLoggerCategory
QEL_KX_translateFromQELLoggerCategoryToKXCategory(DDS_Long category);
ORVANE_API PEXA_Config_LogCategory
QEL_KX_translateFromKXCategoryToQELLoggerCategory(DDS_Long category);
/** An unknown verbosity is taken for WARNING. */
ORVANE_API QEL_KX_ADMIN_QELLoggerVerbosity
QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(PEXA_Config_LogVerbosity verbosity);
ORVANE_API PEXA_Config_LogVerbosity
QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(DDS_Long verbosity);
/** An unknown print format is taken for DEFAULT. */
ORVANE_API QEL_KX_ADMIN_QELLoggerPrintFormat
QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(PEXA_Config_LogPrintFormat format);
ORVANE_API PEXA_Config_LogPrintFormat
QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(DDS_Long format);
/** @return the library's level: ERROR, WARNING, NOTICE, DEBUG for 1, 2, 3, 5, else INFO. */
ORVANE_API DDS_Long QEL_KX_translateFromQELLoggerLogLevelToKXLevel(DDS_Long level);
/** Most bytes that @ref QEL_KX_translateFromKXLogLevelToString writes. */
#define QEL_KX_LEVEL_NAME_SIZE 11
/**
 * Writes the printed name of a level, "KX Silent" for a number that is no level.
 * @param buffer at least @ref QEL_KX_LEVEL_NAME_SIZE bytes.
 * @return OK, or BAD_PARAMETER for a NULL buffer.
 */
ORVANE_API DDS_ReturnCode_t QEL_KX_translateFromKXLogLevelToString(DDS_Long level, char* buffer);
/** @} */

PEXA_END_C

#endif
