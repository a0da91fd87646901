#include "tools/text/utf8.hpp"

#include <algorithm>
#include <cstdint>

namespace orvane::tools {
namespace {

std::uint8_t byte_at(std::string_view text, std::size_t index) {
    return static_cast<std::uint8_t>(text[index]);
}

}  // namespace

Decoded decode_utf8(std::string_view text) {
    const std::uint8_t lead = byte_at(text, 0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    // Smallest character that needs so many bytes: a smaller one is an overlong form.
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < size) {
        return {};
    }
    char32_t character = lead & (0xFFU >> (size + 1));
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte_at(text, i) & 0xC0U) != 0x80U) {
            return {};
        }
        character = (character << 6U) | (byte_at(text, i) & 0x3FU);
    }
    const bool is_surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < smallest[size] || character > 0x10FFFF || is_surrogate) {
        return {};
    }
    return {character, size};
}

std::string_view printable_ascii(std::string_view text) {
    return {text.begin(), std::find_if_not(text.begin(), text.end(),
                                           [](char byte) { return is_printable_ascii(byte); })};
}

std::string well_formed(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Decoded next = decode_utf8(text);
        result += next.character == not_a_character ? "\xEF\xBF\xBD" : text.substr(0, next.size);
        text.remove_prefix(next.size);
    }
    return result;
}

bool contains(std::span<const CharacterRange> ranges, char32_t character) {
    return std::any_of(ranges.begin(), ranges.end(), [&](const CharacterRange& range) {
        return range.first <= character && character <= range.last;
    });
}

}  // namespace orvane::tools
