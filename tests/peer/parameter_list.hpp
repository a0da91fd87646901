/// @file parameter_list.hpp
/// @brief Parameter-list CDR as another product writes and reads it, down to the single byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace foreign {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::size_t encapsulation_size = 4;
/// Its id, and the flag that it must be understood.
inline constexpr std::uint16_t list_end = 0x3F02 | 0x4000;

/// How far the byte at @p index of a number is shifted: little-endian when @p encapsulation is odd.
inline std::size_t shift_of(std::size_t index, std::size_t size, std::uint16_t encapsulation) {
    return 8 * (encapsulation % 2 == 1 ? index : size - 1 - index);
}

/// Every value has four bytes, so that nothing needs padding.
class ParameterListWriter {
public:
    explicit ParameterListWriter(std::uint16_t encapsulation)
        : bytes{static_cast<std::uint8_t>(encapsulation >> 8),
                static_cast<std::uint8_t>(encapsulation), 0, 0},
          encapsulation_{encapsulation} {}

    void put_long(long value) { put(static_cast<std::uint32_t>(value), 4); }

    template <typename PutValue>
    void put_member(std::uint32_t id, PutValue put_value) {
        put(id, 2);
        put(0, 2);
        const std::size_t start = bytes.size();
        put_value();
        overwrite(start - 2, static_cast<std::uint32_t>(bytes.size() - start), 2);
    }

    void put_list_end() {
        put(list_end, 2);
        put(0, 2);
    }

    Bytes bytes;

private:
    void put(std::uint32_t value, std::size_t size) {
        bytes.resize(bytes.size() + size);
        overwrite(bytes.size() - size, value, size);
    }

    void overwrite(std::size_t position, std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            bytes[position + i] =
                static_cast<std::uint8_t>(value >> shift_of(i, size, encapsulation_));
        }
    }

    std::uint16_t encapsulation_;
};

/// Reads strictly: whatever is not exactly as expected throws std::runtime_error.
class ParameterListReader {
public:
    explicit ParameterListReader(const Bytes& bytes) : bytes_{bytes} {
        require(bytes.size() >= encapsulation_size, "no encapsulation header");
        encapsulation = static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
        require(encapsulation == 2 || encapsulation == 3, "not a parameter list");
    }

    std::int32_t get_long() {
        align();
        return static_cast<std::int32_t>(get(4));
    }

    std::string get_string() {
        align();
        const std::uint32_t size = get(4);
        require(size > 0 && size <= bytes_.size() - position_, "a text of a wrong length");
        const auto start = bytes_.begin() + static_cast<std::ptrdiff_t>(position_);
        position_ += size;
        const std::string text{start, start + size};
        require(text.find('\0') == size - 1, "a text without its end or with an early one");
        return text.substr(0, size - 1);
    }

    /// Calls @p get_value with the id of each member up to the list end, behind which there may be
    /// nothing but padding.
    template <typename GetValue>
    void get_members(GetValue get_value) {
        for (;;) {
            align();
            const std::uint32_t id = get(2);
            const std::uint32_t length = get(2);
            if (id == list_end) {
                require(length == 0 && bytes_.size() - position_ < 4, "more than the list end");
                return;
            }
            const std::size_t start = position_;
            get_value(id);
            require(position_ - start == length, "a member whose length is not that of its value");
        }
    }

    std::uint16_t encapsulation = 0;

private:
    static void require(bool condition, const char* what) {
        if (!condition) {
            throw std::runtime_error{what};
        }
    }

    void align() { position_ = (position_ + 3) / 4 * 4; }

    std::uint32_t get(std::size_t size) {
        require(position_ + size <= bytes_.size(), "ends too early");
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value |= std::uint32_t{bytes_[position_++]} << shift_of(i, size, encapsulation);
        }
        return value;
    }

    const Bytes& bytes_;
    std::size_t position_ = encapsulation_size;
};

}  // namespace foreign
