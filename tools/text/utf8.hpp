/// @file utf8.hpp
/// @brief Characters from UTF-8 (RFC 3629).
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace orvane::tools {

inline constexpr char32_t not_a_character = 0xFFFFFFFF;

struct Decoded {
    char32_t character = not_a_character;
    std::size_t size = 1;  ///< bytes of it
};

/// The character at the front of @p text, which is not empty; malformed text is one byte that is no
/// character.
Decoded decode_utf8(std::string_view text);

/// Whether a byte is a character by itself that takes one cell of a terminal.
constexpr bool is_printable_ascii(char byte) {
    return byte >= ' ' && byte <= '~';
}

/// The bytes at the front for which @ref is_printable_ascii holds.
std::string_view printable_ascii(std::string_view text);

/// The text with U+FFFD for each byte that is not UTF-8.
std::string well_formed(std::string_view text);

/// Characters of Unicode that follow each other.
struct CharacterRange {
    char32_t first;
    char32_t last;
};

bool contains(std::span<const CharacterRange> ranges, char32_t character);

}  // namespace orvane::tools
