#include "platform/internal/cdr_cursor.hpp"
#include "types/encoding.hpp"
#include "types/record_access.hpp"

namespace orvane::types {

namespace {

using pexa::CdrCursor;

bool encode_words(const TypeTable& table, const void* record, QELCdrStream& stream) {
    CdrCursor cursor(stream);
    const bool encoded = cursor.write_words(record, table.record_size / sizeof(DDS_Long));
    cursor.commit();
    return encoded;
}

bool encode_sequence(const void* sequence, const Member& member, QELCdrStream& stream) {
    const SequenceView view(sequence, member);
    const auto length = static_cast<DDS_UnsignedLong>(view.length());
    if (length > member.bound || QELCdrStream_serializeLong(&stream, view.length()) == 0) {
        return false;
    }
    for (std::size_t i = 0; i < length; ++i) {
        const void* element = view.element(i);
        if (element == nullptr || !encode_words(*member.type, element, stream)) {
            return false;
        }
    }
    return true;
}

/** A bit for each row that is encoded. */
std::uint32_t encoded_rows(const TypeTable& table, const void* record, Selection selection) {
    if (table.category != Category::Union) {
        return selection == Selection::All ? ~0U : table.key_rows;
    }
    const auto discriminator = load<DDS_Long>(field(record, table.rows[0]));
    return table.branch(discriminator) == nullptr ? 1U : 1U | 2U << discriminator;
}

}  // namespace

bool encode_open_member(const void* value, const Member& member, QELCdrStream& stream,
                        bool extended) {
    QELCdrOpenParameter header;
    return QELCdrStream_serializeParameterHeader(&stream, &header, extended ? 1 : 0, member.id,
                                                 0) != 0 &&
           (member.kind == Kind::Sequence
                ? encode_sequence(value, member, stream)
                : encode(*member.type, value, stream, extended, Selection::All)) &&
           QELCdrStream_serializeParameterLength(&stream, &header) != 0;
}

bool encode(const TypeTable& table, const void* record, QELCdrStream& stream, bool extended,
            Selection selection) {
    if (!table.is_mutable()) {
        return encode_words(table, record, stream);
    }
    const bool may_extend = extended && table.category != Category::Union;
    return table.compiled->encode(record, stream, may_extend,
                                  encoded_rows(table, record, selection));
}

}  // namespace orvane::types
