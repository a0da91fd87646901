/// @file display_text.hpp
/// @brief Text of other programs, escaped for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace orvane::tools {

/// Appends @p text to @p line so that it can neither move the cursor nor end the line.
///
/// Well-formed UTF-8 (RFC 3629) passes, except control characters, line and paragraph separators
/// and the marks that reorder bidirectional text. These and every byte that is not UTF-8 appear as
/// \n, \r, \t or \xNN for each of their bytes. One newline at the end is dropped.
void append_displayable(std::string& line, std::string_view text);

/// The same as a text of its own.
std::string displayable(std::string_view text);

}  // namespace orvane::tools
