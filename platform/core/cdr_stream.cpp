#include "pexa/cdr_stream.h"

#include <cstring>

#include "core/cdr_cursor.hpp"

using pexa::core::Cursor;

namespace {

constexpr DDS_UnsignedShort last_encapsulation_id = QEL_CDR_ENCAPSULATION_ID_PL_CDR_LE;

void enter_encapsulation(QELCdrStream* self, DDS_UnsignedShort id) {
    self->encapsulationId = id;
    self->littleEndian = id % 2;
    self->origin = self->position;
}

// Reads the length of a string and checks everything about it. The cursor ends at the characters.
bool read_string_size(Cursor& cursor, DDS_UnsignedLong maximum_length, DDS_UnsignedLong& size) {
    if (!cursor.read(size) || size == 0 || size - 1 > maximum_length || size > cursor.remaining()) {
        return false;
    }
    // The only NUL is the last character.
    const void* end = std::memchr(cursor.bytes(), '\0', size);
    return end == cursor.bytes() + (size - 1);
}

}  // namespace

void QELCdrStream_init(QELCdrStream* self, char* buffer, size_t size) {
    *self = QELCdrStream{};
    self->buffer = buffer;
    self->size = size;
    self->littleEndian = 1;
}

void QELCdrStream_reset(QELCdrStream* self) {
    self->position = 0;
    self->origin = 0;
    self->extendedHeaders = 0;
    self->headerFormDecided = 0;
    self->rejected = 0;
}

size_t QELCdrStream_remaining(const QELCdrStream* self) {
    return self->size - self->position;
}

QELBool QELCdrStream_alignForWrite(QELCdrStream* self, size_t alignment) {
    Cursor cursor(*self);
    return cursor.pad(alignment) && cursor.commit();
}

QELBool QELCdrStream_alignForRead(QELCdrStream* self, size_t alignment) {
    Cursor cursor(*self);
    return cursor.align(alignment) && cursor.commit();
}

QELBool QELCdrStream_serializeEncapsulation(QELCdrStream* self, DDS_UnsignedShort id) {
    Cursor cursor(*self);
    if (id > last_encapsulation_id || !cursor.pad(2) || !cursor.write_big_endian(id) ||
        !cursor.write_big_endian(self->encapsulationOptions) || !cursor.commit()) {
        return 0;
    }
    enter_encapsulation(self, id);
    return 1;
}

QELBool QELCdrStream_deserializeEncapsulation(QELCdrStream* self) {
    Cursor cursor(*self);
    DDS_UnsignedShort id = 0;
    DDS_UnsignedShort options = 0;
    if (!cursor.align(2) || !cursor.read_big_endian(id) || id > last_encapsulation_id ||
        !cursor.read_big_endian(options) || !cursor.commit()) {
        return 0;
    }
    self->encapsulationOptions = options;
    enter_encapsulation(self, id);
    return 1;
}

QELBool QELCdrStream_serializeUnsignedShort(QELCdrStream* self, DDS_UnsignedShort value) {
    Cursor cursor(*self);
    return cursor.write(value) && cursor.commit();
}

QELBool QELCdrStream_deserializeUnsignedShort(QELCdrStream* self, DDS_UnsignedShort* value) {
    Cursor cursor(*self);
    return cursor.read(*value) && cursor.commit();
}

QELBool QELCdrStream_serializeLong(QELCdrStream* self, DDS_Long value) {
    Cursor cursor(*self);
    return cursor.write(static_cast<DDS_UnsignedLong>(value)) && cursor.commit();
}

QELBool QELCdrStream_deserializeLong(QELCdrStream* self, DDS_Long* value) {
    Cursor cursor(*self);
    DDS_UnsignedLong bits = 0;
    if (!cursor.read(bits)) {
        return 0;
    }
    *value = static_cast<DDS_Long>(bits);
    return cursor.commit();
}

QELBool QELCdrStream_serializeString(QELCdrStream* self, const char* text,
                                     DDS_UnsignedLong maximumLength) {
    if (text == nullptr) {
        return 0;
    }
    const size_t length = strnlen(text, size_t{maximumLength} + 1);
    // With the greatest bound the terminator would not fit into the encoded length.
    if (length > maximumLength || length == UINT32_MAX) {
        return 0;
    }
    Cursor cursor(*self);
    return cursor.write(static_cast<DDS_UnsignedLong>(length + 1)) &&
           cursor.write_bytes(text, length + 1) && cursor.commit();
}

QELBool QELCdrStream_deserializeString(QELCdrStream* self, char* text,
                                       DDS_UnsignedLong maximumLength) {
    Cursor cursor(*self);
    DDS_UnsignedLong size = 0;
    if (!read_string_size(cursor, maximumLength, size)) {
        return 0;
    }
    std::memcpy(text, cursor.bytes(), size);
    return cursor.skip(size) && cursor.commit();
}

QELBool QELCdrStream_skipString(QELCdrStream* self, DDS_UnsignedLong maximumLength) {
    Cursor cursor(*self);
    DDS_UnsignedLong size = 0;
    return read_string_size(cursor, maximumLength, size) && cursor.skip(size) && cursor.commit();
}

QELBool QELCdrStream_skipBytes(QELCdrStream* self, size_t count) {
    Cursor cursor(*self);
    return cursor.skip(count) && cursor.commit();
}
