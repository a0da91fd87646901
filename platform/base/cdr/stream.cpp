#include "platform/base/cdr/stream.hpp"

#include "platform/base/cdr/step.hpp"

using pexa::CdrCursor;

namespace pexa::base {

void init_stream(QELCdrStream* stream, char* buffer, size_t size) {
    *stream = QELCdrStream{};
    stream->buffer = buffer;
    stream->size = size;
    stream->littleEndian = 1;
}

namespace {

void reset_stream(QELCdrStream* stream) {
    stream->position = 0;
    stream->origin = 0;
    stream->extendedHeaders = 0;
    stream->headerFormDecided = 0;
    stream->rejected = 0;
}

bool write_string(CdrCursor& cursor, const char* text, DDS_UnsignedLong maximum_length) {
    DDS_UnsignedLong size = 0;
    return text != nullptr && CdrCursor::measure_string(text, maximum_length, size) &&
           cursor.write_string(text, size);
}

}  // namespace

}  // namespace pexa::base

void QELCdrStream_init(QELCdrStream* self, char* buffer, size_t size) {
    pexa::base::init_stream(self, buffer, size);
}

void QELCdrStream_reset(QELCdrStream* self) {
    pexa::base::reset_stream(self);
}

size_t QELCdrStream_remaining(const QELCdrStream* self) {
    return self->size - self->position;
}

QELBool QELCdrStream_alignForWrite(QELCdrStream* self, size_t alignment) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) { return cursor.pad(alignment); });
}

QELBool QELCdrStream_alignForRead(QELCdrStream* self, size_t alignment) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) { return cursor.align(alignment); });
}

QELBool QELCdrStream_serializeEncapsulation(QELCdrStream* self, DDS_UnsignedShort id) {
    return CdrCursor(*self).write_encapsulation(id);
}

QELBool QELCdrStream_deserializeEncapsulation(QELCdrStream* self) {
    return CdrCursor(*self).read_encapsulation();
}

QELBool QELCdrStream_serializeUnsignedShort(QELCdrStream* self, DDS_UnsignedShort value) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) { return cursor.write(value); });
}

QELBool QELCdrStream_deserializeUnsignedShort(QELCdrStream* self, DDS_UnsignedShort* value) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) { return cursor.read(*value); });
}

QELBool QELCdrStream_serializeLong(QELCdrStream* self, DDS_Long value) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) {
        return cursor.write(static_cast<DDS_UnsignedLong>(value));
    });
}

QELBool QELCdrStream_deserializeLong(QELCdrStream* self, DDS_Long* value) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) { return cursor.read(*value); });
}

QELBool QELCdrStream_serializeString(QELCdrStream* self, const char* text,
                                     DDS_UnsignedLong maximumLength) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) {
        return pexa::base::write_string(cursor, text, maximumLength);
    });
}

QELBool QELCdrStream_deserializeString(QELCdrStream* self, char* text,
                                       DDS_UnsignedLong maximumLength) {
    return pexa::base::take_step(
        self, [&](CdrCursor& cursor) { return cursor.read_string(text, maximumLength); });
}

QELBool QELCdrStream_skipString(QELCdrStream* self, DDS_UnsignedLong maximumLength) {
    return pexa::base::take_step(
        self, [&](CdrCursor& cursor) { return cursor.skip_string(maximumLength); });
}

QELBool QELCdrStream_skipBytes(QELCdrStream* self, size_t count) {
    return pexa::base::take_step(self, [&](CdrCursor& cursor) { return cursor.skip(count); });
}
