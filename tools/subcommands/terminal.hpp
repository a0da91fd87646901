/// @file terminal.hpp
/// @brief The terminal that the standard output may be.
#pragma once

#include <cstddef>

namespace orvane::tools {

bool is_terminal();

/// @return cells of a line, 0 when the standard output is no terminal or does not tell
std::size_t terminal_width();

}  // namespace orvane::tools
