/**
 * @file cdr_cursor.hpp
 * @brief The encoding rules of cdr_stream.h, for C++ sources that cannot afford a call per value.
 */
#ifndef PEXA_CDR_CURSOR_HPP
#define PEXA_CDR_CURSOR_HPP

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "pexa/cdr_stream.h"
#include "platform/internal/success.hpp"

namespace pexa {

inline uint16_t swap_bytes(uint16_t value) {
    return __builtin_bswap16(value);
}
inline uint32_t swap_bytes(uint32_t value) {
    return __builtin_bswap32(value);
}
inline int32_t swap_bytes(int32_t value) {
    return static_cast<int32_t>(swap_bytes(static_cast<uint32_t>(value)));
}

/// Reads and writes CDR values in the buffer of a stream. The cursor has a position of its own, and
/// commit() moves the stream there. A step fails at the end of the buffer or at an invalid value,
/// and leaves the cursor where it was. CdrParameterCursor adds the members of mutable types.
///
/// The compiler keeps a local cursor in registers as long as no function gets its address.
/// Therefore the larger steps are forced inline, and functions that are not inlined get the stream:
/// see on_stream().
class CdrCursor {
public:
    explicit CdrCursor(QELCdrStream& stream) : CdrCursor(stream, stream.position) {}
    /// @param position not behind the buffer's end.
    CdrCursor(QELCdrStream& stream, size_t position)
        : stream_(&stream),
          buffer_(stream.buffer),
          position_(position),
          size_(stream.size),
          origin_(stream.origin),
          little_endian_(stream.littleEndian != 0) {}

    size_t remaining() const { return size_ - position_; }

    /// Moves the stream here. @return true, so that it can end a chain of steps.
    bool commit() const {
        stream_->position = position_;
        return true;
    }

    /// Sets the stream's rejection mark.
    void reject() const { stream_->rejected = 1; }

    /// Runs an operation on the stream, with the cursor's position and end, and continues where the
    /// operation stopped.
    template <class Operation>
    Success on_stream(Operation operation) {
        const size_t size = stream_->size;
        stream_->size = size_;
        stream_->position = position_;
        const Success done = operation(*stream_);
        position_ = stream_->position;
        stream_->size = size;
        return done;
    }

    /// Moves the end of the buffer to a position within it.
    /// @return the end until now, which the caller sets again.
    size_t set_end(size_t position) {
        const size_t end = size_;
        size_ = position;
        return end;
    }

    Success skip(size_t count) {
        if (count > remaining()) {
            return false;
        }
        position_ += count;
        return true;
    }

    /// Passes over the padding before a value.
    Success align(size_t alignment) { return skip(padding(alignment)); }

    /// Writes the padding before a value.
    Success pad(size_t alignment) {
        const size_t gap = padding(alignment);
        if (gap > remaining()) {
            return false;
        }
        for (size_t i = 0; i < gap; ++i) {
            bytes()[i] = '\0';
        }
        position_ += gap;
        return true;
    }

    /// Writes a number behind its padding.
    template <class Number>
    Success write(Number value) {
        if (!pad_before(sizeof value, sizeof value)) {
            return false;
        }
        put(value);
        return true;
    }

    /// Reads a number behind its padding.
    template <class Number>
    [[gnu::always_inline]] Success read(Number& value, size_t alignment = sizeof(Number)) {
        const size_t gap = padding(alignment);
        if (gap + sizeof value > remaining()) {
            return false;
        }
        position_ += gap;
        memcpy(&value, bytes(), sizeof value);
        position_ += sizeof value;
        if (is_swapped()) [[unlikely]] {
            value = swap_bytes(value);
        }
        return true;
    }

    /// Writes CDR longs, which need no alignment in memory.
    Success write_longs(const void* longs, size_t count) {
        if (count > 0 && !pad_before(sizeof(uint32_t), count * sizeof(uint32_t))) {
            return false;
        }
        put_longs(longs, count);
        return true;
    }

    /// @param size set to the bytes of the characters and the NUL.
    /// @return whether the text keeps to its bound.
    static Success measure_string(const char* text, DDS_UnsignedLong maximum_length,
                                  DDS_UnsignedLong& size) {
        const size_t length = strnlen(text, size_t{maximum_length} + 1);
        size = static_cast<DDS_UnsignedLong>(length + 1);
        // With the greatest bound the terminator would not fit into the encoded length.
        return length <= maximum_length && length != UINT32_MAX;
    }

    /// @param size as measured.
    /// @see QELCdrStream_serializeString
    Success write_string(const char* text, DDS_UnsignedLong size) {
        if (!pad_before(sizeof size, sizeof size + size)) {
            return false;
        }
        put_string(text, size);
        return true;
    }

