/**
 * @file print.hpp
 * @brief Prints samples on standard output, over tables.
 */
#pragma once

#include "types/table.hpp"

namespace orvane::types {

/** @param sample, description may be NULL. */
void print(const TypeTable& table, const void* sample, const char* description,
           DDS_UnsignedLong indent);

}  // namespace orvane::types
