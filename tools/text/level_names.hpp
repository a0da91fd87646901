/// @file level_names.hpp
/// @brief The names of log levels. A user may write them in any case, or as numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::tools {

/// The level of a message, from its name or decimal digits. @return nothing for any other text
std::optional<std::int32_t> parse_level(std::string_view text);

/// The name, or the digits of a number that has none.
std::string level_text(std::int32_t level);

/// All names, for messages to the user: "FATAL, SEVERE, …".
std::string level_names();

/// The level of a filter, which may be SILENT and lets nothing through then.
/// @return nothing for other texts and for negative numbers
std::optional<std::int32_t> parse_filter_level(std::string_view text);
std::string filter_level_text(std::int32_t level);
std::string filter_level_names();

}  // namespace orvane::tools
