/**
 * @file encoding.hpp
 * @brief The encoding of samples without the encapsulation header, over tables.
 *
 * Failing operations leave the stream where they failed. Pointers are never NULL.
 */
#pragma once

#include <cstdint>

#include "types/table.hpp"

namespace orvane::types {

/**
 * @param extended true: members that are not four bytes long get extended headers. Headers inside
 *   unions are always short.
 */
Success encode(const TypeTable& table, const void* record, QELCdrStream& stream, bool extended,
               Selection selection);

/** Members that are missing or not selected get their initial value. */
Success decode(const TypeTable& table, void* record, QELCdrStream& stream, Selection selection);

/** Encodes a member of variable size with its header. The header gets the length at the end. */
Success encode_variable_member(const void* value, const MemberDescriptor& member,
                               QELCdrStream& stream, bool extended);

/** Decodes a value of variable size. */
Success decode_variable_value(void* value, const MemberDescriptor& member, QELCdrStream& stream);

Success skip(const TypeTable& table, QELCdrStream& stream);

}  // namespace orvane::types
