/// @file sections.hpp
/// @brief The parts of the documentation that are made from the option table.
#pragma once

#include <string>

namespace orvane::xml {

/// The types of the `orvane` element for docs/orvane.xsd.
std::string schema();

/// The options with an element as a table in Markdown.
std::string table_of_elements();

/// The options that only the application sets as a table in Markdown.
std::string table_of_other_options();

}  // namespace orvane::xml
