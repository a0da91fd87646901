/**
 * @file types.h
 * @brief The published data types: log records, and the messages of remote administration.
 *
 * Each type has a record, a type name, a sequence and families of operations; which family consists
 * of what is said once, in type_operations.h. For type `T` the names are
 *
 * | name                  | what                                    | types                      |
 * |-----------------------|-----------------------------------------|----------------------------|
 * | `TTYPENAME`           | type name                               | all                        |
 * | `T_initialize` …      | value operations                        | all                        |
 * | `TSeq_set_length` …   | the thirty operations of sequence.h     | all                        |
 * | `TPlugin_serialize` … | encoding                                | all                        |
 * | `TPlugin_new` …       | type plugin                             | structures and the union   |
 * | `TPluginSupport_…`    | records on the heap, printing           | the former (print: all)    |
 * | `TTypeSupport_…`      | registration, records on the heap       | the five topic types       |
 * | `TDataWriter_…`       | typed writer                            | the five topic types       |
 * | `TDataReader_…`       | typed reader                            | the five topic types       |
 *
 * A string member is an owned, NUL-terminated buffer of its bound + 1 bytes once the record has
 * been initialised; change the text in the buffer, not the pointer. An operation touches only what
 * it is handed: the same record must not be used by two threads at a time.
 */
#ifndef ORVANE_TYPES_H
#define ORVANE_TYPES_H

#include "orvane/export.h"
#include "orvane/type_operations.h"
#include "pexa/base.h"
#include "pexa/cdr_stream.h"
#include "pexa/publication.h"
#include "pexa/sequence.h"
#include "pexa/subscription.h"
#include "pexa/type_plugin.h"
#include "pexa/typecode.h"

PEXA_BEGIN_C

/**
 * @name Bounds
 * Most characters of the string members, terminator not counted, and most elements.
 * @{
 */
#define ORVANE_LOG_CATEGORY_BOUND 512
#define ORVANE_LOG_MESSAGE_BOUND 4096
#define ORVANE_APPLICATION_KIND_BOUND 256
#define ORVANE_RESPONSE_MESSAGE_BOUND 2048
/** One entry per @ref QEL_KX_ADMIN_QELLoggerCategory. */
#define ORVANE_QEL_LOGGER_CATEGORY_COUNT 5
#define ORVANE_VIEWER_BOUND 16
/** @} */

/** Life of a logger. */
typedef enum QEL_KX_ADMIN_StateKind {
    QEL_KX_STATE_INITIALIZING = 0,
    QEL_KX_STATE_OPERATIONAL = 1,
    QEL_KX_STATE_NONOPERATIONAL = 2,
    QEL_KX_STATE_SHUTTING_DOWN = 3
} QEL_KX_ADMIN_StateKind;

/** What a command changes; selects the branch of @ref QEL_KX_ADMIN_Command. */
typedef enum QEL_KX_ADMIN_CommandKind {
    QEL_KX_SET_LOG_LEVEL = 0,
    QEL_KX_SET_QEL_LOGGER_LEVEL = 1,
    QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT = 2
} QEL_KX_ADMIN_CommandKind;

/** How a command ended. */
typedef enum QEL_KX_ADMIN_CommandResult {
    QEL_KX_COMMAND_RESULT_OK = 0,
    QEL_KX_COMMAND_RESULT_NOT_SUPPORTED = 1,
    QEL_KX_COMMAND_RESULT_ERROR = 2
} QEL_KX_ADMIN_CommandResult;

/** Verbosity of one category of the middleware's logger. */
typedef enum QEL_KX_ADMIN_QELLoggerVerbosity {
    QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT = 0,
    QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR = 1,
    QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING = 2,
    QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL = 3,
    QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE = 4,
    QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL = 5
} QEL_KX_ADMIN_QELLoggerVerbosity;

/** Category of the middleware's logger. */
typedef enum QEL_KX_ADMIN_QELLoggerCategory {
    QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM = 0,
    QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION = 1,
    QEL_KX_PEXA_CONFIG_LOG_CATEGORY_DATABASE = 2,
    QEL_KX_PEXA_CONFIG_LOG_CATEGORY_ENTITIES = 3,
    QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API = 4
} QEL_KX_ADMIN_QELLoggerCategory;

/** How the middleware's logger prints a message. */
typedef enum QEL_KX_ADMIN_QELLoggerPrintFormat {
    QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT = 0,
    QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED = 1,
    QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE = 2,
    QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED = 3,
    QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG = 4,
    QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL = 5,
    QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL = 6
} QEL_KX_ADMIN_QELLoggerPrintFormat;

