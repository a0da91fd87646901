#include "platform/internal/cdr_cursor.hpp"
#include "types/encoding.hpp"
#include "types/record_access.hpp"

namespace orvane::types {

namespace {

using pexa::CdrCursor;

Success encode_longs(const TypeTable& table, const void* record, QELCdrStream& stream) {
    CdrCursor cursor(stream);
    const bool encoded = cursor.write_longs(record, table.record_size / sizeof(DDS_Long));
    cursor.commit();
    return encoded;
}

Success encode_sequence(const void* sequence, const MemberDescriptor& member,
                        QELCdrStream& stream) {
    const SequenceView view(sequence, member);
    const auto length = static_cast<DDS_UnsignedLong>(view.length());
    if (length > member.bound || QELCdrStream_serializeLong(&stream, view.length()) == 0) {
        return false;
    }
    for (std::size_t i = 0; i < length; ++i) {
        const void* element = view.element(i);
        if (element == nullptr || !encode_longs(*member.type, element, stream)) {
            return false;
        }
    }
    return true;
}

}  // namespace

Success encode_variable_member(const void* value, const MemberDescriptor& member,
                               QELCdrStream& stream, bool extended) {
    QELCdrOpenParameter header;
    return QELCdrStream_serializeParameterHeader(&stream, &header, extended ? 1 : 0, member.id,
                                                 0) != 0 &&
           (member.kind == MemberKind::Sequence
                ? encode_sequence(value, member, stream)
                : encode(*member.type, value, stream, extended, Selection::All)) &&
           QELCdrStream_serializeParameterLength(&stream, &header) != 0;
}

Success encode(const TypeTable& table, const void* record, QELCdrStream& stream, bool extended,
               Selection selection) {
    return table.is_mutable() ? table.compiled->encode(record, stream, extended, selection)
                              : encode_longs(table, record, stream);
}

}  // namespace orvane::types
