#include "types/encoding.hpp"
#include "types/record_access.hpp"

namespace orvane::types {

namespace {

/** Ends the stream where a member ends, so that nothing in it can reach into what follows. */
class MemberWindow {
public:
    MemberWindow(QELCdrStream& stream, const QELCdrParameterHeader& header)
        : stream_(stream), size_(stream.size) {
        stream_.size = header.valuePosition + header.length;
    }
    ~MemberWindow() { stream_.size = size_; }
    MemberWindow(const MemberWindow&) = delete;
    MemberWindow& operator=(const MemberWindow&) = delete;

private:
    QELCdrStream& stream_;
    std::size_t size_;
};

/** @return whether no header can follow: nothing is left but padding. */
bool is_exhausted(const QELCdrStream& stream) {
    const std::size_t padding = (stream.origin - stream.position) % 4;
    return QELCdrStream_remaining(&stream) <= padding;
}

bool decode_long(void* value, QELCdrStream& stream) {
    DDS_Long number = 0;
    if (QELCdrStream_deserializeLong(&stream, &number) == 0) {
        return false;
    }
    store(value, number);
    return true;
}

bool decode_enumeration(void* value, const TypeTable& table, QELCdrStream& stream) {
    DDS_Long number = 0;
    if (QELCdrStream_deserializeLong(&stream, &number) == 0) {
        return false;
    }
    if (!table.has_enumerator(number)) {
        stream.rejected = 1;
        return false;
    }
    store(value, number);
    return true;
}

bool decode_words(const TypeTable& table, void* record, QELCdrStream& stream) {
    for (const Member& member : table.members()) {
        void* value = field(record, member);
        if (member.kind == Kind::Long ? !decode_long(value, stream)
                                      : !decode_enumeration(value, *member.type, stream)) {
            return false;
        }
    }
    return true;
}

bool decode_array(void* array, const Member& member, QELCdrStream& stream) {
    for (std::size_t i = 0; i < member.bound; ++i) {
        if (!decode_words(*member.type, array_element(array, member, i), stream)) {
            return false;
        }
    }
    return true;
}

/** Decodes into the elements that the sequence has; it never grows. */
bool decode_sequence(void* sequence, const Member& member, QELCdrStream& stream) {
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
        if (element == nullptr || !decode_words(*member.type, element, stream)) {
            return false;
        }
    }
    return PEXASequence_set_length(static_cast<PEXASequence*>(sequence), member.element, count) !=
           DDS_BOOLEAN_FALSE;
}

bool decode_string(const void* string, const Member& member, QELCdrStream& stream) {
    auto* text = load<char*>(string);
    return text != nullptr && QELCdrStream_deserializeString(&stream, text, member.bound) != 0;
}

bool decode_value(void* value, const Member& member, QELCdrStream& stream) {
    switch (member.kind) {
        case Kind::Long:
            return decode_long(value, stream);
        case Kind::Enumeration:
            return decode_enumeration(value, *member.type, stream);
        case Kind::String:
            return decode_string(value, member, stream);
        case Kind::Structure:
            return decode(*member.type, value, stream, Selection::All);
        case Kind::Array:
            return decode_array(value, member, stream);
        case Kind::Sequence:
            return decode_sequence(value, member, stream);
    }
    return false;
}

bool decode_member(const TypeTable& table, void* record, QELCdrStream& stream,
                   const QELCdrParameterHeader& header, Selection selection) {
    if (header.isIgnored != 0) {
        return true;
    }
    if (header.id >= table.row_count) {
        return header.mustUnderstand == 0;
    }
    const Member& member = table.rows[header.id];
    if (!selects(selection, member)) {
        return true;
    }
    const MemberWindow window(stream, header);
    return decode_value(field(record, member), member, stream);
}

/** Calls `take` with the header of each member up to the end of the list. */
template <typename Take>
bool for_each_header(QELCdrStream& stream, Take take) {
    while (!is_exhausted(stream)) {
        QELCdrParameterHeader header;
        if (QELCdrStream_deserializeParameterHeader(&stream, &header) == 0) {
            return false;
        }
        if (header.isListEnd != 0) {
            return true;
        }
        if (!take(header) || QELCdrStream_moveToNextParameterHeader(&stream, &header) == 0) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool decode(const TypeTable& table, void* record, QELCdrStream& stream, Selection selection) {
    if (table.category == Category::Enumeration) {
        return decode_enumeration(record, table, stream);
    }
    if (!table.is_mutable()) {
        return decode_words(table, record, stream);
    }
    return for_each_header(stream, [&](const QELCdrParameterHeader& header) {
        return decode_member(table, record, stream, header, selection);
    });
}

bool skip(const TypeTable& table, QELCdrStream& stream) {
    if (table.is_mutable()) {
        return for_each_header(stream, [](const QELCdrParameterHeader&) { return true; });
    }
    const std::size_t words = table.category == Category::Enumeration ? 1 : table.row_count;
    return QELCdrStream_alignForRead(&stream, 4) != 0 &&
           QELCdrStream_skipBytes(&stream, 4 * words) != 0;
}

}  // namespace orvane::types
