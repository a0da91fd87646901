#include "core/cdr_cursor.hpp"
#include "pexa/cdr_stream.h"

using pexa::core::Cursor;

namespace {

// The short form's id field: two flags above 14 bits of id.
constexpr DDS_UnsignedShort short_must_understand = 0x4000;
constexpr DDS_UnsignedShort short_id_mask = 0x3FFF;
// Above this the short form's ids have meanings of their own.
constexpr DDS_UnsignedLong last_short_id = 0x3F00;

// The extended form's id field: four flags above 28 bits of id.
constexpr DDS_UnsignedLong extended_must_understand = 0x40000000;
constexpr DDS_UnsignedLong extended_id_mask = 0x0FFFFFFF;
// Bytes of the extended id and length, which the short length field of that form counts.
constexpr DDS_UnsignedShort extended_size = 8;

bool write_short_header(Cursor& cursor, DDS_UnsignedLong id, bool must_understand,
                        DDS_UnsignedShort length) {
    const DDS_UnsignedLong flag = must_understand ? short_must_understand : 0;
    return cursor.pad(4) && cursor.write(static_cast<DDS_UnsignedShort>(id | flag)) &&
           cursor.write(length);
}

bool write_extended_header(Cursor& cursor, DDS_UnsignedLong id, bool must_understand) {
    const DDS_UnsignedLong flag = must_understand ? extended_must_understand : 0;
    return write_short_header(cursor, QEL_CDR_PARAMETER_ID_EXTENDED, true, extended_size) &&
           cursor.write(id | flag) && cursor.write(DDS_UnsignedLong{0});
}

// Replaces a short header, of which the cursor has passed the 4 bytes, by what follows it.
bool read_extended_part(Cursor& cursor, QELCdrParameterHeader& header) {
    const size_t announced = header.length;
    DDS_UnsignedLong id = 0;
    if (announced < extended_size || announced > cursor.remaining() || !cursor.read(id) ||
        !cursor.read(header.length)) {
        return false;
    }
    header.id = id & extended_id_mask;
    header.mustUnderstand = (id & extended_must_understand) != 0 ? 1 : 0;
    return cursor.skip(announced - extended_size);
}

bool read_header(Cursor& cursor, QELCdrParameterHeader& header) {
    DDS_UnsignedShort id = 0;
    DDS_UnsignedShort length = 0;
    if (!cursor.align(4) || !cursor.read(id) || !cursor.read(length)) {
        return false;
    }
    header.id = id & short_id_mask;
    header.length = length;
    header.mustUnderstand = (id & short_must_understand) != 0 ? 1 : 0;
    header.isListEnd = header.id == QEL_CDR_PARAMETER_ID_LIST_END ? 1 : 0;
    header.isIgnored = header.id == QEL_CDR_PARAMETER_ID_IGNORE ? 1 : 0;
    if (header.id == QEL_CDR_PARAMETER_ID_EXTENDED && !read_extended_part(cursor, header)) {
        return false;
    }
    header.valuePosition = cursor.position();
    return header.length <= cursor.remaining();
}

}  // namespace

QELBool QELCdrStream_serializeParameterHeader(QELCdrStream* self, QELCdrOpenParameter* parameter,
                                              QELBool extended, DDS_UnsignedLong id,
                                              QELBool mustUnderstand) {
    Cursor cursor(*self);
    const bool written =
        extended != 0
            ? id <= extended_id_mask && write_extended_header(cursor, id, mustUnderstand != 0)
            : id <= last_short_id && write_short_header(cursor, id, mustUnderstand != 0, 0);
    if (!written) {
        return 0;
    }
    const size_t length_size = extended != 0 ? sizeof(DDS_UnsignedLong) : sizeof(DDS_UnsignedShort);
    parameter->valuePosition = cursor.position();
    parameter->lengthPosition = cursor.position() - length_size;
    parameter->extended = extended;
    return cursor.commit();
}

QELBool QELCdrStream_serializeParameterLength(QELCdrStream* self,
                                              const QELCdrOpenParameter* parameter) {
    const size_t length = self->position - parameter->valuePosition;
    const size_t most = parameter->extended != 0 ? UINT32_MAX : UINT16_MAX;
    if (parameter->valuePosition > self->position || length > most ||
        parameter->lengthPosition > parameter->valuePosition) {
        return 0;
    }
    Cursor cursor(*self, parameter->lengthPosition);
    const bool written = parameter->extended != 0
                             ? cursor.write_unaligned(static_cast<DDS_UnsignedLong>(length))
                             : cursor.write_unaligned(static_cast<DDS_UnsignedShort>(length));
    return written ? 1 : 0;
}

QELBool QELCdrStream_serializeListEnd(QELCdrStream* self) {
    Cursor cursor(*self);
    return write_short_header(cursor, QEL_CDR_PARAMETER_ID_LIST_END, true, 0) && cursor.commit();
}

QELBool QELCdrStream_deserializeParameterHeader(QELCdrStream* self, QELCdrParameterHeader* header) {
    Cursor cursor(*self);
    return read_header(cursor, *header) && cursor.commit();
}

QELBool QELCdrStream_moveToNextParameterHeader(QELCdrStream* self,
                                               const QELCdrParameterHeader* header) {
    if (header->valuePosition > self->size || header->length > self->size - header->valuePosition) {
        return 0;
    }
    self->position = header->valuePosition + header->length;
    return 1;
}
