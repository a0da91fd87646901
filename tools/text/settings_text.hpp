/// @file settings_text.hpp
/// @brief The settings of a logger, and their changes, for people.
#pragma once

#include <string>

#include "tools/records/command.hpp"

namespace orvane::tools {

/// The settings that the command changes, with their present values: "filter level INFO".
std::string settings_text(const Command& command, const LoggerState& now);

/// The differences between two States of a logger: "filter level INFO -> DEBUG, API ERROR ->
/// SILENT"; empty when there are none.
std::string difference_text(const LoggerState& before, const LoggerState& now);

/// The same for the settings that the command changes; a setting without a difference has one
/// value.
std::string effect_text(const Command& command, const LoggerState& before, const LoggerState& now);

}  // namespace orvane::tools
