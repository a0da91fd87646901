/**
 * @file size_counter.hpp
 * @brief Computes the sizes of encodings from tables.
 */
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "types/record_access.hpp"
#include "types/table.hpp"

namespace orvane::types {

enum class Extreme : std::uint8_t { Minimum, Maximum };

inline constexpr std::uint64_t long_size = 4;
inline constexpr std::uint64_t short_header = 4;
inline constexpr std::uint64_t extended_header = 12;

constexpr std::uint64_t aligned(std::uint64_t position, std::uint64_t alignment) {
    return (position + alignment - 1) / alignment * alignment;
}

/** Sizes of any value of a type. */
class ExtremeMeasure {
public:
    constexpr explicit ExtremeMeasure(Extreme extreme) : is_maximum_(extreme == Extreme::Maximum) {}

    constexpr std::uint64_t header(const MemberDescriptor& member) const {
        return is_maximum_ || !member.is_one_long() ? extended_header : short_header;
    }
    constexpr std::uint64_t list_end() const {
        return is_maximum_ ? extended_header : short_header;
    }
    constexpr std::uint64_t characters(const void* /*record*/,
                                       const MemberDescriptor& member) const {
        return is_maximum_ ? member.bound : 0;
    }
    constexpr std::uint64_t elements(const void* /*record*/, const MemberDescriptor& member) const {
        return is_maximum_ ? member.bound : 0;
    }
    static constexpr const void* nested(const void* /*record*/,
                                        const MemberDescriptor& /*member*/) {
        return nullptr;
    }
    /** @return the end of the smallest or largest branch. */
    template <typename End>
    constexpr std::uint64_t branch(const TypeTable& table, const void* /*record*/,
                                   std::uint64_t position, End end) const {
        std::uint64_t furthest = end(table.rows[1], position);
        for (const MemberDescriptor& member : table.rows.subspan(2)) {
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

    std::uint64_t header(const MemberDescriptor& member) const {
        return extended_ && !member.is_one_long() ? extended_header : short_header;
    }
    static std::uint64_t list_end() { return short_header; }
    /** A string that cannot be encoded counts as a shorter one that can. */
    static std::uint64_t characters(const void* record, const MemberDescriptor& member) {
        const auto* text = read_value<const char*>(field(record, member));
        return text == nullptr ? 0 : strnlen(text, member.bound);
    }
    static std::uint64_t elements(const void* record, const MemberDescriptor& member) {
        const SequenceView view(field(record, member), member);
        return std::min(static_cast<DDS_UnsignedLong>(view.length()), member.bound);
    }
    static const void* nested(const void* record, const MemberDescriptor& member) {
        return field(record, member);
    }
    template <typename End>
    static std::uint64_t branch(const TypeTable& table, const void* record, std::uint64_t position,
                                End end) {
        const MemberDescriptor* selected =
            table.branch(read_value<DDS_Long>(field(record, table.rows[0])));
        return selected == nullptr ? position : end(*selected, position);
    }

private:
    bool extended_;
};

/** Counts the bytes of an encoding. Each operation takes the position where something starts and
 *  returns the position where it ends. */
template <typename Measure>
class SizeCounter {
public:
    constexpr explicit SizeCounter(Measure measure, Selection selection = Selection::All)
        : measure_(measure), selection_(selection) {}

    constexpr std::uint64_t value(const TypeTable& table, const void* record,
                                  std::uint64_t position) const {
        if (!table.is_mutable()) {
            return aligned(position, long_size) + table.record_size;
        }
        if (table.kind == TypeKind::Union) {
            return union_value(table, record, position);
        }
        for (const MemberDescriptor& member : table.rows) {
            if (selects(selection_, member)) {
                position = member_with_header(member, record, position);
            }
        }
        return list_end(position);
    }

    [[gnu::always_inline]] constexpr std::uint64_t member_with_header(
        const MemberDescriptor& member, const void* record, std::uint64_t position) const {
        return member_value(member, record, aligned(position, long_size) + measure_.header(member));
    }

    constexpr std::uint64_t list_end(std::uint64_t position) const {
        return aligned(position, long_size) + measure_.list_end();
    }

private:
    constexpr std::uint64_t union_value(const TypeTable& table, const void* record,
                                        std::uint64_t position) const {
        const auto end = [&](const MemberDescriptor& member, std::uint64_t start) {
            return member_value(member, record, aligned(start, long_size) + short_header);
        };
        position = end(table.rows[0], position);
        position = measure_.branch(table, record, position, end);
        return aligned(position, long_size) + short_header;
    }

    /** @param position behind the member's header, and so aligned. */
    [[gnu::always_inline]] constexpr std::uint64_t member_value(const MemberDescriptor& member,
                                                                const void* record,
                                                                std::uint64_t position) const {
        if (member.longs > 0) {
            return position + long_size * member.longs;
        }
        if (member.kind == MemberKind::String) {
            return position + long_size + measure_.characters(record, member) + 1;
        }
        if (member.kind == MemberKind::Sequence) {
            return position + long_size +
                   measure_.elements(record, member) * member.type->record_size;
        }
        return SizeCounter(measure_).value(*member.type, measure_.nested(record, member), position);
    }

    Measure measure_;
    Selection selection_;
};

/** Bytes of the largest key. */
constexpr std::uint64_t longest_key(const TypeTable& table) {
    return SizeCounter(ExtremeMeasure(Extreme::Maximum), Selection::Key).value(table, nullptr, 0);
}

}  // namespace orvane::types
