#include "admin/translations.hpp"

#include "orvane/admin.h"

namespace admin = orvane::admin;

QEL_KX_ADMIN_QELLoggerCategory QEL_KX_translateFromQELLoggerCategoryToKXCategory(
    DDS_Long category) {
    return static_cast<QEL_KX_ADMIN_QELLoggerCategory>(
        admin::categories.to_library(static_cast<DDS_UnsignedLong>(category)));
}

PEXA_Config_LogCategory QEL_KX_translateFromKXCategoryToQELLoggerCategory(DDS_Long category) {
    return static_cast<PEXA_Config_LogCategory>(admin::categories.to_middleware(category));
}

QEL_KX_ADMIN_QELLoggerVerbosity QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(
    PEXA_Config_LogVerbosity verbosity) {
    return static_cast<QEL_KX_ADMIN_QELLoggerVerbosity>(admin::verbosities.to_library(verbosity));
}

PEXA_Config_LogVerbosity QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(DDS_Long verbosity) {
    return admin::verbosities.to_middleware(verbosity);
}

QEL_KX_ADMIN_QELLoggerPrintFormat QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(
    PEXA_Config_LogPrintFormat format) {
    return static_cast<QEL_KX_ADMIN_QELLoggerPrintFormat>(admin::print_formats.to_library(format));
}

PEXA_Config_LogPrintFormat QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(
    DDS_Long format) {
    return admin::print_formats.to_middleware(format);
}

DDS_Long QEL_KX_translateFromQELLoggerLogLevelToKXLevel(DDS_Long level) {
    return admin::levels.to_library(static_cast<DDS_UnsignedLong>(level));
}
