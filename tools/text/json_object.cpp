#include "tools/text/json_object.hpp"

#include <fmt/compile.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "tools/text/utf8.hpp"

namespace orvane::tools {
namespace {

constexpr auto is_escaped = [](char character) {
    return character == '"' || character == '\\' || !is_printable_ascii(character);
};

void append_unit(std::string& text, std::uint32_t utf16) {
    fmt::format_to(std::back_inserter(text), FMT_COMPILE("\\u{:04x}"), utf16);
}

void append_escaped(std::string& text, char32_t character) {
    constexpr char32_t replacement = 0xFFFD;
    constexpr char32_t first_of_two_units = 0x10000;
    switch (character) {
        case '"':
        case '\\':
            text += '\\';
            text += static_cast<char>(character);
            break;
        case '\b':
            text += "\\b";
            break;
        case '\f':
            text += "\\f";
            break;
        case '\n':
            text += "\\n";
            break;
        case '\r':
            text += "\\r";
            break;
        case '\t':
            text += "\\t";
            break;
        case not_a_character:
            append_unit(text, replacement);
            break;
        default:
            if (character < first_of_two_units) {
                append_unit(text, character);
            } else {
                const std::uint32_t rest = character - first_of_two_units;
                append_unit(text, 0xD800U + (rest >> 10U));
                append_unit(text, 0xDC00U + (rest & 0x3FFU));
            }
    }
}

}  // namespace

void JsonObject::add(std::string_view name, std::string_view value) {
    add_name(name);
    text_ += '"';
    while (!value.empty()) {
        const auto escaped = std::find_if(value.begin(), value.end(), is_escaped);
        text_.append(value.begin(), escaped);
        value.remove_prefix(static_cast<std::size_t>(escaped - value.begin()));
        if (!value.empty()) {
            const Decoded next = decode_utf8(value);
            append_escaped(text_, next.character);
            value.remove_prefix(next.size);
        }
    }
    text_ += '"';
}

void JsonObject::add_name(std::string_view name) {
    text_ += text_.empty() ? '{' : ',';
    text_ += '"';
    text_ += name;
    text_ += "\":";
}

}  // namespace orvane::tools