/** Identity of one logging application. Final; both members are its key. */
typedef struct QEL_KX_HostAndAppId {
    /** Member 0: host identifier of the application's participant. */
    DDS_Long rtps_host_id;
    /** Member 1: application identifier of the application's participant. */
    DDS_Long rtps_app_id;
} QEL_KX_HostAndAppId;

/**
 * One log record. Mutable; its key is hostAndAppId and level, so that every application has one
 * instance per level.
 */
typedef struct QEL_KX_LogMessage {
    /** Member 0, key: which application logged it. */
    QEL_KX_HostAndAppId hostAndAppId;
    /** Member 1, key: number of the log level. */
    DDS_Long level;
    /** Member 2: category, at most @ref ORVANE_LOG_CATEGORY_BOUND characters. */
    char* category;
    /** Member 3: text, at most @ref ORVANE_LOG_MESSAGE_BOUND characters. */
    char* message;
} QEL_KX_LogMessage;

/** Verbosity of one category of the middleware's logger. Final, no key. */
typedef struct QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity {
    /** Member 0. */
    QEL_KX_ADMIN_QELLoggerCategory category;
    /** Member 1. */
    QEL_KX_ADMIN_QELLoggerVerbosity verbosity;
} QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity;

PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq,
                     QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity);

/** What a logger tells of itself. Mutable; its key is hostAndAppId. */
typedef struct QEL_KX_ADMIN_State {
    /** Member 0, key: the logger. */
    QEL_KX_HostAndAppId hostAndAppId;
    /** Member 1: domain in which it can be administered. */
    DDS_Long administrationDomainId;
    /** Member 2. */
    QEL_KX_ADMIN_StateKind state;
    /** Member 3: at most @ref ORVANE_APPLICATION_KIND_BOUND characters. */
    char* applicationKind;
    /** Member 4: the least important level that is still published. */
    DDS_Long filterLevel;
    /** Member 5: always all five entries. */
    QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity
        qelLoggerVerbosities[ORVANE_QEL_LOGGER_CATEGORY_COUNT];
    /** Member 6. */
    QEL_KX_ADMIN_QELLoggerPrintFormat qelLoggerPrintFormat;
} QEL_KX_ADMIN_State;

/** The branches of a command, side by side: changing one leaves the others alone. */
typedef struct QEL_KX_ADMIN_CommandBranches {
    /** Member 1, for QEL_KX_SET_LOG_LEVEL. */
    DDS_Long filterLevel;
    /** Member 2, for QEL_KX_SET_QEL_LOGGER_LEVEL: at most five elements. */
    QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq categoryAndVerbosity;
    /** Member 3, for QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT. */
    QEL_KX_ADMIN_QELLoggerPrintFormat printFormat;
} QEL_KX_ADMIN_CommandBranches;

/** A command: a union whose discriminator says which branch holds. Mutable. */
typedef struct QEL_KX_ADMIN_Command {
    /** Member 0: the discriminator. */
    QEL_KX_ADMIN_CommandKind _d;
    QEL_KX_ADMIN_CommandBranches _u;
} QEL_KX_ADMIN_Command;

/** A command for one logger. Mutable, no key. */
typedef struct QEL_KX_ADMIN_CommandRequest {
    /** Member 0: the logger that is to execute it. */
    QEL_KX_HostAndAppId targetHostAndAppId;
    /** Member 1: who sent it. */
    QEL_KX_HostAndAppId originatorHostAndAppId;
    /** Member 2: the sender's number of the request, repeated in the response. */
    DDS_Long invocation;
    /** Member 3. */
    QEL_KX_ADMIN_Command command;
} QEL_KX_ADMIN_CommandRequest;

/** A logger's answer to a command. Mutable; its key is hostAndAppId. */
typedef struct QEL_KX_ADMIN_CommandResponse {
    /** Member 0, key: the logger that answers. */
    QEL_KX_HostAndAppId hostAndAppId;
    /** Member 1: from the request. */
    QEL_KX_HostAndAppId originatorHostAndAppId;
    /** Member 2: from the request. */
    DDS_Long invocation;
    /** Member 3. */
    QEL_KX_ADMIN_CommandResult commandResult;
    /** Member 4: at most @ref ORVANE_RESPONSE_MESSAGE_BOUND characters. */
    char* message;
} QEL_KX_ADMIN_CommandResponse;

/** A number of messages, of 64 bits. Final, no key. */
typedef struct QEL_KX_ADMIN_Count {
    /** Member 0: the upper 32 bits. */
    DDS_Long high;
    /** Member 1: the bits of the lower 32. */
    DDS_Long low;
} QEL_KX_ADMIN_Count;

