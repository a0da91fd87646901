#include "types/sizes.hpp"

#include "types/size_counter.hpp"

namespace orvane::types {

namespace {

/** @param end_from tells where a value ends that begins at a position. */
template <typename EndFrom>
DDS_UnsignedLong size_from(const SizeOrigin& origin, EndFrom end_from, DDS_Boolean* overflow) {
    if (origin.with_encapsulation && origin.encapsulation_id > QEL_CDR_ENCAPSULATION_ID_PL_CDR_LE) {
        return 1;
    }
    const std::uint64_t start = origin.current_alignment;
    std::uint64_t end = 0;
    if (origin.with_encapsulation) {
        end = aligned(start, 2) + QEL_CDR_ENCAPSULATION_HEADER_SIZE + end_from(std::uint64_t{0});
    } else {
        end = end_from(start);
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
    const SizeCounter counter(ExtremeMeasure(extreme), selection);
    return size_from(
        origin, [&](std::uint64_t start) { return counter.value(table, nullptr, start); },
        overflow);
}

DDS_UnsignedLong exact_size(const TypeTable& table, const void* record, bool extended,
                            const SizeOrigin& origin) {
    const auto end_from = [&](std::uint64_t start) {
        return table.is_mutable()
                   ? table.compiled->end(record, extended, start)
                   : SizeCounter(RecordMeasure(extended)).value(table, record, start);
    };
    return size_from(origin, end_from, nullptr);
}

}  // namespace orvane::types
