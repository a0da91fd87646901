/// @file print.hpp
/// @brief Printing of values on standard output.
#pragma once

#include "pexa/base.h"

namespace pexa::base {

/// Prints three blanks for each level.
void print_indent(DDS_UnsignedLong level);

}  // namespace pexa::base
