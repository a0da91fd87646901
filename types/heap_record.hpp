/**
 * @file heap_record.hpp
 * @brief Records on the heap, over tables.
 */
#pragma once

#include "types/table.hpp"

namespace orvane::types {

/** @return a new, initialised record, or NULL without memory. */
[[nodiscard]] void* create_record(const TypeTable& table, const DDS_TypeAllocationParams_t& params);

/** Finalises and frees a record; NULL is ignored. */
void destroy_record(const TypeTable& table, void* record);

}  // namespace orvane::types
