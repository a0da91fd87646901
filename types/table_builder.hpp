/**
 * @file table_builder.hpp
 * @brief Makes tables at compile time. Only the file with the tables needs it.
 */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "platform/internal/enumerators.hpp"
#include "platform/internal/record_members.hpp"
#include "types/compiled_members.hpp"
#include "types/size_counter.hpp"
#include "types/table.hpp"
#include "types/typecode.hpp"

namespace orvane::types {

template <typename Value>
concept SequenceRecord = requires(Value value) {
    value.discontiguousBuffer;
};

/** Elements of arrays and sequences have no headers, so only final structures can be elements. */
template <typename Element>
consteval bool can_be_element() {
    return Description<Element>::table.kind == TypeKind::Structure &&
           !Description<Element>::table.is_mutable();
}

/** A row that still knows which member it is for. */
template <auto Pointer>
struct Row {
    static constexpr auto pointer = Pointer;
    MemberDescriptor member;
};

template <typename Value>
consteval MemberKind kind_of() {
    if constexpr (std::is_same_v<Value, DDS_Long>) {
        return MemberKind::Long;
    } else if constexpr (std::is_enum_v<Value>) {
        return MemberKind::Enumeration;
    } else if constexpr (std::is_same_v<Value, char*>) {
        return MemberKind::String;
    } else if constexpr (std::is_array_v<Value>) {
        return MemberKind::Array;
    } else if constexpr (SequenceRecord<Value>) {
        return MemberKind::Sequence;
    } else {
        return MemberKind::Structure;
    }
}

/** @return the numbers of four bytes that all values consist of, or 0. */
template <typename Value>
consteval std::uint32_t longs_of() {
    constexpr MemberKind kind = kind_of<Value>();
    bool consists_of_longs = kind != MemberKind::String && kind != MemberKind::Sequence;
    if constexpr (kind == MemberKind::Structure) {
        consists_of_longs = !Description<Value>::table.is_mutable();
    }
    constexpr std::size_t size = sizeof(Value);
    return consists_of_longs ? size / sizeof(DDS_Long) : 0;
}

/** The row of a number, enumeration, structure or array: the C type says everything. */
template <auto Pointer>
consteval Row<Pointer> member(DDS_UnsignedLong id, const char* name, Role role = Role::Value) {
    using Value = pexa::ValueOfMember<Pointer>;
    MemberDescriptor row{.name = name,
                         .id = id,
                         .kind = kind_of<Value>(),
                         .is_key = role == Role::Key,
                         .offset = pexa::offset_of_member<Pointer>,
                         .bound = 0,
                         .longs = longs_of<Value>(),
                         .type = nullptr,
                         .element = nullptr,
                         .code = nullptr};
    static_assert(
        kind_of<Value>() != MemberKind::String && kind_of<Value>() != MemberKind::Sequence,
        "strings and sequences need a bound");
    if constexpr (kind_of<Value>() == MemberKind::Long) {
        row.code = &DDS_g_tc_long;
    } else if constexpr (kind_of<Value>() == MemberKind::Array) {
        using Element = std::remove_extent_t<Value>;
        static_assert(can_be_element<Element>(), "elements are final structures");
        row.bound = std::extent_v<Value>;
        row.type = &Description<Element>::table;
        row.code = &array_code<Element, std::extent_v<Value>>;
    } else {
        row.type = &Description<Value>::table;
        row.code = &Description<Value>::code;
    }
    return {row};
}

/** The row of a string of at most `Bound` characters. */
template <auto Pointer, std::uint32_t Bound>
consteval Row<Pointer> string(DDS_UnsignedLong id, const char* name) {
    static_assert(kind_of<pexa::ValueOfMember<Pointer>>() == MemberKind::String);
    return {{.name = name,
             .id = id,
             .kind = MemberKind::String,
             .is_key = false,
             .offset = pexa::offset_of_member<Pointer>,
             .bound = Bound,
             .longs = 0,
             .type = nullptr,
             .element = nullptr,
             .code = &string_code<Bound>}};
}

/** The row of a sequence of at most `Bound` elements. */
template <auto Pointer, std::uint32_t Bound>
consteval Row<Pointer> sequence(DDS_UnsignedLong id, const char* name) {
    static_assert(kind_of<pexa::ValueOfMember<Pointer>>() == MemberKind::Sequence);
    using Element = std::remove_pointer_t<decltype(pexa::ValueOfMember<Pointer>::contiguousBuffer)>;
    static_assert(can_be_element<Element>(), "elements are final structures");
    return {{.name = name,
             .id = id,
             .kind = MemberKind::Sequence,
             .is_key = false,
             .offset = pexa::offset_of_member<Pointer>,
             .bound = Bound,
             .longs = 0,
             .type = &Description<Element>::table,
             .element = &Description<Element>::sequence_element,
             .code = &sequence_code<Element, Bound>}};
}

/** Never defined: a call while a table is made is a compile error, which shows the rule. */
void rule_broken(const char* rule);

consteval void check_row(const TypeTable& table, std::size_t index) {
    const MemberDescriptor& row = table.rows[index];
    if (row.id != index) {
        rule_broken("member ids count from 0");
    }
    if (!table.is_mutable() && !row.is_one_long()) {
        rule_broken("final types consist of four-byte members");
    }
    if (!table.is_mutable() && row.is_key != table.is_keyed) {
        rule_broken("the key of a final type is all of it");
    }
}

/** All rows of a record's table. */
template <typename Record, std::size_t Count>
struct RowsOf {
    std::array<MemberDescriptor, Count> members;
};

/** The rows of a structure: of all its members, in their order. */
template <typename Record, typename... Rows>
consteval RowsOf<Record, sizeof...(Rows)> rows(Rows... rows) {
    static_assert(pexa::covers_record<Record, Rows::pointer...>);
    return {{rows.member...}};
}

/** The rows of a union: of its discriminator, and of the branch for each enumerator of that. */
template <typename Record, typename... Rows>
consteval RowsOf<Record, 1 + sizeof...(Rows)> union_rows(Row<&Record::_d> discriminator,
                                                         Rows... branches) {
    static_assert(pexa::covers_record<Record, &Record::_d, &Record::_u>);
    static_assert(pexa::covers_record<decltype(Record::_u), Rows::pointer...>);
    static_assert(sizeof...(branches) == pexa::enumerator_count<decltype(Record::_d)>,
                  "each enumerator of the discriminator selects a branch");
    (static_cast<void>(branches.member.offset += pexa::offset_of_member<&Record::_u>), ...);
    return {{discriminator.member, branches.member...}};
}

/** A table without rows. */
template <typename Record>
constexpr TypeTable empty_table(const char* name, TypeKind kind,
                                DDS_ExtensibilityKind extensibility) {
    return {.name = name,
            .kind = kind,
            .extensibility = extensibility,
            .is_keyed = false,
            .key_rows = 0,
            .longest_key = 0,
            .record_size = sizeof(Record),
            .rows = {},
            .enumerators = {},
            .code = &Description<Record>::code,
            .compiled = nullptr};
}

/** A structure. @param rows with static lifetime. */
template <typename Record, std::size_t Count>
consteval TypeTable structure(const char* name, DDS_ExtensibilityKind extensibility,
                              const RowsOf<Record, Count>& rows) {
    TypeTable table = empty_table<Record>(name, TypeKind::Structure, extensibility);
    table.rows = rows.members;
    for (std::size_t i = 0; i < Count; ++i) {
        table.is_keyed = table.is_keyed || table.rows[i].is_key;
        table.key_rows |= table.rows[i].is_key ? 1U << i : 0U;
    }
    for (std::size_t i = 0; i < Count; ++i) {
        check_row(table, i);
    }
    if (table.is_keyed) {
        table.longest_key = static_cast<std::uint32_t>(longest_key(table));
    }
    if (table.is_mutable()) {
        table.compiled = &compiled_members<Record>;
    }
    return table;
}

/** A mutable union; branch number n holds while the discriminator is n.
 *  @param rows with static lifetime. */
template <typename Record, std::size_t Count>
consteval TypeTable discriminated_union(const char* name, const RowsOf<Record, Count>& rows) {
    TypeTable table = empty_table<Record>(name, TypeKind::Union, DDS_MUTABLE_EXTENSIBILITY);
    table.rows = rows.members;
    for (std::size_t i = 0; i < Count; ++i) {
        check_row(table, i);
    }
    table.compiled = &compiled_members<Record>;
    return table;
}

/** An enumeration, whose enumerators count from 0. */
template <typename Record>
consteval TypeTable enumeration(const char* name) {
    static_assert(sizeof(Record) == sizeof(DDS_Long) && pexa::enumerator_count<Record> > 0);
    TypeTable table = empty_table<Record>(name, TypeKind::Enumeration, DDS_FINAL_EXTENSIBILITY);
    table.enumerators = pexa::enumerator_names<Record>;
    return table;
}

}  // namespace orvane::types
