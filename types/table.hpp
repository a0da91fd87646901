/**
 * @file table.hpp
 * @brief The table that describes a data type, and how one is made of a record's member pointers.
 *
 * Kinds, offsets, nested types and type codes follow from the members' C types. A table whose rows
 * are not exactly the record's members in their order does not compile.
 */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "orvane/types.h"

namespace orvane::types {

/** What a member holds. */
enum class Kind : std::uint8_t { Long, Enumeration, String, Structure, Array, Sequence };

/** What a type is. */
enum class Category : std::uint8_t { Enumeration, Structure, Union };

/** Whether a member belongs to the key. */
enum class Role : std::uint8_t { Value, Key };

struct TypeTable;

/** One member: a row of the table. */
struct Member {
    const char* name;
    DDS_UnsignedLong id;
    Kind kind;
    bool is_key;
    std::uint32_t offset;
    /** String: most characters. Array: number of elements. Sequence: most elements. */
    std::uint32_t bound;
    /** Numbers of four bytes that a value consists of, one behind the other, in the record as in
     *  the encoding; 0: it is encoded otherwise. */
    std::uint32_t words;
    /** Enumeration, structure: its table. Array, sequence: the element's table. */
    const TypeTable* type;
    /** Sequence: what the sequence operations know of the element. */
    const PEXASequenceElement* element;
    const DDS_TypeCode* code;

    /** @return whether the member is encoded as four bytes. */
    [[nodiscard]] constexpr bool is_word() const {
        return kind == Kind::Long || kind == Kind::Enumeration;
    }
};

/** Which members an operation is about. */
enum class Selection : std::uint8_t { All, Key };

[[nodiscard]] constexpr bool selects(Selection selection, const Member& member) {
    return selection == Selection::All || member.is_key;
}

/** The largest number of members or enumerators of a type. */
inline constexpr std::size_t table_capacity = 7;

/** Operations on the members of one mutable type. */
struct CompiledMembers {
    /** Writes the members for which there is a bit in `rows`, and the end of the list. */
    bool (*encode)(const void* record, QELCdrStream& stream, bool extended, std::uint32_t rows);
    bool (*decode)(void* record, QELCdrStream& stream, Selection selection);
    void (*reset)(void* record);
    /** @return where the encoding ends that begins at the position. */
    std::uint64_t (*end)(const void* record, bool extended, std::uint64_t position);
};

/** Everything that is known of a data type. */
struct TypeTable {
    const char* name;
    Category category;
    DDS_ExtensibilityKind extensibility;
    bool is_keyed;
    /** A bit for each row that belongs to the key. */
    std::uint32_t key_rows;
    /** Bytes of the largest key; 0 without one. */
    std::uint32_t longest_key;
    std::uint32_t record_size;
    /** Members or enumerators. */
    std::uint32_t row_count;
    /** Members in the order of their ids. Of a union: the discriminator, then the branch of each
     *  of its values. */
    std::array<Member, table_capacity> rows;
    /** Names of the enumerators, whose numbers are their positions. */
    std::array<const char*, table_capacity> enumerators;
    const DDS_TypeCode* code;
    /** NULL of a type that is not mutable. */
    const CompiledMembers* compiled;

    [[nodiscard]] constexpr std::span<const Member> members() const {
        return {rows.data(), category == Category::Enumeration ? 0 : row_count};
    }
    [[nodiscard]] constexpr bool is_mutable() const {
        return extensibility == DDS_MUTABLE_EXTENSIBILITY;
    }
    /** @return whether the number is one of the enumerators. */
    [[nodiscard]] constexpr bool has_enumerator(DDS_Long value) const {
        return value >= 0 && static_cast<std::uint32_t>(value) < row_count;
    }
    /** @return a union's branch for a discriminator, or NULL when it selects none. */
    [[nodiscard]] constexpr const Member* branch(DDS_Long discriminator) const {
        const bool selects =
            discriminator >= 0 && static_cast<std::uint32_t>(discriminator) < row_count - 1;
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
        static const TypeTable table;                      \
        static const DDS_TypeCode code;                    \
        static const PEXASequenceElement sequence_element; \
    };
ORVANE_TYPES(ORVANE_DESCRIBE)
#undef ORVANE_DESCRIBE

}  // namespace orvane::types
