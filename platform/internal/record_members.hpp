/// @file record_members.hpp
/// @brief The members of a plain record at compile time, and the rule that a table has a row for
/// each of them.
///
/// A table with rows for a C record asks @ref pexa::covers_record. A row that is missing or out of
/// place does not compile, however many members the record has.
#ifndef PEXA_RECORD_MEMBERS_HPP
#define PEXA_RECORD_MEMBERS_HPP

#include <cstddef>
#include <type_traits>
#include <utility>

namespace pexa {

namespace record_members_details {

template <typename Pointer>
struct Parts;
template <typename RecordType, typename ValueType>
struct Parts<ValueType RecordType::*> {
    using Record = RecordType;
    using Value = ValueType;
};
// GCC 14 takes the type of some template parameters for a constant one.
template <typename Pointer>
struct Parts<const Pointer> : Parts<Pointer> {};

}  // namespace record_members_details

/// The record that a pointer to member belongs to.
template <auto Pointer>
using RecordOfMember = typename record_members_details::Parts<decltype(Pointer)>::Record;

/// The type of the member that a pointer to member names.
template <auto Pointer>
using ValueOfMember = typename record_members_details::Parts<decltype(Pointer)>::Value;

namespace record_members_details {

/// A record and its bytes at the same address.
template <typename Record>
union Overlay {
    static_assert(std::is_standard_layout_v<Record> && std::is_trivial_v<Record>);
    constexpr Overlay() : record{} {}
    Record record;
    char bytes[sizeof(Record)];
};
template <typename Record>
inline constexpr Overlay<Record> overlay{};

template <auto Pointer>
consteval std::size_t find_offset() {
    const auto& place = overlay<RecordOfMember<Pointer>>;
    const void* member = &(place.record.*Pointer);
    std::size_t offset = 0;
    while (static_cast<const void*>(&place.bytes[offset]) != member) {
        ++offset;
    }
    return offset;
}

}  // namespace record_members_details

/// The bytes before a member in its record.
template <auto Pointer>
inline constexpr std::size_t offset_of_member = record_members_details::find_offset<Pointer>();

namespace record_members_details {

/// Initialises a value of any type but an array.
struct Anything {
    template <typename Value>
    operator Value() const;  // NOLINT(google-explicit-constructor)
};

/// Initialises a value of one type.
template <typename Type>
struct Only {
    template <typename Value>
    requires std::is_same_v<Value, Type>
    operator Value() const;  // NOLINT(google-explicit-constructor)
};

template <typename Record, std::size_t... Position>
consteval bool takes(std::index_sequence<Position...> /*initialisers*/) {
    return requires {
        Record{(static_cast<void>(Position), Anything{})...};
    };
}

/// @return whether `Value` can initialise what follows the first initialisers of a record.
template <typename Record, typename Value, std::size_t... Position>
consteval bool takes_next(std::index_sequence<Position...> /*initialisers before*/) {
    return requires {
        Record{(static_cast<void>(Position), Anything{})..., Only<Value>{}};
    };
}

/// @return how many initialisers without inner braces a record takes: one for a member, or one for
/// each element of a member that is an array.
template <typename Record, std::size_t Count = 0>
consteval std::size_t count_initialisers() {
    if constexpr (takes<Record>(std::make_index_sequence<Count + 1>())) {
        return count_initialisers<Record, Count + 1>();
    } else {
        return Count;
    }
}

template <typename Value>
inline constexpr std::size_t initialisers_of_member = sizeof(Value) /
                                                      sizeof(std::remove_all_extents_t<Value>);

/// What the rows before a row take of the record.
struct RowsBefore {
    std::size_t bytes = 0;
    std::size_t initialisers = 0;
};

template <auto Pointer>
consteval RowsBefore after_row(RowsBefore before) {
    using Value = ValueOfMember<Pointer>;
    return {offset_of_member<Pointer> + sizeof(Value),
            before.initialisers + initialisers_of_member<Value>};
}

/// Padding can hide a small member that has no row; its type then differs from the row's.
template <auto Pointer, RowsBefore Before>
consteval bool is_next_member() {
    using Value = ValueOfMember<Pointer>;
    constexpr std::size_t alignment = alignof(Value);
    return offset_of_member<Pointer> == (Before.bytes + alignment - 1) / alignment * alignment &&
           takes_next<RecordOfMember<Pointer>, std::remove_all_extents_t<Value>>(
               std::make_index_sequence<Before.initialisers>());
}

/// Never compiles: the compiler's message shows the arguments.
template <typename Record, std::size_t Position, auto Pointer>
consteval bool refuse_row() {
    static_assert(sizeof(Record) == 0, "this row is out of place, or one before it is missing");
    return true;
}

template <typename Record, std::size_t RowCount>
consteval bool refuse_end() {
    static_assert(sizeof(Record) == 0, "the record has more members than there are rows");
    return true;
}

template <typename Record, std::size_t Position, RowsBefore Before>
consteval bool check_rows() {
    if constexpr (Before.initialisers == count_initialisers<Record>()) {
        return true;
    } else {
        return refuse_end<Record, Position>();
    }
}

/// Stops at the first row that is wrong.
template <typename Record, std::size_t Position, RowsBefore Before, auto First, auto... Others>
consteval bool check_rows() {
    static_assert(std::is_same_v<RecordOfMember<First>, Record>);
    if constexpr (is_next_member<First, Before>()) {
        return check_rows<Record, Position + 1, after_row<First>(Before), Others...>();
    } else {
        return refuse_row<Record, Position, First>();
    }
}

}  // namespace record_members_details

/// True when the pointers name exactly the members of the record, in their order; does not compile
/// otherwise. The error names the record and the first row that is wrong.
template <typename Record, auto... Pointers>
inline constexpr bool covers_record = record_members_details::check_rows<
    Record, 0, record_members_details::RowsBefore{}, Pointers...>();

}  // namespace pexa

#endif
