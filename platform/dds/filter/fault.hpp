/// @file content_filter_fault.hpp
/// @brief What is wrong with a filter expression or one of its parameters, and where.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <span>
#include <string_view>

#include "platform/dds/filter/sql_lexer.hpp"

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
[[nodiscard]] std::span<char> begin_fault(FilterFault& fault, const FilterPlace& place);

/// Fills in a fault; its text is cut when it is too long.
/// @param format what is wrong, as printf takes it
template <typename... Arguments>
void set_fault(FilterFault& fault, const FilterPlace& place, const char* format,
               Arguments... arguments) {
    const std::span<char> rest = begin_fault(fault, place);
    if constexpr (sizeof...(Arguments) == 0) {
        std::snprintf(rest.data(), rest.size(), "%s", format);
    } else {
        std::snprintf(rest.data(), rest.size(), format, arguments...);
    }
}

/// Fills in a fault: a token that is invalid or does not belong where it is.
/// @param parameter the parameter that the token is from, or -1
/// @param expected what should be there instead
void set_unexpected(FilterFault& fault, const SqlToken& token, int parameter, const char* expected);

/// Most characters that a fault quotes of an expression.
[[nodiscard]] int quotation_length(std::string_view text);

}  // namespace pexa::dds
