/// @file truth_value.hpp
/// @brief How truth values are written in XML.
#pragma once

#include <optional>
#include <string_view>

namespace pexa::dds::xml {

inline constexpr const char* truth_value_expected = "expected true, false, yes, no, 1 or 0";

/// @param text white space around the value and case do not count
std::optional<bool> to_truth_value(std::string_view text);

}  // namespace pexa::dds::xml
