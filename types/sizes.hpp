/**
 * @file sizes.hpp
 * @brief Sizes of encodings, over tables.
 */
#pragma once

#include <cstdint>

#include "types/size_counter.hpp"
#include "types/table.hpp"

namespace orvane::types {

/** Where an encoding would start, and what is in front of it. */
struct SizeOrigin {
    bool with_encapsulation;
    DDS_UnsignedShort encapsulation_id;
    /** Bytes already behind the alignment origin. */
    DDS_UnsignedLong current_alignment;
};

/**
 * The size of the smallest or largest value.
 *
 * Both count an extended header for each member that is not four bytes long. The maximum also
 * counts extended headers for four-byte members and for the end of the list, so that no encoding
 * is larger, whatever the form of its headers. Headers inside unions are always short.
 * @param overflow may be NULL; set when the end lies beyond @ref TULV_MAX_SERIALIZED_SIZE, which is
 *   then the result.
 */
DDS_UnsignedLong extreme_size(const TypeTable& table, Extreme extreme, Selection selection,
                              const SizeOrigin& origin, DDS_Boolean* overflow = nullptr);

/** The size of what encode() writes for the record. */
DDS_UnsignedLong exact_size(const TypeTable& table, const void* record, bool extended,
                            const SizeOrigin& origin);

}  // namespace orvane::types
