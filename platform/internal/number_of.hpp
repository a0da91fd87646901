/// @file number_of.hpp
/// @brief Enumerations of the C interfaces as numbers.
#pragma once

#include <bit>

namespace pexa {

/// Reads an enumeration of a C interface as a number: a caller may have stored any.
template <typename Enumeration>
constexpr int number_of(const Enumeration& value) noexcept {
    return std::bit_cast<int>(value);
}

}  // namespace pexa
