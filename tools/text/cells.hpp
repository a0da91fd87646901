/// @file cells.hpp
/// @brief Texts in the cells of a terminal. They are UTF-8, and their escape sequences are those
/// for colors (ECMA-48 SGR), which take no cell.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::tools {

/// Cells that a text takes: two for a character of East Asian width, none for a combining mark.
std::size_t width_of(std::string_view text);

/// The text with spaces behind it up to @p width cells.
std::string padded(std::string text, std::size_t width);

/// The text, or as much of its beginning as fits into @p width cells with "…" behind it.
/// @param width 1 or more
std::string shortened(std::string_view text, std::size_t width);

/// Breaks a line, between words where possible, so that nothing is wider than @p width.
/// @param indent spaces before each further line; nothing is broken within so many cells of the
/// first one. A line that leaves too little room beside them is indented by a few
/// @param width 0 breaks nothing
std::string wrapped(std::string_view line, std::size_t width, std::size_t indent);

}  // namespace orvane::tools
