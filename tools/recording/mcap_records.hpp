/// @file mcap_records.hpp
/// @brief The parts of an MCAP file (https://mcap.dev): how records are told apart, and how their
/// members are written and read.
///
/// A record is its opcode, the length of its content in eight bytes, and the content. Numbers are
/// little endian. A text has its length in four bytes in front, and so has a list of pairs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvane::tools {

inline constexpr std::string_view mcap_magic{"\x89MCAP0\r\n", 8};

enum class McapOpcode : std::uint8_t {
    invalid = 0x00,
    header = 0x01,
    footer = 0x02,
    schema = 0x03,
    channel = 0x04,
    message = 0x05,
    chunk = 0x06,
    message_index = 0x07,
    chunk_index = 0x08,
    statistics = 0x0B,
    summary_offset = 0x0E,
    data_end = 0x0F,
};

/// The bytes of a record before its content.
inline constexpr std::size_t mcap_prefix_size = 9;

/// The bytes of a message before its payload: its channel, its sequence number and two times.
inline constexpr std::size_t mcap_message_head_size = 2 + 4 + 8 + 8;

template <typename Number>
void append_number(std::string& bytes, Number number) {
    std::array<char, sizeof(Number)> little_endian;
    for (std::size_t byte = 0; byte < sizeof(Number); ++byte) {
        little_endian[byte] =
            static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * byte) & 0xFFU);
    }
    bytes.append(little_endian.data(), little_endian.size());
}

inline void append_text(std::string& bytes, std::string_view text) {
    append_number(bytes, static_cast<std::uint32_t>(text.size()));
    bytes += text;
}

/// @param size of the content, which follows
inline void append_prefix(std::string& bytes, McapOpcode opcode, std::size_t size) {
    append_number(bytes, static_cast<std::uint8_t>(opcode));
    append_number(bytes, std::uint64_t{size});
}

inline void append_record(std::string& bytes, McapOpcode opcode, std::string_view content) {
    append_prefix(bytes, opcode, content.size());
    bytes += content;
}

/// Reads members one after the other. Once bytes are missing, all that follows is zero or empty.
class McapContent {
public:
    explicit McapContent(std::string_view bytes) : rest_(bytes) {}

    template <typename Number>
    Number number() {
        std::uint64_t number = 0;
        const std::string_view bytes = take(sizeof(Number));
        for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
            number |= std::uint64_t{static_cast<unsigned char>(bytes[byte])} << (8 * byte);
        }
        return static_cast<Number>(number);
    }

    std::string_view text() { return take(number<std::uint32_t>()); }

    std::string_view take(std::uint64_t size) {
        if (size > rest_.size()) {
            is_whole_ = false;
            rest_ = {};
            return {};
        }
        const std::string_view bytes = rest_.substr(0, static_cast<std::size_t>(size));
        rest_.remove_prefix(bytes.size());
        return bytes;
    }

    std::string_view rest() const { return rest_; }

    /// Whether no bytes have been missing.
    bool is_whole() const { return is_whole_; }

private:
    std::string_view rest_;
    bool is_whole_ = true;
};

}  // namespace orvane::tools
