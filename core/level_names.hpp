/// @file level_names.hpp
/// @brief The names of the levels, as they are printed and as configurations spell them.
#pragma once

#include <array>

#include "orvane/admin.h"
#include "orvane/core.h"

namespace orvane::core {

struct LevelName {
    DDS_Long level;
    const char* configured;
    char printed[QEL_KX_LEVEL_NAME_SIZE];
};

inline constexpr std::array<LevelName, 9> level_names{
    {{QEL_KX_LEVEL_SILENT, "SILENT", "KX Silent"},
     {QEL_KX_LEVEL_FATAL, "FATAL", "KX Fatal"},
     {QEL_KX_LEVEL_SEVERE, "SEVERE", "KX Severe"},
     {QEL_KX_LEVEL_ERROR, "ERROR", "KX Error"},
     {QEL_KX_LEVEL_WARNING, "WARNING", "KX Warning"},
     {QEL_KX_LEVEL_NOTICE, "NOTICE", "KX Notice"},
     {QEL_KX_LEVEL_INFO, "INFO", "KX Info"},
     {QEL_KX_LEVEL_DEBUG, "DEBUG", "KX Debug"},
     {QEL_KX_LEVEL_TRACE, "TRACE", "KX Trace"}}};

/// @return QEL_KX_LEVEL_NAME_SIZE bytes; a number that is no level has the name of SILENT.
const char* printed_level_name(DDS_Long level) noexcept;

}  // namespace orvane::core
