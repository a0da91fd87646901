#include "admin/logger_bridge.hpp"

#include <algorithm>
#include <cstring>

#include "admin/state.hpp"
#include "admin/translations.hpp"
#include "core/exported.hpp"
#include "core/instance.hpp"
#include "core/logging.hpp"
#include "core/report.hpp"
#include "core/write_thread.hpp"
#include "orvane/core.h"
#include "pexa/osapi.h"
#include "platform/internal/number_of.hpp"

namespace orvane::admin {
namespace {

using pexa::Status;

static_assert(ORVANE_QEL_LOGGER_CATEGORY_COUNT == PEXA_CONFIG_LOG_CATEGORY_COUNT);

/// @return the middleware's logger, or NULL after a report in the name of @p context.
PEXA_Config_Logger* middleware_logger(const char* context) {
    PEXA_Config_Logger* const logger = PEXA_Config_Logger_get_instance();
    if (logger == nullptr) {
        core::report(context, "Unable to get QEL Logger");
    }
    return logger;
}

template <typename Action>
void for_each_category(Action action) {
    for (int number = 0; number < PEXA_CONFIG_LOG_CATEGORY_COUNT; ++number) {
        action(static_cast<std::size_t>(number), static_cast<PEXA_Config_LogCategory>(number));
    }
}

/// The logger's getters take no lock that is held during a report, and two refreshes that read
/// outside the State's mutex could store in the other order than they read.
void store_print_format(QEL_KX_Orvane& logger, PEXA_Config_Logger* middleware) {
    with_state(logger, [&](QEL_KX_ADMIN_State& state) {
        state.qelLoggerPrintFormat = static_cast<QEL_KX_ADMIN_QELLoggerPrintFormat>(
            print_formats.to_library(PEXA_Config_Logger_get_print_format(middleware)));
    });
}

}  // namespace

void write_device(const PEXA_Config_LogMessage* message) {
    if (message == nullptr || message->text == nullptr) {
        return;
    }
    if (core::is_running()) {
        core::log_now(
            core::instance(),
            levels.to_library(static_cast<DDS_UnsignedLong>(pexa::number_of(message->level))),
            message->text, QEL_KX_MIDDLEWARE_LOGGER_CATEGORY);
        return;
    }
    const std::size_t length = std::strlen(message->text);
    if (length != 0) {
        QELOsapi_printLine(message->text[length - 1] == '\n' ? "%s" : "%s\n", message->text);
    }
}

void mask_verbosity(PEXA_Config_LogVerbosity* saved) {
    PEXA_Config_Logger* const middleware = middleware_logger("QEL_KX_Orvane_maskSystemVerbosity");
    if (middleware == nullptr) {
        std::fill_n(saved, PEXA_CONFIG_LOG_CATEGORY_COUNT, PEXA_CONFIG_LOG_VERBOSITY_SILENT);
        return;
    }
    for_each_category([&](std::size_t index, PEXA_Config_LogCategory category) {
        saved[index] = PEXA_Config_Logger_get_verbosity_by_category(middleware, category);
    });
    PEXA_Config_Logger_set_verbosity(middleware, PEXA_CONFIG_LOG_VERBOSITY_SILENT);
}

void unmask_verbosity(const PEXA_Config_LogVerbosity* saved) {
    PEXA_Config_Logger* const middleware = middleware_logger("QEL_KX_Orvane_unmaskSystemVerbosity");
    if (middleware == nullptr) {
        return;
    }
    for_each_category([&](std::size_t index, PEXA_Config_LogCategory category) {
        PEXA_Config_Logger_set_verbosity_by_category(middleware, category, saved[index]);
    });
}

void refresh_verbosities(QEL_KX_Orvane& logger) {
    PEXA_Config_Logger* const middleware =
        middleware_logger("QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState");
    if (middleware == nullptr) {
        return;
    }
    with_state(logger, [&](QEL_KX_ADMIN_State& state) {
        for_each_category([&](std::size_t index, PEXA_Config_LogCategory category) {
            const PEXA_Config_LogVerbosity verbosity =
                PEXA_Config_Logger_get_verbosity_by_category(middleware, category);
            state.qelLoggerVerbosities[index] = {
                static_cast<QEL_KX_ADMIN_QELLoggerCategory>(categories.to_library(category)),
                static_cast<QEL_KX_ADMIN_QELLoggerVerbosity>(verbosities.to_library(verbosity))};
        });
    });
}

void refresh_print_format(QEL_KX_Orvane& logger) {
    PEXA_Config_Logger* const middleware =
        middleware_logger("QEL_KX_Orvane_updateQELLoggerPrintFormatState");
    if (middleware != nullptr) {
        store_print_format(logger, middleware);
    }
}

void set_middleware_verbosity(QEL_KX_Orvane& logger, PEXA_Config_LogCategory category,
                              PEXA_Config_LogVerbosity verbosity) {
    // A NULL logger is refused by the operation, and reported by the refresh.
    PEXA_Config_Logger_set_verbosity_by_category(PEXA_Config_Logger_get_instance(), category,
                                                 verbosity);
    // The thread outlives this call: it is stopped after the last command has been executed.
    if (category == PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION &&
        logger.logMessageWriteThread != nullptr) {
        core::set_communications_verbosity(*logger.logMessageWriteThread, verbosity);
    }
    refresh_verbosities(logger);
    // A failure is reported.
    static_cast<void>(publish_state(
        logger,
        {"QEL_KX_Orvane_setQELLoggerVerbosityByCategory", "Unable to write Verbosity State"},
        no_wait));
}

Status set_middleware_print_format(QEL_KX_Orvane& logger, PEXA_Config_LogPrintFormat format,
                                   std::chrono::milliseconds patience) {
    constexpr const char* context = "QEL_KX_Orvane_setQELLoggerPrintFormat";
    PEXA_Config_Logger* const middleware = middleware_logger(context);
    if (middleware == nullptr) {
        return Status::error;
    }
    PEXA_Config_Logger_set_print_format(middleware, format);
    store_print_format(logger, middleware);
    return publish_state(logger, {context, "Unable to write PrintFormat State"}, patience);
}

}  // namespace orvane::admin