/** A reader of log messages that a logger knows. Final, no key. */
typedef struct QEL_KX_ADMIN_Viewer {
    /** Members 0 to 3: the reader's GUID, most significant bytes first. */
    DDS_Long host;
    DDS_Long app;
    DDS_Long instance;
    DDS_Long entity;
    /** Members 4 to 11: the statistics when the logger began to send to the reader, both halves of
     *  each number as in a count. Of the messages published before, the reader gets those that the
     *  logger has kept; it is sent all later ones. */
    DDS_Long publishedHigh;
    DDS_Long publishedLow;
    DDS_Long refusedForRoomHigh;
    DDS_Long refusedForRoomLow;
    DDS_Long refusedForMemoryHigh;
    DDS_Long refusedForMemoryLow;
    DDS_Long discardedHigh;
    DDS_Long discardedLow;
} QEL_KX_ADMIN_Viewer;

PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_ViewerSeq, QEL_KX_ADMIN_Viewer);

/** What became of a logger's messages; statistics.h explains the numbers. Mutable; its key is
 *  hostAndAppId. */
typedef struct QEL_KX_ADMIN_Statistics {
    /** Member 0, key: the logger. */
    QEL_KX_HostAndAppId hostAndAppId;
    /** Member 1: the last four bytes of the GUID of its writer of log messages. */
    DDS_Long logWriter;
    /** Members 2 to 7. */
    QEL_KX_ADMIN_Count accepted;
    QEL_KX_ADMIN_Count refusedForRoom;
    QEL_KX_ADMIN_Count refusedForMemory;
    /** The RTPS sequence number of the last message, too. */
    QEL_KX_ADMIN_Count published;
    QEL_KX_ADMIN_Count discarded;
    QEL_KX_ADMIN_Count writeTimeouts;
    /** Members 8 to 10. */
    DDS_Long queued;
    DDS_Long mostQueued;
    DDS_Long queueSize;
    /** Member 11: 1 when the logger has ended, else 0. */
    DDS_Long isLast;
    /** Member 12: the readers that came last, at most @ref ORVANE_VIEWER_BOUND. */
    QEL_KX_ADMIN_ViewerSeq viewers;
} QEL_KX_ADMIN_Statistics;

/**
 * @name Groups of types
 * `X(T)` is expanded for each type of the group.
 * @{
 */
#define ORVANE_ENUMERATIONS(X)         \
    X(QEL_KX_ADMIN_StateKind)          \
    X(QEL_KX_ADMIN_CommandKind)        \
    X(QEL_KX_ADMIN_CommandResult)      \
    X(QEL_KX_ADMIN_QELLoggerVerbosity) \
    X(QEL_KX_ADMIN_QELLoggerCategory)  \
    X(QEL_KX_ADMIN_QELLoggerPrintFormat)
/** Types that topics carry. */
#define ORVANE_TOPIC_TYPES(X)       \
    X(QEL_KX_LogMessage)            \
    X(QEL_KX_ADMIN_State)           \
    X(QEL_KX_ADMIN_CommandRequest)  \
    X(QEL_KX_ADMIN_CommandResponse) \
    X(QEL_KX_ADMIN_Statistics)
/** Types that only occur inside others. */
#define ORVANE_NESTED_TYPES(X)                    \
    X(QEL_KX_HostAndAppId)                        \
    X(QEL_KX_ADMIN_Command)                       \
    X(QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity) \
    X(QEL_KX_ADMIN_Count)                         \
    X(QEL_KX_ADMIN_Viewer)
#define ORVANE_STRUCTURES(X) ORVANE_TOPIC_TYPES(X) ORVANE_NESTED_TYPES(X)
#define ORVANE_TYPES(X) ORVANE_STRUCTURES(X) ORVANE_ENUMERATIONS(X)
/** Types with a key, of which all but the first are topic types. */
#define ORVANE_KEYED_TYPES(X) X(QEL_KX_HostAndAppId) ORVANE_KEYED_TOPIC_TYPES(X)
#define ORVANE_KEYED_TOPIC_TYPES(X) \
    X(QEL_KX_LogMessage)            \
    X(QEL_KX_ADMIN_State)           \
    X(QEL_KX_ADMIN_CommandResponse) \
    X(QEL_KX_ADMIN_Statistics)
/** @} */

