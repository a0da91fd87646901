/**
 * @file compiled_members.hpp
 * @brief Encoding, decoding and sizing of mutable types: every message goes through them.
 *
 * The operations are templates over the rows of a table, so that each row is a constant. tables.cpp
 * instantiates them. Their common steps are forced inline; @ref pexa::CdrCursor says why.
 */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/internal/cdr_parameter_cursor.hpp"
#include "types/encoding.hpp"
#include "types/record_access.hpp"
#include "types/size_counter.hpp"
#include "types/values.hpp"

namespace orvane::types {

/** The positions of the rows of a record's table. */
template <typename Record>
using Rows = std::make_index_sequence<Description<Record>::table.rows.size()>;

template <typename Record, std::size_t Row>
constexpr const MemberDescriptor& row = Description<Record>::table.rows[Row];

[[gnu::always_inline]] inline Success encode_string(const char* text,
                                                    const MemberDescriptor& member,
                                                    pexa::CdrParameterCursor& cursor,
                                                    bool extended) {
    DDS_UnsignedLong size = 0;
    return text != nullptr && pexa::CdrParameterCursor::measure_string(text, member.bound, size) &&
           cursor.write_string_parameter(extended, member.id, text, size);
}

[[gnu::always_inline]] inline Success encode_member(const void* value,
                                                    const MemberDescriptor& member,
                                                    pexa::CdrParameterCursor& cursor,
                                                    bool extended) {
    if (member.longs > 0) {
        const bool form = extended && !member.is_one_long();
        return cursor.write_longs_parameter(form, member.id, value, member.longs);
    }
    if (member.kind == MemberKind::String) {
        return encode_string(read_value<const char*>(value), member, cursor, extended);
    }
    return cursor.on_stream([&](QELCdrStream& stream) {
        return encode_variable_member(value, member, stream, extended);
    });
}

/** A bit for each row that is encoded. */
template <typename Record>
[[gnu::always_inline]] inline std::uint32_t encoded_rows(const void* record, Selection selection) {
    constexpr const TypeTable& table = Description<Record>::table;
    if constexpr (table.kind != TypeKind::Union) {
        return selection == Selection::All ? ~0U : table.key_rows;
    } else {
        const auto discriminator = read_value<DDS_Long>(field(record, table.rows[0]));
        return table.branch(discriminator) == nullptr ? 1U : 1U | 2U << discriminator;
    }
}

template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline Success encode_rows(const void* record,
                                                  pexa::CdrParameterCursor& cursor, bool extended,
                                                  Selection selection,
                                                  std::index_sequence<Row...> /*rows*/) {
    const std::uint32_t wanted = encoded_rows<Record>(record, selection);
    return (((wanted >> Row & 1U) == 0 ||
             encode_member(field(record, row<Record, Row>), row<Record, Row>, cursor, extended)) &&
            ...) &&
           cursor.write_list_end();
}

/** Encodes any selection in any form. A function of its own, so that encode_members() is small. */
template <typename Record>
[[gnu::noinline]] Success encode_any_members(const void* record, QELCdrStream& stream,
                                             bool extended, Selection selection) {
    pexa::CdrParameterCursor cursor(stream);
    const bool encoded = encode_rows<Record>(record, cursor, extended, selection, Rows<Record>());
    cursor.commit();
    return encoded;
}

template <typename Record>
Success encode_members(const void* record, QELCdrStream& stream, bool extended,
                       Selection selection) {
    pexa::CdrParameterCursor cursor(stream);
    // Headers inside unions are always short.
    const bool may_extend = extended && Description<Record>::table.kind != TypeKind::Union;
    if (!cursor.is_native() || may_extend || selection != Selection::All) {
        return encode_any_members<Record>(record, stream, may_extend, selection);
    }
    // The form of nearly all samples is compiled with nothing left to choose. The result is not
    // kept in a variable: that would be stored and loaded around each call.
    if (encode_rows<Record>(record, cursor, false, Selection::All, Rows<Record>())) {
        return cursor.commit();
    }
    cursor.commit();
    return false;
}

/** @param enumeration NULL for a number. */
[[gnu::always_inline]] inline Success decode_long(void* value, const TypeTable* enumeration,
                                                  pexa::CdrParameterCursor& cursor) {
    DDS_Long number = 0;
    if (!cursor.read(number)) {
        return false;
    }
    if (enumeration != nullptr && !enumeration->has_enumerator(number)) {
        cursor.reject();
        return false;
    }
    write_value(value, number);
    return true;
}

/** Decodes final structures that follow each other. */
[[gnu::always_inline]] inline Success decode_elements(const TypeTable& table, void* first,
                                                      std::size_t size,
                                                      pexa::CdrParameterCursor& cursor) {
    char* const end = static_cast<char*>(first) + size;
    for (char* element = static_cast<char*>(first); element != end; element += table.record_size) {
        for (const MemberDescriptor& member : table.rows) {
            if (!decode_long(field(element, member), member.type, cursor)) {
                return false;
            }
        }
    }
    return true;
}

[[gnu::always_inline]] inline Success decode_value(void* value, const MemberDescriptor& member,
                                                   pexa::CdrParameterCursor& cursor) {
    if (member.is_one_long()) {
        return decode_long(value, member.type, cursor);
    }
    if (member.longs > 0) {
        return decode_elements(*member.type, value, member.longs * sizeof(DDS_Long), cursor);
    }
    if (member.kind == MemberKind::String) {
        auto* text = read_value<char*>(value);
        return text != nullptr && cursor.read_string(text, member.bound);
    }
    return cursor.on_stream(
        [&](QELCdrStream& stream) { return decode_variable_value(value, member, stream); });
}

/** @return false when the row that has the id cannot be decoded. */
template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline Success decode_row(void* record, pexa::CdrParameterCursor& cursor,
                                                 DDS_UnsignedLong id, Selection selection,
                                                 std::index_sequence<Row...> /*rows*/) {
    return ((id != Row || !selects(selection, row<Record, Row>) ||
             decode_value(field(record, row<Record, Row>), row<Record, Row>, cursor)) &&
            ...);
}

/** Decodes a member of a parameter list. Passes over an unknown member. */
template <typename Record>
struct DecodeMember {
    void* record;
    Selection selection;

