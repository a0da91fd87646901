#include "tools/text/cells.hpp"

#include <algorithm>
#include <iterator>
#include <optional>

#include "tools/text/utf8.hpp"

namespace orvane::tools {
namespace {

constexpr CharacterRange combining[] = {
    {0x0300, 0x036F}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},
    {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
};

constexpr CharacterRange wide[] = {
    {0x1100, 0x115F},    // Hangul Jamo
    {0x2E80, 0x303E},    // radicals, punctuation
    {0x3041, 0xA4CF},    // Kana to Yi
    {0xAC00, 0xD7A3},    // Hangul
    {0xF900, 0xFAFF},    // compatibility ideographs
    {0xFE30, 0xFE6F},    // compatibility forms
    {0xFF00, 0xFF60},    // full-width forms
    {0xFFE0, 0xFFE6},    // full-width signs
    {0x1F300, 0x1F64F},  // pictographs
    {0x1F680, 0x1F6FF},  // transport
    {0x1F900, 0x1F9FF},  // more pictographs
    {0x20000, 0x3FFFD},  // ideographs of the supplementary planes
};

/// A character or an escape sequence.
struct Glyph {
    std::size_t size;   ///< bytes
    std::size_t width;  ///< cells
};

/// @param text not empty
Glyph first_glyph(std::string_view text) {
    if (text.starts_with("\x1b[")) {
        return {std::min(text.find('m'), text.size() - 1) + 1, 0};
    }
    const Decoded next = decode_utf8(text);
    if (contains(combining, next.character)) {
        return {next.size, 0};
    }
    return {next.size, contains(wide, next.character) ? std::size_t{2} : std::size_t{1}};
}

/// How much of a line comes before a break, and how much that and the space there are.
struct Piece {
    std::size_t size;
    std::size_t consumed;
};

/// @param solid cells at the front without a place for a break
Piece first_piece(std::string_view line, std::size_t width, std::size_t solid) {
    std::optional<std::size_t> space;
    std::size_t cells = 0;
    for (std::size_t i = 0; i < line.size();) {
        const Glyph glyph = first_glyph(line.substr(i));
        const bool is_space = line[i] == ' ' && cells > solid;
        if (is_space && cells <= width) {
            space = i;
        }
        cells += glyph.width;
        if (cells > width && i > 0) {
            return space ? Piece{*space, *space + 1} : Piece{i, i};
        }
        i += glyph.size;
    }
    return {line.size(), line.size()};
}

}  // namespace

std::size_t width_of(std::string_view text) {
    std::size_t cells = 0;
    while (true) {
        const std::size_t plain = printable_ascii(text).size();
        cells += plain;
        text.remove_prefix(plain);
        if (text.empty()) {
            return cells;
        }
        const Glyph glyph = first_glyph(text);
        cells += glyph.width;
        text.remove_prefix(glyph.size);
    }
}

std::string padded(std::string text, std::size_t width) {
    const std::size_t cells = width_of(text);
    text.append(width - std::min(cells, width), ' ');
    return text;
}

std::string shortened(std::string_view text, std::size_t width) {
    if (width_of(text) <= width) {
        return std::string{text};
    }
    std::size_t size = 0;
    std::size_t room = width - 1;
    for (Glyph next = first_glyph(text); next.width <= room;
         next = first_glyph(text.substr(size))) {
        room -= next.width;
        size += next.size;
    }
    return std::string{text.substr(0, size)} + "…";
}

std::string wrapped(std::string_view line, std::size_t width, std::size_t indent) {
    constexpr std::size_t least_room = 24;
    constexpr std::size_t narrow_indent = 4;
    if (width < least_room) {
        return std::string{line};
    }
    const std::size_t hanging = indent + least_room <= width ? indent : narrow_indent;
    Piece piece = first_piece(line, width, hanging);
    std::string text{line.substr(0, piece.size)};
    while (piece.consumed < line.size()) {
        line.remove_prefix(piece.consumed);
        piece = first_piece(line, width - hanging, 0);
        text += '\n';
        text.append(hanging, ' ');
        text += line.substr(0, piece.size);
    }
    return text;
}

}  // namespace orvane::tools
