/// @file command.hpp
/// @brief The commands to a logger.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tools/records/logger_state.hpp"

namespace orvane::tools {

struct SetFilterLevel {
    std::int32_t level = 0;
};
struct SetVerbosities {
    std::vector<std::pair<MiddlewareCategory, Verbosity>> pairs;  ///< each category at most once
};
struct SetPrintFormat {
    PrintFormat format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT;
};
using Command = std::variant<SetFilterLevel, SetVerbosities, SetPrintFormat>;

/// @return whether the logger's settings are those of the command
bool is_in_force(const Command& command, const LoggerState& state);

}  // namespace orvane::tools
