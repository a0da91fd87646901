/// @file json_event.hpp
/// @brief Events from JSON, as json_line.hpp writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// Reads the object of a line or of @ref foxglove_json. Members that it does not know do not
/// matter. A message, a loss or a change of a logger needs its logger's ids; what else is missing
/// of the logger is not known. A change without "before" has no differences.
/// @param problem what is wrong and what was expected, when the result is nothing
std::optional<RecordedEvent> parse_json_event(std::string_view text, std::string& problem);

}  // namespace orvane::tools
