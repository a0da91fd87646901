#include "core/printer.hpp"

#include <string_view>

#include "core/level_names.hpp"
#include "pexa/osapi.h"

namespace orvane::core {
namespace {

constexpr const char* own_name = "QEL_KX_Orvane_printMessage";

// One call per line, so that lines stay whole.
DDS_ReturnCode_t print_line(std::string_view message, const char* context, DDS_Long level) {
    if (message.empty()) {
        QELOsapi_printLine("KX Error: %s: Message to print is empty.\n", own_name);
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const char* end = message.back() == '\n' ? "" : "\n";
    QELOsapi_printLine("%s: %s: %s%s", printed_level_name(level), context, message.data(), end);
    return DDS_RETCODE_OK;
}

}  // namespace

DDS_ReturnCode_t print_message(const char* message, const char* context, DDS_Long level) {
    if (message == nullptr || context == nullptr) {
        QELOsapi_printLine("KX Error: %s: String passed as parameter is NULL.\n", own_name);
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    return print_line(message, context, level);
}

}  // namespace orvane::core

DDS_ReturnCode_t QEL_KX_Orvane_printMessage(const char* message, const char* context,
                                            DDS_Long level) {
    return orvane::core::print_message(message, context, level);
}

DDS_UnsignedLong QEL_KX_Orvane_takeReports(char* buffer, DDS_UnsignedLong size) {
    return QELOsapi_takeLines(buffer, size);
}
