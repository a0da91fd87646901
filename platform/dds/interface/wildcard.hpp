/// @file wildcard.hpp
/// @brief Comparing a text with a pattern.
#pragma once

#include <string_view>

namespace pexa::dds {

/// The characters of a pattern that stand for others.
struct Wildcards {
    char any_characters;
    char one_character;
};

/// @return whether the pattern describes the whole text.
bool matches(std::string_view text, std::string_view pattern, Wildcards wildcards);

}  // namespace pexa::dds
