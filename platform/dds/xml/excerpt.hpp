/// @file excerpt.hpp
/// @brief A part of a document in a message.
#pragma once

#include <string>
#include <string_view>

namespace pexa::dds::xml {

/// @return the text, or its beginning if it is long.
inline std::string excerpt(std::string_view text) {
    constexpr std::size_t longest = 60;
    return text.size() <= longest ? std::string(text)
                                  : std::string(text.substr(0, longest)) + "...";
}

}  // namespace pexa::dds::xml
