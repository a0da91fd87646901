#include "types/encoding.hpp"
#include "types/record_access.hpp"

namespace orvane::types {

namespace {

bool encode_word(const void* value, QELCdrStream& stream) {
    return QELCdrStream_serializeLong(&stream, load<DDS_Long>(value)) != 0;
}

bool encode_words(const TypeTable& table, const void* record, QELCdrStream& stream) {
    for (const Member& member : table.members()) {
        if (!encode_word(field(record, member), stream)) {
            return false;
        }
    }
    return true;
}

bool encode_array(const void* array, const Member& member, QELCdrStream& stream) {
    for (std::size_t i = 0; i < member.bound; ++i) {
        if (!encode_words(*member.type, array_element(array, member, i), stream)) {
            return false;
        }
    }
    return true;
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

bool encode_string(const void* string, const Member& member, QELCdrStream& stream) {
    const auto* text = load<const char*>(string);
    return text != nullptr && QELCdrStream_serializeString(&stream, text, member.bound) != 0;
}

bool encode_value(const void* value, const Member& member, QELCdrStream& stream, bool extended) {
    switch (member.kind) {
        case Kind::Long:
        case Kind::Enumeration:
            return encode_word(value, stream);
        case Kind::String:
            return encode_string(value, member, stream);
        case Kind::Structure:
            return encode(*member.type, value, stream, extended, Selection::All);
        case Kind::Array:
            return encode_array(value, member, stream);
        case Kind::Sequence:
            return encode_sequence(value, member, stream);
    }
    return false;
}

bool encode_member(const void* record, const Member& member, QELCdrStream& stream, bool extended) {
    QELCdrOpenParameter header;
    const QELBool form = extended && !member.is_word() ? 1 : 0;
    return QELCdrStream_serializeParameterHeader(&stream, &header, form, member.id, 0) != 0 &&
           encode_value(field(record, member), member, stream, extended) &&
           QELCdrStream_serializeParameterLength(&stream, &header) != 0;
}

bool encode_union(const TypeTable& table, const void* record, QELCdrStream& stream) {
    const Member& discriminator = table.rows[0];
    if (!encode_member(record, discriminator, stream, false)) {
        return false;
    }
    const Member* branch = table.branch(load<DDS_Long>(field(record, discriminator)));
    return (branch == nullptr || encode_member(record, *branch, stream, false)) &&
           QELCdrStream_serializeListEnd(&stream) != 0;
}

}  // namespace

bool encode(const TypeTable& table, const void* record, QELCdrStream& stream, bool extended,
            Selection selection) {
    if (table.category == Category::Enumeration) {
        return encode_word(record, stream);
    }
    if (table.category == Category::Union) {
        return encode_union(table, record, stream);
    }
    if (!table.is_mutable()) {
        return encode_words(table, record, stream);
    }
    for (const Member& member : table.members()) {
        if (selects(selection, member) && !encode_member(record, member, stream, extended)) {
            return false;
        }
    }
    return QELCdrStream_serializeListEnd(&stream) != 0;
}

}  // namespace orvane::types
