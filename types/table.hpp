/**
 * @file table.hpp
 * @brief The table that describes a published data type.
 *
 * Kinds, offsets, nested types and type codes follow from the members' C types. A table does not
 * compile unless its rows are exactly the record's members in their order.
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "orvane/types.h"
#include "platform/internal/success.hpp"

namespace orvane::types {

using pexa::Success;

/** What a member holds. */
enum class MemberKind : std::uint8_t { Long, Enumeration, String, Structure, Array, Sequence };

/** What a type is. */
enum class TypeKind : std::uint8_t { Enumeration, Structure, Union };

/** Whether a member belongs to the key. */
enum class Role : std::uint8_t { Value, Key };

struct TypeTable;

/** One member: a row of the table. */
struct MemberDescriptor {
    const char* name;
    DDS_UnsignedLong id;
    MemberKind kind;
    bool is_key;
    std::uint32_t offset;
    /** String: most characters. Array: number of elements. Sequence: most elements. */
    std::uint32_t bound;
    /** The number of CDR longs that the value consists of, if the record holds the same longs as
     * the encoding. 0: it does not. */
    std::uint32_t longs;
    /** Enumeration, structure: its table. Array, sequence: the element's table. */
    const TypeTable* type;
    /** Sequence: what the sequence operations know of the element. */
    const PEXASequenceElement* element;
    const DDS_TypeCode* code;

    /** @return whether the member is encoded as four bytes. */
    constexpr bool is_one_long() const {
        return kind == MemberKind::Long || kind == MemberKind::Enumeration;
    }
};

/** Which members an operation is about. */
enum class Selection : std::uint8_t { All, Key };

constexpr bool selects(Selection selection, const MemberDescriptor& member) {
    return selection == Selection::All || member.is_key;
}

/** Operations on the members of one mutable type. */
struct CompiledMembers {
    /** Writes the selected members and the end of the list. Of a union it writes the discriminator
     *  and the branch that it selects. */
    Success (*encode)(const void* record, QELCdrStream& stream, bool extended, Selection selection);
    /** Resets the record first. */
    Success (*decode)(void* record, QELCdrStream& stream, Selection selection);
    void (*reset)(void* record);
    /** @return where the encoding ends that begins at the position. */
    std::uint64_t (*end)(const void* record, bool extended, std::uint64_t position);
};

/** Everything that is known of a data type. */
struct TypeTable {
    const char* name;
    TypeKind kind;
    DDS_ExtensibilityKind extensibility;
    bool is_keyed;
    /** A bit for each row that belongs to the key. */
    std::uint32_t key_rows;
    /** Bytes of the largest key; 0 without one. */
    std::uint32_t longest_key;
    std::uint32_t record_size;
    /** Members in the order of their ids. Of a union: the discriminator, then the branch of each
     *  of its values. */
    std::span<const MemberDescriptor> rows;
    /** Names of the enumerators, whose numbers are their positions. */
    std::span<const char* const> enumerators;
    const DDS_TypeCode* code;
    /** NULL of a type that is not mutable. */
    const CompiledMembers* compiled;

    constexpr bool is_mutable() const { return extensibility == DDS_MUTABLE_EXTENSIBILITY; }
    /** @return whether the number is one of the enumerators. */
    constexpr bool has_enumerator(DDS_Long value) const {
        return value >= 0 && static_cast<std::uint32_t>(value) < enumerators.size();
    }
    /** @return a union's branch for a discriminator, or NULL when it selects none. */
    constexpr const MemberDescriptor* branch(DDS_Long discriminator) const {
        const bool selects =
            discriminator >= 0 && static_cast<std::uint32_t>(discriminator) < rows.size() - 1;
        return selects ? &rows[static_cast<std::size_t>(discriminator) + 1] : nullptr;
    }
};

/** What the library knows of the C type `Record`; there is one specialisation per published type.
 */
template <typename Record>
struct Description;

#define ORVANE_DESCRIBE(T)                                 \
    template <>                                            \
    struct Description<T> {                                \
        using Sequence = T##Seq;                           \
        static const TypeTable table;                      \
        static const DDS_TypeCode code;                    \
        static const PEXASequenceElement sequence_element; \
    };
ORVANE_TYPES(ORVANE_DESCRIBE)
#undef ORVANE_DESCRIBE

}  // namespace orvane::types