namespace admin = orvane::admin;

const PEXA_Config_LoggerDevice QEL_KX_Orvane_localDevice = {nullptr, QEL_KX_Orvane_writeDevice,
                                                            nullptr};

void QEL_KX_Orvane_writeDevice(const PEXA_Config_LoggerDevice*,
                               const PEXA_Config_LogMessage* message) {
    admin::write_device(message);
}

void QEL_KX_Orvane_maskSystemVerbosity(PEXA_Config_LogVerbosity* saved) {
    admin::mask_verbosity(saved);
}

void QEL_KX_Orvane_unmaskSystemVerbosity(const PEXA_Config_LogVerbosity* saved) {
    admin::unmask_verbosity(saved);
}

void QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(QEL_KX_Orvane* logger) {
    admin::refresh_verbosities(*logger);
}

void QEL_KX_Orvane_updateQELLoggerPrintFormatState(QEL_KX_Orvane* logger) {
    admin::refresh_print_format(*logger);
}

void QEL_KX_Orvane_setQELLoggerVerbosityByCategory(QEL_KX_Orvane* logger,
                                                   PEXA_Config_LogCategory category,
                                                   PEXA_Config_LogVerbosity verbosity) {
    admin::set_middleware_verbosity(*logger, category, verbosity);
}

DDS_Boolean QEL_KX_Orvane_setQELLoggerPrintFormat(QEL_KX_Orvane* logger,
                                                  PEXA_Config_LogPrintFormat format) {
    return orvane::core::to_boolean(
        admin::set_middleware_print_format(*logger, format, admin::for_result));
}