/** @cond declarations made of the operation lists */
PEXA_SEQUENCE_RECORD(QEL_KX_HostAndAppIdSeq, QEL_KX_HostAndAppId);
PEXA_SEQUENCE_RECORD(QEL_KX_LogMessageSeq, QEL_KX_LogMessage);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_QELLoggerVerbositySeq, QEL_KX_ADMIN_QELLoggerVerbosity);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_QELLoggerCategorySeq, QEL_KX_ADMIN_QELLoggerCategory);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_QELLoggerPrintFormatSeq, QEL_KX_ADMIN_QELLoggerPrintFormat);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_StateKindSeq, QEL_KX_ADMIN_StateKind);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_StateSeq, QEL_KX_ADMIN_State);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_CommandKindSeq, QEL_KX_ADMIN_CommandKind);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_CommandSeq, QEL_KX_ADMIN_Command);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_CommandRequestSeq, QEL_KX_ADMIN_CommandRequest);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_CommandResultSeq, QEL_KX_ADMIN_CommandResult);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_CommandResponseSeq, QEL_KX_ADMIN_CommandResponse);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_CountSeq, QEL_KX_ADMIN_Count);
PEXA_SEQUENCE_RECORD(QEL_KX_ADMIN_StatisticsSeq, QEL_KX_ADMIN_Statistics);

#define ORVANE_DECLARE(Prefix, T, Result, operation, parameters, arguments) \
    ORVANE_API Result Prefix##_##operation parameters;
#define ORVANE_DECLARE_READER_FORM(T, form, arguments, ...)            \
    ORVANE_API DDS_ReturnCode_t T##DataReader_read##form(__VA_ARGS__); \
    ORVANE_API DDS_ReturnCode_t T##DataReader_take##form(__VA_ARGS__); \
    ORVANE_API DDS_ReturnCode_t T##DataReader_read_or_take##form##I(__VA_ARGS__, DDS_Boolean take);
#define ORVANE_DECLARE_TYPE(T)                       \
    ORVANE_API extern const char T##TYPENAME[];      \
    ORVANE_VALUE_OPERATIONS(ORVANE_DECLARE, T)       \
    PEXA_SEQUENCE_OPERATIONS(ORVANE_API, T##Seq, T); \
    ORVANE_ENCODING_OPERATIONS(ORVANE_DECLARE, T)    \
    ORVANE_PRINT_OPERATIONS(ORVANE_DECLARE, T)
#define ORVANE_DECLARE_STRUCTURE(T)                           \
    ORVANE_API TULVTypePlugin* T##Plugin_new(void);           \
    ORVANE_API void T##Plugin_delete(TULVTypePlugin* plugin); \
    ORVANE_PLUGIN_OPERATIONS(ORVANE_DECLARE, T)               \
    ORVANE_PLUGIN_DATA_OPERATIONS(ORVANE_DECLARE, T)
#define ORVANE_DECLARE_PLUGIN_KEY(T) ORVANE_PLUGIN_KEY_OPERATIONS(ORVANE_DECLARE, T)
#define ORVANE_DECLARE_KEY_DATA(T) ORVANE_PLUGIN_KEY_DATA_OPERATIONS(ORVANE_DECLARE, T)
#define ORVANE_DECLARE_TOPIC_TYPE(T)                   \
    /* A typed endpoint is the untyped one itself. */  \
    typedef struct DDS_DataWriter T##DataWriter;       \
    typedef struct DDS_DataReader T##DataReader;       \
    ORVANE_TYPE_SUPPORT_OPERATIONS(ORVANE_DECLARE, T)  \
    ORVANE_WRITER_OPERATIONS(ORVANE_DECLARE, T)        \
    ORVANE_READER_FORMS(ORVANE_DECLARE_READER_FORM, T) \
    ORVANE_READER_OPERATIONS(ORVANE_DECLARE, T)

ORVANE_TYPES(ORVANE_DECLARE_TYPE)
ORVANE_STRUCTURES(ORVANE_DECLARE_STRUCTURE)
ORVANE_KEYED_TYPES(ORVANE_DECLARE_PLUGIN_KEY)
ORVANE_KEYED_TOPIC_TYPES(ORVANE_DECLARE_KEY_DATA)
ORVANE_TOPIC_TYPES(ORVANE_DECLARE_TOPIC_TYPE)

#undef ORVANE_DECLARE
#undef ORVANE_DECLARE_READER_FORM
#undef ORVANE_DECLARE_TYPE
#undef ORVANE_DECLARE_STRUCTURE
#undef ORVANE_DECLARE_PLUGIN_KEY
#undef ORVANE_DECLARE_KEY_DATA
#undef ORVANE_DECLARE_TOPIC_TYPE
/** @endcond */

/** @return the discriminator of a command that nobody set: QEL_KX_SET_LOG_LEVEL. */
ORVANE_API QEL_KX_ADMIN_CommandKind QEL_KX_ADMIN_Command_getDefaultDiscriminator(void);

PEXA_END_C

#endif
