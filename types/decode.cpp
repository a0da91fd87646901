#include "types/compiled_members.hpp"
#include "types/encoding.hpp"
#include "types/record_access.hpp"
#include "types/values.hpp"

namespace orvane::types {

namespace {

using pexa::CdrParameterCursor;

/** Decodes a value of a type that is not mutable. */
Success decode_final(const TypeTable& table, void* record, QELCdrStream& stream) {
    CdrParameterCursor cursor(stream);
    const bool decoded = table.kind == TypeKind::Enumeration
                             ? decode_long(record, &table, cursor)
                             : decode_elements(table, record, table.record_size, cursor);
    cursor.commit();
    return decoded;
}

/** Decodes into the elements that the sequence has; it never grows. */
Success decode_sequence(void* sequence, const MemberDescriptor& member, QELCdrStream& stream) {
    DDS_Long count = 0;
    if (QELCdrStream_deserializeLong(&stream, &count) == 0) {
        return false;
    }
    const SequenceView view(sequence, member);
    if (static_cast<DDS_UnsignedLong>(count) > member.bound || count > view.maximum()) {
        return false;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        void* element = view.element(i);
        if (element == nullptr || !decode_final(*member.type, element, stream)) {
            return false;
        }
    }
    return PEXASequence_set_length(static_cast<PEXASequence*>(sequence), member.element, count) !=
           DDS_BOOLEAN_FALSE;
}

}  // namespace

Success decode_variable_value(void* value, const MemberDescriptor& member, QELCdrStream& stream) {
    if (member.kind == MemberKind::Sequence) {
        return decode_sequence(value, member, stream);
    }
    // This resets the value: when the member occurs twice, the last one counts as a whole.
    return decode(*member.type, value, stream, Selection::All);
}

Success decode(const TypeTable& table, void* record, QELCdrStream& stream, Selection selection) {
    if (table.is_mutable()) {
        return table.compiled->decode(record, stream, selection);
    }
    reset(table, record);
    return decode_final(table, record, stream);
}

Success skip(const TypeTable& table, QELCdrStream& stream) {
    CdrParameterCursor cursor(stream);
    bool skipped = false;
    if (table.is_mutable()) {
        skipped = cursor.for_each_parameter(
            [](CdrParameterCursor&, const QELCdrParameterHeader&) { return true; });
    } else {
        skipped = cursor.align(sizeof(DDS_Long)) && cursor.skip(table.record_size);
    }
    cursor.commit();
    return skipped;
}

}  // namespace orvane::types