    [[gnu::always_inline]] Success operator()(pexa::CdrParameterCursor& cursor,
                                              const QELCdrParameterHeader& header) const {
        if (header.isIgnored != 0) {
            return true;
        }
        if (header.id >= Description<Record>::table.rows.size()) {
            return header.mustUnderstand == 0;
        }
        // A member must not be read beyond its own length.
        const std::size_t end = cursor.set_end(header.valuePosition + header.length);
        const bool decoded =
            decode_row<Record>(record, cursor, header.id, selection, Rows<Record>());
        cursor.set_end(end);
        return decoded;
    }
};

/** Decodes members in any order and form. A function of its own, so that decode_members() is small.
 */
template <typename Record>
[[gnu::noinline]] Success decode_any_members(void* record, QELCdrStream& stream,
                                             Selection selection) {
    pexa::CdrParameterCursor cursor(stream);
    const bool decoded = cursor.for_each_parameter(DecodeMember<Record>{record, selection});
    cursor.commit();
    return decoded;
}

/** @return whether the number is valid at that position among the longs of the member. */
[[gnu::always_inline]] inline bool can_have(const MemberDescriptor& member, std::size_t position,
                                            DDS_Long number) {
    const TypeTable* type = member.type;
    if (!member.is_one_long()) {
        type = type->rows[position % type->rows.size()].type;
    }
    return type == nullptr || type->has_enumerator(number);
}

template <typename Record, std::size_t Row, std::size_t... Index>
[[gnu::always_inline]] inline Success decode_expected_longs(
    void* value, pexa::CdrParameterCursor& cursor, std::index_sequence<Index...> /*longs*/) {
    constexpr const MemberDescriptor& member = row<Record, Row>;
    std::array<DDS_Long, sizeof...(Index)> numbers;
    pexa::CdrParameterCursor next = cursor;
    if (!next.read_longs_parameter(member.id, numbers.data(), numbers.size()) ||
        !(can_have(member, Index, numbers[Index]) && ...)) {
        return false;
    }
    std::memcpy(value, numbers.data(), sizeof numbers);
    cursor = next;
    return true;
}

/** Decodes a member that is encoded as our encoder does it.
 *  @return false with nothing read when it is not, which may still be valid. */
template <typename Record, std::size_t Row>
[[gnu::always_inline]] inline Success decode_expected(void* value,
                                                      pexa::CdrParameterCursor& cursor) {
    constexpr const MemberDescriptor& member = row<Record, Row>;
    if constexpr (member.longs > 0) {
        return decode_expected_longs<Record, Row>(
            value, cursor, std::make_index_sequence<row<Record, Row>.longs>());
    } else if constexpr (member.kind == MemberKind::String) {
        auto* text = read_value<char*>(value);
        return text != nullptr && cursor.read_string_parameter(member.id, text, member.bound);
    } else {
        return false;
    }
}

/** @return whether all rows have been decoded. */
template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline Success decode_rows(void* record, pexa::CdrParameterCursor& cursor,
                                                  Selection selection,
                                                  std::index_sequence<Row...> /*rows*/) {
    return ((selects(selection, row<Record, Row>) &&
             decode_expected<Record, Row>(field(record, row<Record, Row>), cursor)) &&
            ...);
}

[[gnu::always_inline]] inline void reset_member(void* value, const MemberDescriptor& member) {
    if (member.longs > 0) {
        std::memset(value, 0, member.longs * sizeof(DDS_Long));
    } else if (member.kind != MemberKind::String) {
        reset_variable_value(value, member);
    } else if (auto* text = read_value<char*>(value); text != nullptr) {
        *text = '\0';
    }
}

template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline void reset_rows(void* record, std::index_sequence<Row...> /*rows*/) {
    (reset_member(field(record, row<Record, Row>), row<Record, Row>), ...);
}

template <typename Record>
void reset_members(void* record) {
    reset_rows<Record>(record, Rows<Record>());
}

template <typename Record>
Success decode_members(void* record, QELCdrStream& stream, Selection selection) {
    reset_members<Record>(record);
    pexa::CdrParameterCursor cursor(stream);
    const bool decoded = cursor.is_native() &&
                         decode_rows<Record>(record, cursor, selection, Rows<Record>()) &&
                         cursor.read_list_end();
    cursor.commit();
    return decoded || decode_any_members<Record>(record, stream, selection);
}

template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline std::uint64_t end_of_rows(const void* record, std::uint64_t position,
                                                        const SizeCounter<RecordMeasure>& counter,
                                                        std::index_sequence<Row...> /*rows*/) {
    ((position = counter.member_with_header(row<Record, Row>, record, position)), ...);
    return counter.list_end(position);
}

template <typename Record>
std::uint64_t end_of_members(const void* record, bool extended, std::uint64_t position) {
    const SizeCounter counter{RecordMeasure(extended)};
    if constexpr (Description<Record>::table.kind == TypeKind::Union) {
        return counter.value(Description<Record>::table, record, position);
    } else {
        return end_of_rows<Record>(record, position, counter, Rows<Record>());
    }
}

template <typename Record>
constexpr CompiledMembers compiled_members{.encode = encode_members<Record>,
                                           .decode = decode_members<Record>,
                                           .reset = reset_members<Record>,
                                           .end = end_of_members<Record>};

}  // namespace orvane::types
