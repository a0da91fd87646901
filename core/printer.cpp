#include <cstdio>
#include <string_view>

#include "orvane/admin.h"
#include "orvane/core.h"

namespace {

constexpr const char* own_name = "QEL_KX_Orvane_printMessage";

// One call of printf per line: standard output is locked for that long, so lines stay whole.
DDS_ReturnCode_t print_line(std::string_view message, const char* context, DDS_Long level) {
    if (message.empty()) {
        std::printf("KX Error: %s: Message to print is empty.\n", own_name);
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const char* end = message.back() == '\n' ? "" : "\n";
    char level_name[QEL_KX_LEVEL_NAME_SIZE];
    const DDS_ReturnCode_t result = QEL_KX_translateFromKXLogLevelToString(level, level_name);
    std::printf("%s: %s: %s%s", result == DDS_RETCODE_OK ? level_name : "KX Warning", context,
                message.data(), end);
    return result;
}

}  // namespace

DDS_ReturnCode_t QEL_KX_Orvane_printMessage(const char* message, const char* context,
                                            DDS_Long level) {
    if (message == nullptr || context == nullptr) {
        std::printf("KX Error: %s: String passed as parameter is NULL.\n", own_name);
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    return print_line(message, context, level);
}
