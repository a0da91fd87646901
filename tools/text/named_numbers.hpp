/// @file named_numbers.hpp
/// @brief Numbers with names: log levels and the enumerations of the administration.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace orvane::tools {

struct NamedNumber {
    std::string_view name;
    std::int32_t number;
};
using NamedNumbers = std::span<const NamedNumber>;

/// @param text a name in any case
std::optional<std::int32_t> number_of_name(NamedNumbers numbers, std::string_view text);

/// @param text a name in any case, or the decimal digits of one of the numbers
std::optional<std::int32_t> number_of_text(NamedNumbers numbers, std::string_view text);

/// @return an empty text for a number without name
std::string_view name_of_number(NamedNumbers numbers, std::int32_t number);

/// All names, for messages to the user: "DEFAULT, TIMESTAMPED, …".
std::string names_of(NamedNumbers numbers);

/// Reads digits of the base. @return nothing for a text with anything else in it
template <typename Number>
std::optional<Number> parse_number(std::string_view text, int base) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return number;
}

}  // namespace orvane::tools
