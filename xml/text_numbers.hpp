/// @file text_numbers.hpp
/// @brief Numbers and log levels as texts.
#pragma once

#include <optional>

#include "pexa/base.h"
#include "xml/parse_report.hpp"

namespace orvane::xml {

inline constexpr const char* integer_expected = "integer expected in XML text";

/// How the digits of a number are read.
enum class Base : int { Decimal = 10, FromPrefix = 0 };

/// The number at the beginning of a text, cut to 32 bits; nothing without digits. May set errno.
[[nodiscard]] std::optional<DDS_Long> leading_number(const char* text, Base base) noexcept;

/// A number of @p minimum or more with its base taken from the prefix; nothing after a report. A
/// range error is what errno says, also if it said so before.
[[nodiscard]] std::optional<DDS_Long> positive_number(const char* text, DDS_Long minimum,
                                                      const ParseReport& report);

/// @return the name of a level in a configuration, or NULL.
[[nodiscard]] const char* level_name(DDS_Long level) noexcept;

}  // namespace orvane::xml
