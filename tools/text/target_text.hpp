/// @file target_text.hpp
/// @brief The loggers that a user means, as the user writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/records/logger_target.hpp"

namespace orvane::tools {

/// Reads "HOST:APP" or "HOST:APP:INSTANCE" in hexadecimal, "KIND", "KIND@HOST", "KIND#NUMBER" or
/// "KIND#NUMBER@HOST". The kind and the name of the host are shell patterns, fnmatch(3).
/// @param error says what was expected, when nothing is returned
std::optional<LoggerTarget> parse_target(std::string_view text, std::string& error);

}  // namespace orvane::tools
