/**
 * @file table_builder.hpp
 * @brief Makes tables at compile time. Only the file with the tables needs it.
 */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "types/compiled_members.hpp"
#include "types/size_walk.hpp"
#include "types/table.hpp"
#include "types/typecode.hpp"

namespace orvane::types {

template <typename Pointer>
struct PointedMember;
template <typename R, typename V>
struct PointedMember<V R::*> {
    using Record = R;
    using Value = V;
};
template <auto Pointer>
using ValueOf = typename PointedMember<decltype(Pointer)>::Value;

template <typename Value>
concept SequenceRecord = requires(Value value) {
    value.discontiguousBuffer;
};

/** Collections are encoded without headers, element after element. */
template <typename Element>
consteval bool can_be_collected() {
    return Description<Element>::table.category == Category::Structure &&
           !Description<Element>::table.is_mutable();
}

/** A row under construction: it still knows which member it stands for. */
template <auto Pointer>
struct Row {
    static constexpr auto pointer = Pointer;
    Member member;
};

template <typename Value>
consteval Kind kind_of() {
    if constexpr (std::is_same_v<Value, DDS_Long>) {
        return Kind::Long;
    } else if constexpr (std::is_enum_v<Value>) {
        return Kind::Enumeration;
    } else if constexpr (std::is_same_v<Value, char*>) {
        return Kind::String;
    } else if constexpr (std::is_array_v<Value>) {
        return Kind::Array;
    } else if constexpr (SequenceRecord<Value>) {
        return Kind::Sequence;
    } else {
        return Kind::Structure;
    }
}

/** @return the numbers of four bytes that all values consist of, or 0. */
template <typename Value>
consteval std::uint32_t words_of() {
    constexpr Kind kind = kind_of<Value>();
    bool consists_of_words = kind != Kind::String && kind != Kind::Sequence;
    if constexpr (kind == Kind::Structure) {
        consists_of_words = !Description<Value>::table.is_mutable();
    }
    constexpr std::size_t size = sizeof(Value);
    return consists_of_words ? size / sizeof(DDS_Long) : 0;
}

/** A member whose C type says everything: number, enumeration, structure or array. */
template <auto Pointer>
consteval Row<Pointer> member(DDS_UnsignedLong id, const char* name, Role role = Role::Value) {
    using Value = ValueOf<Pointer>;
    Member row{.name = name,
               .id = id,
               .kind = kind_of<Value>(),
               .is_key = role == Role::Key,
               .offset = 0,
               .bound = 0,
               .words = words_of<Value>(),
               .type = nullptr,
               .element = nullptr,
               .code = nullptr};
    static_assert(kind_of<Value>() != Kind::String && kind_of<Value>() != Kind::Sequence,
                  "strings and sequences need a bound");
    if constexpr (kind_of<Value>() == Kind::Long) {
        row.code = &DDS_g_tc_long;
    } else if constexpr (kind_of<Value>() == Kind::Array) {
        using Element = std::remove_extent_t<Value>;
        static_assert(can_be_collected<Element>(), "elements are final structures");
        row.bound = std::extent_v<Value>;
        row.type = &Description<Element>::table;
        row.code = &array_code<Element, std::extent_v<Value>>;
    } else {
        row.type = &Description<Value>::table;
        row.code = &Description<Value>::code;
    }
    return {row};
}

/** A string of at most `Bound` characters. */
template <auto Pointer, std::uint32_t Bound>
consteval Row<Pointer> string(DDS_UnsignedLong id, const char* name) {
    static_assert(kind_of<ValueOf<Pointer>>() == Kind::String);
    return {{.name = name,
             .id = id,
             .kind = Kind::String,
             .is_key = false,
             .offset = 0,
             .bound = Bound,
             .words = 0,
             .type = nullptr,
             .element = nullptr,
             .code = &string_code<Bound>}};
}

/** A sequence of at most `Bound` elements. */
template <auto Pointer, std::uint32_t Bound>
consteval Row<Pointer> sequence(DDS_UnsignedLong id, const char* name) {
    static_assert(kind_of<ValueOf<Pointer>>() == Kind::Sequence);
    using Element = std::remove_pointer_t<decltype(ValueOf<Pointer>::contiguousBuffer)>;
    static_assert(can_be_collected<Element>(), "elements are final structures");
    return {{.name = name,
             .id = id,
             .kind = Kind::Sequence,
             .is_key = false,
             .offset = 0,
             .bound = Bound,
             .words = 0,
             .type = &Description<Element>::table,
             .element = &Description<Element>::sequence_element,
             .code = &sequence_code<Element, Bound>}};
}

/** The members' addresses as the language counts them; fails to compile for another number. */
template <std::size_t Count, typename Record>
constexpr std::array<const void*, Count> addresses_of_members(const Record& record) {
    if constexpr (Count == 2) {
        const auto& [a, b] = record;
        return {&a, &b};
    } else if constexpr (Count == 3) {
        const auto& [a, b, c] = record;
        return {&a, &b, &c};
    } else if constexpr (Count == 4) {
        const auto& [a, b, c, d] = record;
        return {&a, &b, &c, &d};
    } else if constexpr (Count == 5) {
        const auto& [a, b, c, d, e] = record;
        return {&a, &b, &c, &d, &e};
    } else {
        static_assert(Count == 7, "no type has had this number of members so far");
        const auto& [a, b, c, d, e, f, g] = record;
        return {&a, &b, &c, &d, &e, &f, &g};
    }
}

/** @return whether the pointers are the record's members, all of them, in their order. */
template <typename Record, auto... Pointers>
consteval bool cover() {
    constexpr std::size_t count = sizeof...(Pointers);
    const Record record{};
    const auto actual = addresses_of_members<count>(record);
    const std::array<const void*, count> named{&(record.*Pointers)...};
    for (std::size_t i = 0; i < count; ++i) {
        if (actual[i] != named[i]) {
            return false;
        }
    }
    return true;
}

/** The members' offsets. The records are plain: each member follows its predecessor at the next
 *  multiple of its own alignment. */
template <typename Record, auto... Pointers>
consteval std::array<std::uint32_t, sizeof...(Pointers)> offsets_of_members() {
    static_assert(std::is_standard_layout_v<Record> && std::is_trivial_v<Record>);
    static_assert(cover<Record, Pointers...>(), "the rows are not the record's members in order");
    constexpr std::array<std::size_t, sizeof...(Pointers)> sizes{sizeof(ValueOf<Pointers>)...};
    constexpr std::array<std::size_t, sizeof...(Pointers)> alignments{
        alignof(ValueOf<Pointers>)...};
    std::array<std::uint32_t, sizeof...(Pointers)> offsets{};
    std::size_t end = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        end = (end + alignments[i] - 1) / alignments[i] * alignments[i];
        offsets[i] = static_cast<std::uint32_t>(end);
        end += sizes[i];
    }
    return offsets;
}

