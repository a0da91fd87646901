#include "tools/text/display_text.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "tools/text/utf8.hpp"

namespace orvane::tools {
namespace {

constexpr CharacterRange hidden_ranges[] = {
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
    return contains(hidden_ranges, character);
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

std::string displayable(std::string_view text) {
    std::string line;
    append_displayable(line, text);
    return line;
}

void append_displayable(std::string& line, std::string_view text) {
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    while (true) {
        const std::string_view plain = printable_ascii(text);
        line += plain;
        text.remove_prefix(plain.size());
        if (text.empty()) {
            break;
        }
        const Decoded next = decode_utf8(text);
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
