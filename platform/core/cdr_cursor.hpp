#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pexa/cdr_stream.h"

namespace pexa::core {

inline uint16_t swap_bytes(uint16_t value) {
    return __builtin_bswap16(value);
}
inline uint32_t swap_bytes(uint32_t value) {
    return __builtin_bswap32(value);
}

/// A position of its own over a stream's buffer: the stream itself moves at commit() only, so that
/// an operation that fails half way leaves it where it was. Every step checks the buffer's end and
/// returns false beyond it.
class Cursor {
public:
    explicit Cursor(QELCdrStream& stream) : Cursor(stream, stream.position) {}
    /// @param position not behind the buffer's end.
    Cursor(QELCdrStream& stream, size_t position)
        : stream_(stream),
          position_(position),
          swapped_((stream.littleEndian != 0) != (std::endian::native == std::endian::little)) {}

    [[nodiscard]] size_t position() const { return position_; }
    [[nodiscard]] size_t remaining() const { return stream_.size - position_; }
    [[nodiscard]] char* bytes() const { return stream_.buffer + position_; }

    /// Moves the stream here.
    QELBool commit() {
        stream_.position = position_;
        return 1;
    }

    [[nodiscard]] bool skip(size_t count) {
        if (count > remaining()) {
            return false;
        }
        position_ += count;
        return true;
    }

    /// Passes over the padding before a value.
    [[nodiscard]] bool align(size_t alignment) { return skip(padding(alignment)); }

    /// Writes the padding before a value.
    [[nodiscard]] bool pad(size_t alignment) {
        static constexpr char zeros[8] = {};
        return write_bytes(zeros, padding(alignment));
    }

    [[nodiscard]] bool write_bytes(const void* source, size_t count) {
        if (count > remaining()) {
            return false;
        }
        if (count > 0) {
            std::memcpy(bytes(), source, count);
        }
        position_ += count;
        return true;
    }

    template <class Number>
    [[nodiscard]] bool write(Number value) {
        return pad(sizeof value) && write_unaligned(value);
    }

    template <class Number>
    [[nodiscard]] bool write_unaligned(Number value) {
        const Number stored = swapped_ ? swap_bytes(value) : value;
        return write_bytes(&stored, sizeof stored);
    }

    template <class Number>
    [[nodiscard]] bool read(Number& value) {
        Number stored;
        if (!align(sizeof stored) || sizeof stored > remaining()) {
            return false;
        }
        std::memcpy(&stored, bytes(), sizeof stored);
        value = swapped_ ? swap_bytes(stored) : stored;
        position_ += sizeof stored;
        return true;
    }

    [[nodiscard]] bool write_big_endian(uint16_t value) {
        swapped_ = std::endian::native == std::endian::little;
        return write(value);
    }

    [[nodiscard]] bool read_big_endian(uint16_t& value) {
        swapped_ = std::endian::native == std::endian::little;
        return read(value);
    }

private:
    [[nodiscard]] size_t padding(size_t alignment) const {
        return (stream_.origin - position_) & (alignment - 1);
    }

    QELCdrStream& stream_;
    size_t position_;
    bool swapped_;
};

}  // namespace pexa::core
