/**
 * @file values.hpp
 * @brief Initial values, finalisation and copies of records, over tables. Records are never NULL.
 */
#pragma once

#include "types/table.hpp"

namespace orvane::types {

/** @return false without memory; the record can be finalised. */
[[nodiscard]] bool initialise(const TypeTable& table, void* record,
                              const DDS_TypeAllocationParams_t& params);

/** Empties the record in place, without allocation. */
void reset(const TypeTable& table, void* record);

/** Empties a value that has no fixed size. */
void reset_open_value(void* value, const Member& member);

void finalise(const TypeTable& table, void* record);

/** @return false when a member does not fit; those before it have been copied. */
[[nodiscard]] bool copy(const TypeTable& table, void* destination, const void* source);

/** Copies the key members only. */
[[nodiscard]] bool copy_key(const TypeTable& table, void* destination, const void* source);

}  // namespace orvane::types