    /// @see QELCdrStream_deserializeString
    [[gnu::always_inline]] Success read_string(char* text, DDS_UnsignedLong maximum_length) {
        CdrCursor next = *this;
        DDS_UnsignedLong size = 0;
        if (!next.read_string_size(maximum_length, size)) {
            return false;
        }
        copy_text(text, next.bytes(), size);
        position_ = next.position_ + size;
        return true;
    }

    /// @see QELCdrStream_skipString
    Success skip_string(DDS_UnsignedLong maximum_length) {
        CdrCursor next = *this;
        DDS_UnsignedLong size = 0;
        if (!next.read_string_size(maximum_length, size)) {
            return false;
        }
        position_ = next.position_ + size;
        return true;
    }

    /// @see QELCdrStream_serializeEncapsulation. Moves the stream, too.
    Success write_encapsulation(DDS_UnsignedShort id) {
        if (id > QEL_CDR_ENCAPSULATION_ID_PL_CDR_LE ||
            !pad_before(sizeof id, QEL_CDR_ENCAPSULATION_HEADER_SIZE)) {
            return false;
        }
        little_endian_ = false;
        put(uint32_t{id} << 16 | stream_->encapsulationOptions);
        enter_encapsulation(id);
        return true;
    }

    /// @see QELCdrStream_deserializeEncapsulation. Moves the stream, too.
    Success read_encapsulation() {
        CdrCursor next = *this;
        next.little_endian_ = false;
        uint32_t header = 0;
        if (!next.read(header, sizeof(DDS_UnsignedShort)) ||
            header >> 16 > QEL_CDR_ENCAPSULATION_ID_PL_CDR_LE) {
            return false;
        }
        stream_->encapsulationOptions = static_cast<DDS_UnsignedShort>(header & UINT16_MAX);
        position_ = next.position_;
        enter_encapsulation(static_cast<DDS_UnsignedShort>(header >> 16));
        return true;
    }

    /// @return whether numbers need no swapping.
    bool is_native() const { return !is_swapped(); }

protected:
    static constexpr bool native_is_little = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

    char* bytes() const { return buffer_ + position_; }
    bool is_swapped() const { return little_endian_ != native_is_little; }
    size_t padding(size_t alignment) const { return (origin_ - position_) & (alignment - 1); }

    /// Writes the padding before a value, if there is room for both.
    /// @param size of the value, at least its alignment.
    [[gnu::always_inline]] Success pad_before(size_t alignment, size_t size) {
        const size_t gap = padding(alignment);
        if (gap + size > remaining()) {
            return false;
        }
        // A loop over the gap would be mispredicted. The value overwrites the zeros that are too
        // many.
        memset(bytes(), 0, alignment);
        position_ += gap;
        return true;
    }

    /// @name Steps behind a successful pad_before(): there is room, and the cursor is aligned.
    /// @{
    template <class Number>
    void put(Number value) {
        if (is_swapped()) [[unlikely]] {
            value = swap_bytes(value);
        }
        memcpy(bytes(), &value, sizeof value);
        position_ += sizeof value;
    }

    [[gnu::always_inline]] void put_longs(const void* longs, size_t count) {
        const char* next = static_cast<const char*>(longs);
        for (size_t i = 0; i < count; ++i, next += sizeof(uint32_t)) {
            uint32_t value;
            memcpy(&value, next, sizeof value);
            put(value);
        }
    }

    [[gnu::always_inline]] void put_string(const char* text, DDS_UnsignedLong size) {
        put(size);
        copy_text(bytes(), text, size);
        position_ += size;
    }
    /// @}

    /// Not memcpy: with a known bound GCC uses a string instruction, which is slower than the call.
    static void copy_text(char* to, const char* from, size_t size) { memmove(to, from, size); }

    /// Reads the length of a string and checks everything about it. Ends at the characters.
    [[gnu::always_inline]] Success read_string_size(DDS_UnsignedLong maximum_length,
                                                    DDS_UnsignedLong& size) {
        if (!read(size) || size == 0 || size - 1 > maximum_length || size > remaining()) {
            return false;
        }
        // The only NUL is the last character.
        return memchr(bytes(), '\0', size) == bytes() + (size - 1);
    }

    void enter_encapsulation(DDS_UnsignedShort id) {
        origin_ = position_;
        little_endian_ = id % 2 != 0;
        stream_->position = position_;
        stream_->origin = position_;
        stream_->littleEndian = id % 2;
        stream_->encapsulationId = id;
    }

    QELCdrStream* stream_;
    char* buffer_;
    size_t position_;
    size_t size_;
    size_t origin_;
    bool little_endian_;
};

}  // namespace pexa

#endif
