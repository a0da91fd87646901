/// @file logger_state.hpp
/// @brief The State of a logger.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "orvane/types.h"
#include "tools/records/application.hpp"

namespace orvane::tools {

using MiddlewareCategory = QEL_KX_ADMIN_QELLoggerCategory;
using Verbosity = QEL_KX_ADMIN_QELLoggerVerbosity;
using PrintFormat = QEL_KX_ADMIN_QELLoggerPrintFormat;
using StateKind = QEL_KX_ADMIN_StateKind;

struct LoggerState {
    Application application;
    std::string kind;  ///< the application kind
    StateKind state = QEL_KX_STATE_INITIALIZING;
    std::int32_t filter_level = 0;
    std::int32_t domain_id = 0;  ///< where it can be administered
    /// Of the middleware's logger, by number of the category.
    std::array<Verbosity, ORVANE_QEL_LOGGER_CATEGORY_COUNT> verbosities{};
    PrintFormat print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT;

    friend bool operator==(const LoggerState&, const LoggerState&) = default;
};

}  // namespace orvane::tools
