#include "core/level_names.hpp"

#include <cstring>

namespace orvane::core {
namespace {

DDS_ReturnCode_t copy_printed_level_name(DDS_Long level, char* buffer) noexcept {
    if (buffer == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    std::memcpy(buffer, printed_level_name(level), QEL_KX_LEVEL_NAME_SIZE);
    return DDS_RETCODE_OK;
}

}  // namespace

const char* printed_level_name(DDS_Long level) noexcept {
    for (const LevelName& row : level_names) {
        if (row.level == level) {
            return row.printed;
        }
    }
    return level_names.front().printed;
}

}  // namespace orvane::core

DDS_ReturnCode_t QEL_KX_translateFromKXLogLevelToString(DDS_Long level, char* buffer) {
    return orvane::core::copy_printed_level_name(level, buffer);
}
