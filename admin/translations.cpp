#include "admin/translations.hpp"

#include "orvane/admin.h"

namespace orvane::admin {
namespace {

struct LevelName {
    DDS_Long level;
    char name[QEL_KX_LEVEL_NAME_SIZE];
};

constexpr std::array<LevelName, 8> level_names{{{QEL_KX_LEVEL_FATAL, "KX Fatal"},
                                                {QEL_KX_LEVEL_SEVERE, "KX Severe"},
                                                {QEL_KX_LEVEL_ERROR, "KX Error"},
                                                {QEL_KX_LEVEL_WARNING, "KX Warning"},
                                                {QEL_KX_LEVEL_NOTICE, "KX Notice"},
                                                {QEL_KX_LEVEL_INFO, "KX Info"},
                                                {QEL_KX_LEVEL_DEBUG, "KX Debug"},
                                                {QEL_KX_LEVEL_TRACE, "KX Trace"}}};
constexpr char other_level_name[QEL_KX_LEVEL_NAME_SIZE] = "KX Silent";

const char* level_name(DDS_Long level) noexcept {
    for (const LevelName& row : level_names) {
        if (row.level == level) {
            return row.name;
        }
    }
    return other_level_name;
}

}  // namespace

DDS_ReturnCode_t copy_level_name(DDS_Long level, char* buffer) noexcept {
    if (buffer == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    std::memcpy(buffer, level_name(level), QEL_KX_LEVEL_NAME_SIZE);
    return DDS_RETCODE_OK;
}

}  // namespace orvane::admin
