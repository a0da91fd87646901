/// @file white_space.hpp
/// @brief White space in XML.
#pragma once

#include <string_view>

namespace pexa::dds::xml {

inline constexpr std::string_view white_space = " \t\r\n";

/// @return the text without the white space at both ends.
constexpr std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(white_space);
    if (first == std::string_view::npos) {
        return text.substr(text.size());
    }
    return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

}  // namespace pexa::dds::xml
