/**
 * @file size_walk.hpp
 * @brief How sizes of encodings are counted, over tables.
 */
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "types/record_access.hpp"
#include "types/table.hpp"

namespace orvane::types {

enum class Extreme : std::uint8_t { Minimum, Maximum };

inline constexpr std::uint64_t word = 4;
inline constexpr std::uint64_t short_header = 4;
inline constexpr std::uint64_t extended_header = 12;

constexpr std::uint64_t aligned(std::uint64_t position, std::uint64_t alignment) {
    return (position + alignment - 1) / alignment * alignment;
}

/** Sizes of any value of a type. */
class ExtremeMeasure {
public:
    constexpr explicit ExtremeMeasure(Extreme extreme) : is_maximum_(extreme == Extreme::Maximum) {}

    [[nodiscard]] constexpr std::uint64_t header(const Member& member) const {
        return is_maximum_ || !member.is_word() ? extended_header : short_header;
    }
    [[nodiscard]] constexpr std::uint64_t list_end() const {
        return is_maximum_ ? extended_header : short_header;
    }
    [[nodiscard]] constexpr std::uint64_t characters(const void* /*record*/,
                                                     const Member& member) const {
        return is_maximum_ ? member.bound : 0;
    }
    [[nodiscard]] constexpr std::uint64_t elements(const void* /*record*/,
                                                   const Member& member) const {
        return is_maximum_ ? member.bound : 0;
    }
    [[nodiscard]] static constexpr const void* nested(const void* /*record*/,
                                                      const Member& /*member*/) {
        return nullptr;
    }
    /** Where the branch ends that takes the least or the most. */
    template <typename End>
    [[nodiscard]] constexpr std::uint64_t branch(const TypeTable& table, const void* /*record*/,
                                                 std::uint64_t position, End end) const {
        std::uint64_t furthest = end(table.rows[1], position);
        for (const Member& member : table.members().subspan(2)) {
            const std::uint64_t other = end(member, position);
            furthest = is_maximum_ ? std::max(furthest, other) : std::min(furthest, other);
        }
        return furthest;
    }

private:
    bool is_maximum_;
};

/** Sizes of one record. */
class RecordMeasure {
public:
    explicit RecordMeasure(bool extended) : extended_(extended) {}

    [[nodiscard]] std::uint64_t header(const Member& member) const {
        return extended_ && !member.is_word() ? extended_header : short_header;
    }
    [[nodiscard]] static std::uint64_t list_end() { return short_header; }
    /** A string that cannot be encoded counts as some string that can. */
    [[nodiscard]] static std::uint64_t characters(const void* record, const Member& member) {
        const auto* text = load<const char*>(field(record, member));
        return text == nullptr ? 0 : strnlen(text, member.bound);
    }
    [[nodiscard]] static std::uint64_t elements(const void* record, const Member& member) {
        const SequenceView view(field(record, member), member);
        return std::min(static_cast<DDS_UnsignedLong>(view.length()), member.bound);
    }
    [[nodiscard]] static const void* nested(const void* record, const Member& member) {
        return field(record, member);
    }
    template <typename End>
    [[nodiscard]] static std::uint64_t branch(const TypeTable& table, const void* record,
                                              std::uint64_t position, End end) {
        const Member* selected = table.branch(load<DDS_Long>(field(record, table.rows[0])));
        return selected == nullptr ? position : end(*selected, position);
    }

private:
    bool extended_;
};

/** Walks over a table; each operation returns the position behind what it passes. */
template <typename Measure>
class Walk {
public:
    constexpr explicit Walk(Measure measure, Selection selection = Selection::All)
        : measure_(measure), selection_(selection) {}

    [[nodiscard]] constexpr std::uint64_t value(const TypeTable& table, const void* record,
                                                std::uint64_t position) const {
        if (!table.is_mutable()) {
            return aligned(position, word) + table.record_size;
        }
        if (table.category == Category::Union) {
            return union_value(table, record, position);
        }
        for (const Member& member : table.members()) {
            if (selects(selection_, member)) {
                position = member_with_header(member, record, position);
            }
        }
        return list_end(position);
    }

    [[gnu::always_inline, nodiscard]] constexpr std::uint64_t member_with_header(
        const Member& member, const void* record, std::uint64_t position) const {
        return member_value(member, record, aligned(position, word) + measure_.header(member));
    }

    [[nodiscard]] constexpr std::uint64_t list_end(std::uint64_t position) const {
        return aligned(position, word) + measure_.list_end();
    }

private:
    [[nodiscard]] constexpr std::uint64_t union_value(const TypeTable& table, const void* record,
                                                      std::uint64_t position) const {
        const auto end = [&](const Member& member, std::uint64_t start) {
            return member_value(member, record, aligned(start, word) + short_header);
        };
        position = end(table.rows[0], position);
        position = measure_.branch(table, record, position, end);
        return aligned(position, word) + short_header;
    }

    /** @param position behind the member's header, and so aligned. */
    [[gnu::always_inline, nodiscard]] constexpr std::uint64_t member_value(
        const Member& member, const void* record, std::uint64_t position) const {
        if (member.words > 0) {
            return position + word * member.words;
        }
        if (member.kind == Kind::String) {
            return position + word + measure_.characters(record, member) + 1;
        }
        if (member.kind == Kind::Sequence) {
            return position + word + measure_.elements(record, member) * member.type->record_size;
        }
        return Walk(measure_).value(*member.type, measure_.nested(record, member), position);
    }

    Measure measure_;
    Selection selection_;
};

/** Bytes of the largest key. */
constexpr std::uint64_t longest_key(const TypeTable& table) {
    return Walk(ExtremeMeasure(Extreme::Maximum), Selection::Key).value(table, nullptr, 0);
}

}  // namespace orvane::types
