/// @file text_numbers.hpp
/// @brief Texts that are numbers.
#pragma once

#include <optional>

#include "pexa/base.h"
#include "xml/parse_report.hpp"

namespace orvane::xml {

inline constexpr const char* integer_expected = "integer expected in XML text";

/// How the digits of a number are read.
enum class Base : int { Decimal = 10, FromPrefix = 0 };

/// The number at the beginning of a text, cut to 32 bits; nothing without digits. May set errno.
std::optional<DDS_Long> leading_number(const char* text, Base base) noexcept;

/// A number of @p minimum or more with its base taken from the prefix; nothing after a report. When
/// errno holds ERANGE, also from before the call, the number counts as out of bounds.
std::optional<DDS_Long> positive_number(const char* text, DDS_Long minimum,
                                        const ParseReport& report);

/// @param size unchanged after a refusal
void read_queue_size(DDS_Long& size, const ElementText& element);

}  // namespace orvane::xml
