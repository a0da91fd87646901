/// @file value_remark.hpp
/// @brief Texts that the library takes for another value than they seem to say.
#pragma once

#include <optional>
#include <string>

#include "orvane/core.h"
#include "xml/vocabulary/option_descriptions.hpp"

namespace orvane::tools {

/// @param text what the library has accepted for the option
/// @param options where the library has stored the value
/// @return what became of the text and why, or nothing if the value is what the text says
std::optional<std::string> value_remark(const xml::OptionDescription& option,
                                        const std::string& text, QEL_KX_Options& options);

/// @return the text in quotes, without its end if it is long.
std::string quoted(const std::string& text);

/// The texts that an option takes: "1 to 2147483647".
std::string expected_text(const xml::OptionDescription& option);

}  // namespace orvane::tools
