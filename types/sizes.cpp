#include "types/sizes.hpp"

#include <algorithm>
#include <cstring>

#include "types/record_access.hpp"

namespace orvane::types {

namespace {

constexpr std::uint64_t word = 4;
constexpr std::uint64_t short_header = 4;
constexpr std::uint64_t extended_header = 12;

constexpr std::uint64_t aligned(std::uint64_t position, std::uint64_t alignment) {
    return (position + alignment - 1) / alignment * alignment;
}

std::uint64_t size_of_words(const TypeTable& table) {
    return word * table.row_count;
}

/** Sizes of any value of a type. */
class ExtremeMeasure {
public:
    explicit ExtremeMeasure(Extreme extreme) : is_maximum_(extreme == Extreme::Maximum) {}

    [[nodiscard]] std::uint64_t header(const Member& member) const {
        return is_maximum_ || !member.is_word() ? extended_header : short_header;
    }
    [[nodiscard]] std::uint64_t list_end() const {
        return is_maximum_ ? extended_header : short_header;
    }
    [[nodiscard]] std::uint64_t characters(const void* /*record*/, const Member& member) const {
        return is_maximum_ ? member.bound : 0;
    }
    [[nodiscard]] std::uint64_t elements(const void* /*record*/, const Member& member) const {
        return is_maximum_ ? member.bound : 0;
    }
    [[nodiscard]] static const void* nested(const void* /*record*/, const Member& /*member*/) {
        return nullptr;
    }
    /** Where the branch ends that takes the least or the most. */
    template <typename End>
    [[nodiscard]] std::uint64_t branch(const TypeTable& table, const void* /*record*/,
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
    Walk(Measure measure, Selection selection) : measure_(measure), selection_(selection) {}

    [[nodiscard]] std::uint64_t value(const TypeTable& table, const void* record,
                                      std::uint64_t position) const {
        if (table.category == Category::Enumeration) {
            return aligned(position, word) + word;
        }
        if (table.category == Category::Union) {
            return union_value(table, record, position);
        }
        if (!table.is_mutable()) {
            return aligned(position, word) + size_of_words(table);
        }
        for (const Member& member : table.members()) {
            if (selects(selection_, member)) {
                position = aligned(position, word) + measure_.header(member);
                position = member_value(member, record, position);
            }
        }
        return aligned(position, word) + measure_.list_end();
    }

private:
    [[nodiscard]] std::uint64_t union_value(const TypeTable& table, const void* record,
                                            std::uint64_t position) const {
        const auto end = [&](const Member& member, std::uint64_t start) {
            return member_value(member, record, aligned(start, word) + short_header);
        };
        position = end(table.rows[0], position);
        position = measure_.branch(table, record, position, end);
        return aligned(position, word) + short_header;
    }

    [[nodiscard]] std::uint64_t member_value(const Member& member, const void* record,
                                             std::uint64_t position) const {
        position = aligned(position, word);
        switch (member.kind) {
            case Kind::Long:
            case Kind::Enumeration:
                return position + word;
            case Kind::String:
                return position + word + measure_.characters(record, member) + 1;
            case Kind::Structure:
                return Walk(measure_, Selection::All)
                    .value(*member.type, measure_.nested(record, member), position);
            case Kind::Array:
                return position + member.bound * size_of_words(*member.type);
            case Kind::Sequence:
                return position + word +
                       measure_.elements(record, member) * size_of_words(*member.type);
        }
        return position;
    }

    Measure measure_;
    Selection selection_;
};

template <typename Measure>
DDS_UnsignedLong size_from(const SizeOrigin& origin, const Walk<Measure>& walk,
                           const TypeTable& table, const void* record, DDS_Boolean* overflow) {
    if (origin.with_encapsulation && origin.encapsulation_id > QEL_CDR_ENCAPSULATION_ID_PL_CDR_LE) {
        return 1;
    }
    const std::uint64_t start = origin.current_alignment;
    std::uint64_t end = 0;
    if (origin.with_encapsulation) {
        end = aligned(start, 2) + QEL_CDR_ENCAPSULATION_HEADER_SIZE + walk.value(table, record, 0);
    } else {
        end = walk.value(table, record, start);
    }
    if (end > TULV_MAX_SERIALIZED_SIZE) {
        if (overflow != nullptr) {
            *overflow = DDS_BOOLEAN_TRUE;
        }
        return TULV_MAX_SERIALIZED_SIZE;
    }
    return static_cast<DDS_UnsignedLong>(end - start);
}

}  // namespace

DDS_UnsignedLong extreme_size(const TypeTable& table, Extreme extreme, Selection selection,
                              const SizeOrigin& origin, DDS_Boolean* overflow) {
    const Walk walk(ExtremeMeasure(extreme), selection);
    return size_from(origin, walk, table, nullptr, overflow);
}

DDS_UnsignedLong exact_size(const TypeTable& table, const void* record, bool extended,
                            const SizeOrigin& origin) {
    const Walk walk(RecordMeasure(extended), Selection::All);
    return size_from(origin, walk, table, record, nullptr);
}

}  // namespace orvane::types
