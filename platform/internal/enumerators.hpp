/// @file enumerators.hpp
/// @brief The enumerators of a C enumeration at compile time: how many there are, and their names.
///
/// The compiler is asked how it writes each number: an enumerator by its name, another number as a
/// cast. So an enumerator that is added to its enumeration is in every table that is made from it.
#ifndef PEXA_ENUMERATORS_HPP
#define PEXA_ENUMERATORS_HPP

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

namespace pexa {

namespace enumerators_details {

/// Numbers from here on are not looked at.
inline constexpr std::size_t limit = 64;

/// @return the value as the compiler writes it.
template <auto Value>
consteval std::string_view spelling() {
    // GCC: "… [with auto Value = NAME; std::string_view = …]", clang: "… [Value = NAME]".
    std::string_view text = __PRETTY_FUNCTION__;
    constexpr std::string_view before = "Value = ";
    text.remove_prefix(text.find(before) + before.size());
    return text.substr(0, text.find_first_of(";]"));
}

/// Not a cast: a number outside the enumeration's range is no error here.
template <typename Enumeration>
consteval Enumeration with_number(std::size_t number) {
    return std::bit_cast<Enumeration>(static_cast<std::underlying_type_t<Enumeration>>(number));
}

/// @return the name of the enumerator with that number, or an empty text.
template <typename Enumeration, std::size_t Number>
consteval std::string_view name_of() {
    constexpr std::string_view text = spelling<with_number<Enumeration>(Number)>();
    const bool is_number = text.front() == '(' || (text.front() >= '0' && text.front() <= '9');
    return is_number ? std::string_view() : text;
}

template <typename Enumeration, std::size_t... Number>
consteval std::size_t count(std::index_sequence<Number...> /*numbers*/) {
    return (std::size_t{0} + ... + (name_of<Enumeration, Number>().empty() ? 0U : 1U));
}

/// The name with its terminator.
template <typename Enumeration, std::size_t Number>
inline constexpr auto name = [] {
    constexpr std::string_view text = name_of<Enumeration, Number>();
    static_assert(!text.empty(), "the enumerators of this enumeration do not count from 0");
    std::array<char, text.size() + 1> characters{};
    std::copy(text.begin(), text.end(), characters.begin());
    return characters;
}();

template <typename Enumeration, std::size_t... Number>
consteval std::array<const char*, sizeof...(Number)> names(
    std::index_sequence<Number...> /*numbers*/) {
    return {name<Enumeration, Number>.data()...};
}

}  // namespace enumerators_details

template <typename Enumeration>
inline constexpr std::size_t enumerator_count =
    enumerators_details::count<Enumeration>(std::make_index_sequence<enumerators_details::limit>());

/// The names of the enumerators, whose numbers are their positions. Does not compile for other
/// numbers.
template <typename Enumeration>
inline constexpr std::array<const char*, enumerator_count<Enumeration>> enumerator_names =
    enumerators_details::names<Enumeration>(
        std::make_index_sequence<enumerator_count<Enumeration>>());

}  // namespace pexa

#endif
