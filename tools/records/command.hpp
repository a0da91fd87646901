/// @file command.hpp
/// @brief What a logger can be told to do.
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
    std::vector<std::pair<Category, Verbosity>> pairs;  ///< each category at most once
};
struct SetPrintFormat {
    PrintFormat format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT;
};
using Command = std::variant<SetFilterLevel, SetVerbosities, SetPrintFormat>;

/// @return whether the logger's settings are those of the command
bool is_in_force(const Command& command, const LoggerState& state);

/// What the command is about, as it is now: "filter level INFO".
std::string settings_text(const Command& command, const LoggerState& now);

/// What differs between two States of a logger: "filter level INFO -> DEBUG, API ERROR -> SILENT";
/// empty when nothing does.
std::string difference_text(const LoggerState& before, const LoggerState& now);

/// The same of what the command is about; a setting that is as before stands alone.
std::string effect_text(const Command& command, const LoggerState& before, const LoggerState& now);

}  // namespace orvane::tools
