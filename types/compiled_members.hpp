/**
 * @file compiled_members.hpp
 * @brief The operations on the members of a mutable type that every message goes through.
 *
 * Each is written once and compiled for each type, with the rows of its table as constants, in the
 * file with the tables. Their common steps are inlined by force; see @ref pexa::CdrCursor for why.
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
#include "types/size_walk.hpp"
#include "types/values.hpp"

namespace orvane::types {

/** The positions of the rows of a record's table. */
template <typename Record>
using Rows = std::make_index_sequence<Description<Record>::table.row_count>;

template <typename Record, std::size_t Row>
constexpr const Member& row = Description<Record>::table.rows[Row];

[[gnu::always_inline]] inline bool encode_string(const char* text, const Member& member,
                                                 pexa::CdrParameterCursor& cursor, bool extended) {
    DDS_UnsignedLong size = 0;
    return text != nullptr && pexa::CdrParameterCursor::measure_string(text, member.bound, size) &&
           cursor.write_string_parameter(extended, member.id, text, size);
}

[[gnu::always_inline]] inline bool encode_member(const void* value, const Member& member,
                                                 pexa::CdrParameterCursor& cursor, bool extended) {
    if (member.words > 0) {
        const bool form = extended && !member.is_word();
        return cursor.write_words_parameter(form, member.id, value, member.words);
    }
    if (member.kind == Kind::String) {
        return encode_string(load<const char*>(value), member, cursor, extended);
    }
    return cursor.on_stream(
        [&](QELCdrStream& stream) { return encode_open_member(value, member, stream, extended); });
}

template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline bool encode_rows(const void* record, pexa::CdrParameterCursor& cursor,
                                               bool extended, std::uint32_t wanted,
                                               std::index_sequence<Row...> /*rows*/) {
    return (((wanted >> Row & 1U) == 0 ||
             encode_member(field(record, row<Record, Row>), row<Record, Row>, cursor, extended)) &&
            ...);
}

template <typename Record>
bool encode_members(const void* record, QELCdrStream& stream, bool extended, std::uint32_t wanted) {
    pexa::CdrParameterCursor cursor(stream);
    const bool encoded = encode_rows<Record>(record, cursor, extended, wanted, Rows<Record>()) &&
                         cursor.write_list_end();
    cursor.commit();
    return encoded;
}

/** @param enumeration NULL for a number. */
[[gnu::always_inline]] inline bool decode_word(void* value, const TypeTable* enumeration,
                                               pexa::CdrParameterCursor& cursor) {
    DDS_Long number = 0;
    if (!cursor.read(number)) {
        return false;
    }
    if (enumeration != nullptr && !enumeration->has_enumerator(number)) {
        cursor.reject();
        return false;
    }
    store(value, number);
    return true;
}

/** Decodes final structures, one behind the other. */
[[gnu::always_inline]] inline bool decode_elements(const TypeTable& table, void* first,
                                                   std::size_t size,
                                                   pexa::CdrParameterCursor& cursor) {
    char* const end = static_cast<char*>(first) + size;
    for (char* element = static_cast<char*>(first); element != end; element += table.record_size) {
        for (const Member& member : table.members()) {
            if (!decode_word(field(element, member), member.type, cursor)) {
                return false;
            }
        }
    }
    return true;
}

[[gnu::always_inline]] inline bool decode_value(void* value, const Member& member,
                                                pexa::CdrParameterCursor& cursor) {
    if (member.is_word()) {
        return decode_word(value, member.type, cursor);
    }
    if (member.words > 0) {
        return decode_elements(*member.type, value, member.words * sizeof(DDS_Long), cursor);
    }
    if (member.kind == Kind::String) {
        auto* text = load<char*>(value);
        return text != nullptr && cursor.read_string(text, member.bound);
    }
    return cursor.on_stream(
        [&](QELCdrStream& stream) { return decode_open_value(value, member, stream); });
}

/** @return false when the row that has the id cannot be decoded. */
template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline bool decode_row(void* record, pexa::CdrParameterCursor& cursor,
                                              DDS_UnsignedLong id, Selection selection,
                                              std::index_sequence<Row...> /*rows*/) {
    return ((id != Row || !selects(selection, row<Record, Row>) ||
             decode_value(field(record, row<Record, Row>), row<Record, Row>, cursor)) &&
            ...);
}

/** What becomes of each member that is found. */
template <typename Record>
struct DecodeMember {
    void* record;
    Selection selection;

