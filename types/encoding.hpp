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
 * @param extended whether headers of members that are not four bytes long have the extended form;
 *   the headers of unions never have.
 */
[[nodiscard]] bool encode(const TypeTable& table, const void* record, QELCdrStream& stream,
                          bool extended, Selection selection);

/** Members that are not selected are passed over; selected ones that are missing keep their value.
 */
[[nodiscard]] bool decode(const TypeTable& table, void* record, QELCdrStream& stream,
                          Selection selection);

/** Encodes a member, with its header, whose length only its encoding tells. */
[[nodiscard]] bool encode_open_member(const void* value, const Member& member, QELCdrStream& stream,
                                      bool extended);

/** Decodes a value that has no fixed size. */
[[nodiscard]] bool decode_open_value(void* value, const Member& member, QELCdrStream& stream);

[[nodiscard]] bool skip(const TypeTable& table, QELCdrStream& stream);

}  // namespace orvane::types
