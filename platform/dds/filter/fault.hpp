/// @file fault.hpp
/// @brief The fault of a filter expression or of one of its parameters, and its place.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <span>
#include <string_view>

#include "platform/dds/filter/sql_lexer.hpp"
#include "platform/internal/success.hpp"

namespace pexa::dds {

struct FilterFault {
    /// The character at fault, from 1; 0 when the fault has no place.
    std::size_t position = 0;
    /// The parameter that @ref position counts in, or -1 for the expression itself.
    int parameter = -1;
    /// Place and fault in words.
    std::array<char, 256> text{};
};

/// A place in an expression or parameter, characters counted from 0.
struct FilterPlace {
    std::size_t position = 0;
    int parameter = -1;
};

/// Stores the place of a fault, and begins its text with it.
/// @return room for the rest of the text
std::span<char> begin_fault(FilterFault& fault, const FilterPlace& place);

/// Fills in a fault; its text is cut when it is too long.
/// @param format the text, as printf takes it
/// @return no success
template <typename... Arguments>
Success set_fault(FilterFault& fault, const FilterPlace& place, const char* format,
                  Arguments... arguments) {
    const std::span<char> rest = begin_fault(fault, place);
    if constexpr (sizeof...(Arguments) == 0) {
        std::snprintf(rest.data(), rest.size(), "%s", format);
    } else {
        std::snprintf(rest.data(), rest.size(), format, arguments...);
    }
    return false;
}

/// Fills in the fault of a token that is invalid or does not belong where it stands.
/// @param parameter the parameter that contains the token, or -1
/// @param expected a description of a token that belongs there
/// @return no success
Success set_unexpected(FilterFault& fault, const SqlToken& token, int parameter,
                       const char* expected);

/// @return how many characters of a text a fault quotes.
int quotation_length(std::string_view text);

}  // namespace pexa::dds