/** A rule of the tables that a table under construction breaks; never defined, so that a call at
 *  compile time is an error that names the rule. */
void rule_broken(const char* rule);

consteval void check_row(const TypeTable& table, std::size_t index) {
    const Member& row = table.rows[index];
    if (row.id != index) {
        rule_broken("member ids count from 0");
    }
    if (!table.is_mutable() && !row.is_word()) {
        rule_broken("final types consist of four-byte members");
    }
    if (!table.is_mutable() && row.is_key != table.is_keyed) {
        rule_broken("the key of a final type is all of it");
    }
}

/** A structure. */
template <typename Record, typename... Rows>
consteval TypeTable structure(const char* name, DDS_ExtensibilityKind extensibility, Rows... rows) {
    constexpr auto offsets = offsets_of_members<Record, Rows::pointer...>();
    TypeTable table{.name = name,
                    .category = Category::Structure,
                    .extensibility = extensibility,
                    .is_keyed = false,
                    .key_rows = 0,
                    .longest_key = 0,
                    .record_size = sizeof(Record),
                    .row_count = sizeof...(rows),
                    .rows = {rows.member...},
                    .enumerators = {},
                    .code = &Description<Record>::code,
                    .compiled = extensibility == DDS_MUTABLE_EXTENSIBILITY
                                    ? &compiled_members<Record>
                                    : nullptr};
    for (std::size_t i = 0; i < sizeof...(rows); ++i) {
        table.rows[i].offset = offsets[i];
        table.is_keyed = table.is_keyed || table.rows[i].is_key;
        table.key_rows |= table.rows[i].is_key ? 1U << i : 0U;
    }
    for (std::size_t i = 0; i < sizeof...(rows); ++i) {
        check_row(table, i);
    }
    if (table.is_keyed) {
        table.longest_key = static_cast<std::uint32_t>(longest_key(table));
    }
    return table;
}

/** A mutable union; branch number n holds while the discriminator is n. */
template <typename Record, typename... Rows>
consteval TypeTable discriminated_union(const char* name, Row<&Record::_d> discriminator,
                                        Rows... branches) {
    using Branches = decltype(Record::_u);
    constexpr auto outer = offsets_of_members<Record, &Record::_d, &Record::_u>();
    constexpr auto inner = offsets_of_members<Branches, Rows::pointer...>();
    TypeTable table{.name = name,
                    .category = Category::Union,
                    .extensibility = DDS_MUTABLE_EXTENSIBILITY,
                    .is_keyed = false,
                    .key_rows = 0,
                    .longest_key = 0,
                    .record_size = sizeof(Record),
                    .row_count = 1 + sizeof...(branches),
                    .rows = {discriminator.member, branches.member...},
                    .enumerators = {},
                    .code = &Description<Record>::code,
                    .compiled = &compiled_members<Record>};
    for (std::size_t i = 0; i < sizeof...(branches); ++i) {
        table.rows[i + 1].offset = outer[1] + inner[i];
        check_row(table, i + 1);
    }
    return table;
}

/** An enumerator and its name, which are the same word. */
template <typename Record>
struct NamedEnumerator {
    Record value;
    const char* name;
};

/** An enumeration with its enumerators in the order of their numbers. */
template <typename Record, std::size_t Count>
consteval TypeTable enumeration(const char* name,
                                const NamedEnumerator<Record> (&enumerators)[Count]) {
    static_assert(sizeof(Record) == sizeof(DDS_Long));
    TypeTable table{.name = name,
                    .category = Category::Enumeration,
                    .extensibility = DDS_FINAL_EXTENSIBILITY,
                    .is_keyed = false,
                    .key_rows = 0,
                    .longest_key = 0,
                    .record_size = sizeof(Record),
                    .row_count = Count,
                    .rows = {},
                    .enumerators = {},
                    .code = &Description<Record>::code,
                    .compiled = nullptr};
    for (std::size_t i = 0; i < Count; ++i) {
        if (static_cast<std::size_t>(enumerators[i].value) != i) {
            rule_broken("enumerators count from 0");
        }
        table.enumerators[i] = enumerators[i].name;
    }
    return table;
}

}  // namespace orvane::types
