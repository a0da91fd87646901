/**
 * @file config_logger.h
 * @brief The middleware's own logger: verbosity by category, print format, output device.
 *
 * It receives the reports of the port's modules and of the engine, sorted into five categories and
 * five levels. A message of level n passes when bit n-1 of its category's verbosity is set. A
 * device gets it; without a device it is printed on standard output in the print format.
 * Thread-safe throughout; no lock is held while a device runs.
 */
#ifndef PEXA_CONFIG_LOGGER_H
#define PEXA_CONFIG_LOGGER_H

#include "pexa/base.h"

PEXA_BEGIN_C

typedef struct PEXA_Config_Logger PEXA_Config_Logger;

typedef enum PEXA_Config_LogCategory {
    PEXA_CONFIG_LOG_CATEGORY_PLATFORM = 0,
    PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION = 1,
    PEXA_CONFIG_LOG_CATEGORY_DATABASE = 2,
    PEXA_CONFIG_LOG_CATEGORY_ENTITIES = 3,
    PEXA_CONFIG_LOG_CATEGORY_API = 4
} PEXA_Config_LogCategory;
#define PEXA_CONFIG_LOG_CATEGORY_COUNT 5

/** A mask of level bits. */
typedef DDS_UnsignedLong PEXA_Config_LogVerbosity;
#define PEXA_CONFIG_LOG_VERBOSITY_SILENT 0x00u
#define PEXA_CONFIG_LOG_VERBOSITY_ERROR 0x01u
#define PEXA_CONFIG_LOG_VERBOSITY_WARNING 0x03u
#define PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL 0x07u
#define PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE 0x0Fu
#define PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL 0x1Fu

typedef enum PEXA_Config_LogLevel {
    PEXA_CONFIG_LOG_LEVEL_ERROR = 1,
    PEXA_CONFIG_LOG_LEVEL_WARNING = 2,
    PEXA_CONFIG_LOG_LEVEL_STATUS_LOCAL = 3,
    PEXA_CONFIG_LOG_LEVEL_STATUS_REMOTE = 4,
    PEXA_CONFIG_LOG_LEVEL_DEBUG = 5
} PEXA_Config_LogLevel;

/** Print formats; any other number prints like DEFAULT. */
typedef DDS_UnsignedLong PEXA_Config_LogPrintFormat;
#define PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT 0x412u
#define PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED 0x512u
#define PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE 0xE16u
#define PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED 0xF16u
#define PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG 0x22Fu
#define PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL 0x11u
#define PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL 0xF3Fu

/** A message on its way to a device; valid during the call only. */
typedef struct PEXA_Config_LogMessage {
    const char* text;
    PEXA_Config_LogLevel level;
} PEXA_Config_LogMessage;

typedef struct PEXA_Config_LoggerDevice {
    void* device_data;
    /** Called for every message that passes, on the thread that reports it. Not called for
     *  messages that arise on that thread during the call itself. */
    void (*write)(const struct PEXA_Config_LoggerDevice* device,
                  const PEXA_Config_LogMessage* message);
    /** May be NULL; called once when the device has been replaced or removed. */
    void (*close)(const struct PEXA_Config_LoggerDevice* device);
} PEXA_Config_LoggerDevice;

/** @return the logger of the process, or NULL when it cannot be made. */
PEXA_API PEXA_Config_Logger* PEXA_Config_Logger_get_instance(void);
/** @return the mask; for a NULL logger or unknown category 0. ERROR at the start. */
PEXA_API PEXA_Config_LogVerbosity PEXA_Config_Logger_get_verbosity_by_category(
    PEXA_Config_Logger* self, PEXA_Config_LogCategory category);
/** @return OK, or BAD_PARAMETER: NULL logger or unknown category. */
PEXA_API DDS_ReturnCode_t PEXA_Config_Logger_set_verbosity_by_category(
    PEXA_Config_Logger* self, PEXA_Config_LogCategory category, PEXA_Config_LogVerbosity verbosity);
/** Sets all categories. */
PEXA_API DDS_ReturnCode_t PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger* self,
                                                           PEXA_Config_LogVerbosity verbosity);
/** @return the format, DEFAULT for a NULL logger. */
PEXA_API PEXA_Config_LogPrintFormat PEXA_Config_Logger_get_print_format(PEXA_Config_Logger* self);
PEXA_API DDS_ReturnCode_t PEXA_Config_Logger_set_print_format(PEXA_Config_Logger* self,
                                                              PEXA_Config_LogPrintFormat format);
/**
 * Installs a device or, with NULL, removes it.
 * @param device borrowed; it must stay valid for ever, because the change does not wait for a call
 *   of the old device that is running on another thread.
 * @return 1, or 0: NULL logger or a device without write operation.
 */
PEXA_API DDS_Boolean PEXA_Config_Logger_set_output_device(PEXA_Config_Logger* self,
                                                          const PEXA_Config_LoggerDevice* device);
/** @return the installed device, or NULL. */
PEXA_API const PEXA_Config_LoggerDevice* PEXA_Config_Logger_get_output_device(
    PEXA_Config_Logger* self);

PEXA_END_C

#endif
