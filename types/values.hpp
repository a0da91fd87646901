/**
 * @file values.hpp
 * @brief Initial values, finalisation and copies of records, over tables. Records are never NULL.
 */
#pragma once

#include "types/table.hpp"

namespace orvane::types {

/** @return false without memory; the record can be finalised. */
Success initialise(const TypeTable& table, void* record, const DDS_TypeAllocationParams_t& params);

/** Empties the record in place, without allocation. */
void reset(const TypeTable& table, void* record);

/** Empties a value of variable size. */
void reset_variable_value(void* value, const MemberDescriptor& member);

void finalise(const TypeTable& table, void* record);

/** @return false when a member does not fit; those before it have been copied. */
Success copy(const TypeTable& table, void* destination, const void* source);

/** Copies the key members only. */
Success copy_key(const TypeTable& table, void* destination, const void* source);

}  // namespace orvane::types
