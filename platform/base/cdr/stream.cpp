#include "platform/internal/cdr_cursor.hpp"

using pexa::CdrCursor;

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
    CdrCursor cursor(*self);
    return cursor.pad(alignment) && cursor.commit();
}

QELBool QELCdrStream_alignForRead(QELCdrStream* self, size_t alignment) {
    CdrCursor cursor(*self);
    return cursor.align(alignment) && cursor.commit();
}

QELBool QELCdrStream_serializeEncapsulation(QELCdrStream* self, DDS_UnsignedShort id) {
    return CdrCursor(*self).write_encapsulation(id);
}

QELBool QELCdrStream_deserializeEncapsulation(QELCdrStream* self) {
    return CdrCursor(*self).read_encapsulation();
}

QELBool QELCdrStream_serializeUnsignedShort(QELCdrStream* self, DDS_UnsignedShort value) {
    CdrCursor cursor(*self);
    return cursor.write(value) && cursor.commit();
}

QELBool QELCdrStream_deserializeUnsignedShort(QELCdrStream* self, DDS_UnsignedShort* value) {
    CdrCursor cursor(*self);
    return cursor.read(*value) && cursor.commit();
}

QELBool QELCdrStream_serializeLong(QELCdrStream* self, DDS_Long value) {
    CdrCursor cursor(*self);
    return cursor.write(static_cast<DDS_UnsignedLong>(value)) && cursor.commit();
}

QELBool QELCdrStream_deserializeLong(QELCdrStream* self, DDS_Long* value) {
    CdrCursor cursor(*self);
    return cursor.read(*value) && cursor.commit();
}

QELBool QELCdrStream_serializeString(QELCdrStream* self, const char* text,
                                     DDS_UnsignedLong maximumLength) {
    CdrCursor cursor(*self);
    DDS_UnsignedLong size = 0;
    return text != nullptr && CdrCursor::measure_string(text, maximumLength, size) &&
           cursor.write_string(text, size) && cursor.commit();
}

QELBool QELCdrStream_deserializeString(QELCdrStream* self, char* text,
                                       DDS_UnsignedLong maximumLength) {
    CdrCursor cursor(*self);
    return cursor.read_string(text, maximumLength) && cursor.commit();
}

QELBool QELCdrStream_skipString(QELCdrStream* self, DDS_UnsignedLong maximumLength) {
    CdrCursor cursor(*self);
    return cursor.skip_string(maximumLength) && cursor.commit();
}

QELBool QELCdrStream_skipBytes(QELCdrStream* self, size_t count) {
    CdrCursor cursor(*self);
    return cursor.skip(count) && cursor.commit();
}
