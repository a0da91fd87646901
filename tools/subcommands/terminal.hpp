/// @file terminal.hpp
/// @brief The terminal that an output may be.
#pragma once

#include <unistd.h>

#include <cstddef>

namespace orvane::tools {

bool is_terminal(int descriptor = STDOUT_FILENO);

/// @return cells of a line, 0 when the output is no terminal or does not tell
std::size_t terminal_width(int descriptor = STDOUT_FILENO);

}  // namespace orvane::tools