    [[gnu::always_inline]] bool operator()(pexa::CdrParameterCursor& cursor,
                                           const QELCdrParameterHeader& header) const {
        if (header.isIgnored != 0) {
            return true;
        }
        if (header.id >= Description<Record>::table.row_count) {
            return header.mustUnderstand == 0;
        }
        // Nothing in a member can reach into what follows it.
        const std::size_t end = cursor.set_end(header.valuePosition + header.length);
        const bool decoded =
            decode_row<Record>(record, cursor, header.id, selection, Rows<Record>());
        cursor.set_end(end);
        return decoded;
    }
};

/** Kept apart, so that what senders usually write is decoded in little code. */
template <typename Record>
[[gnu::noinline]] bool decode_any_members(void* record, QELCdrStream& stream, Selection selection) {
    pexa::CdrParameterCursor cursor(stream);
    const bool decoded = cursor.for_each_parameter(DecodeMember<Record>{record, selection});
    cursor.commit();
    return decoded;
}

/** @return whether the member can have the number at that position of its words. */
[[gnu::always_inline]] inline bool can_have(const Member& member, std::size_t position,
                                            DDS_Long number) {
    const TypeTable* type = member.type;
    if (!member.is_word()) {
        type = type->rows[position % type->row_count].type;
    }
    return type == nullptr || type->has_enumerator(number);
}

template <typename Record, std::size_t Row, std::size_t... Word>
[[gnu::always_inline]] inline bool decode_expected_words(void* value,
                                                         pexa::CdrParameterCursor& cursor,
                                                         std::index_sequence<Word...> /*words*/) {
    constexpr const Member& member = row<Record, Row>;
    std::array<DDS_Long, sizeof...(Word)> numbers;
    pexa::CdrParameterCursor next = cursor;
    if (!next.read_words_parameter(member.id, numbers.data(), numbers.size()) ||
        !(can_have(member, Word, numbers[Word]) && ...)) {
        return false;
    }
    std::memcpy(value, numbers.data(), sizeof numbers);
    cursor = next;
    return true;
}

/** Decodes a member that is encoded as senders usually do.
 *  @return false, with nothing read, when it is not; that may be an error or not. */
template <typename Record, std::size_t Row>
[[gnu::always_inline]] inline bool decode_expected(void* value, pexa::CdrParameterCursor& cursor) {
    constexpr const Member& member = row<Record, Row>;
    if constexpr (member.words > 0) {
        return decode_expected_words<Record, Row>(
            value, cursor, std::make_index_sequence<row<Record, Row>.words>());
    } else if constexpr (member.kind == Kind::String) {
        auto* text = load<char*>(value);
        return text != nullptr && cursor.read_string_parameter(member.id, text, member.bound);
    } else {
        return false;
    }
}

/** @return whether all rows have been decoded. */
template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline bool decode_rows(void* record, pexa::CdrParameterCursor& cursor,
                                               Selection selection,
                                               std::index_sequence<Row...> /*rows*/) {
    return ((selects(selection, row<Record, Row>) &&
             decode_expected<Record, Row>(field(record, row<Record, Row>), cursor)) &&
            ...);
}

template <typename Record>
bool decode_members(void* record, QELCdrStream& stream, Selection selection) {
    pexa::CdrParameterCursor cursor(stream);
    const bool decoded = cursor.is_native() &&
                         decode_rows<Record>(record, cursor, selection, Rows<Record>()) &&
                         cursor.read_list_end();
    cursor.commit();
    return decoded || decode_any_members<Record>(record, stream, selection);
}

[[gnu::always_inline]] inline void reset_member(void* value, const Member& member) {
    if (member.words > 0) {
        std::memset(value, 0, member.words * sizeof(DDS_Long));
    } else if (member.kind != Kind::String) {
        reset_open_value(value, member);
    } else if (auto* text = load<char*>(value); text != nullptr) {
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

template <typename Record, std::size_t... Row>
[[gnu::always_inline]] inline std::uint64_t end_of_rows(const void* record, std::uint64_t position,
                                                        const Walk<RecordMeasure>& walk,
                                                        std::index_sequence<Row...> /*rows*/) {
    ((position = walk.member_with_header(row<Record, Row>, record, position)), ...);
    return walk.list_end(position);
}

template <typename Record>
std::uint64_t end_of_members(const void* record, bool extended, std::uint64_t position) {
    const Walk walk{RecordMeasure(extended)};
    if constexpr (Description<Record>::table.category == Category::Union) {
        return walk.value(Description<Record>::table, record, position);
    } else {
        return end_of_rows<Record>(record, position, walk, Rows<Record>());
    }
}

template <typename Record>
constexpr CompiledMembers compiled_members{.encode = encode_members<Record>,
                                           .decode = decode_members<Record>,
                                           .reset = reset_members<Record>,
                                           .end = end_of_members<Record>};

}  // namespace orvane::types
