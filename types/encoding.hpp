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

/** Which members an operation is about. */
enum class Selection : std::uint8_t { All, Key };

[[nodiscard]] constexpr bool selects(Selection selection, const Member& member) {
    return selection == Selection::All || member.is_key;
}

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

[[nodiscard]] bool skip(const TypeTable& table, QELCdrStream& stream);

}  // namespace orvane::types
