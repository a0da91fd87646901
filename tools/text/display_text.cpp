#include "tools/text/display_text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace orvane::tools {
namespace {

constexpr char32_t not_a_character = 0xFFFFFFFF;

struct Decoded {
    char32_t character = not_a_character;
    std::size_t size = 1;
};

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range hidden_ranges[] = {
    {0x00, 0x1F},      // C0 controls
    {0x7F, 0x9F},      // delete, C1 controls
    {0x61C, 0x61C},    // Arabic letter mark
    {0x200B, 0x200F},  // zero-width characters and directional marks
    {0x2028, 0x202E},  // line and paragraph separator, directional embeddings and overrides
    {0x2060, 0x206F},  // word joiner, invisible operators, directional isolates
    {0xFEFF, 0xFEFF},  // byte order mark
    {0xFFF9, 0xFFFB},  // interlinear annotation
};

bool is_hidden(char32_t character) {
    return std::any_of(std::begin(hidden_ranges), std::end(hidden_ranges), [&](const Range& range) {
        return range.first <= character && character <= range.last;
    });
}

std::uint8_t byte_at(std::string_view text, std::size_t index) {
    return static_cast<std::uint8_t>(text[index]);
}

/// The character at the front of @p text; malformed text is one byte that is no character.
Decoded decode(std::string_view text) {
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

void append_escaped(std::string& line, std::string_view bytes) {
    constexpr std::string_view hex = "0123456789abcdef";
    for (const char byte : bytes) {
        switch (byte) {
            case '\n':
                line += "\\n";
                break;
            case '\r':
                line += "\\r";
                break;
            case '\t':
                line += "\\t";
                break;
            default: {
                const auto value = static_cast<std::uint8_t>(byte);
                line += "\\x";
                line += hex[value >> 4U];
                line += hex[value & 0xFU];
            }
        }
    }
}

}  // namespace

void append_displayable(std::string& line, std::string_view text) {
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    while (!text.empty()) {
        const Decoded next = decode(text);
        const std::string_view bytes = text.substr(0, next.size);
        if (next.character == not_a_character || is_hidden(next.character)) {
            append_escaped(line, bytes);
        } else {
            line += bytes;
        }
        text.remove_prefix(next.size);
    }
}

}  // namespace orvane::tools
