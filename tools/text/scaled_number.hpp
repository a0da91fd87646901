/// @file scaled_number.hpp
/// @brief Numbers with a unit behind them, as users write them: "64k", "10m".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane::tools {

/// Bytes: "1000", or with k, M or G for 2^10, 2^20 or 2^30.
/// @return nothing for any other text, for 0 and for what is too large
std::optional<std::uint64_t> parse_size(std::string_view text);

/// Seconds: "90", or with s, m or h for seconds, minutes or hours.
/// @return nothing for any other text, for 0 and for more than a year
std::optional<std::uint64_t> parse_duration(std::string_view text);

}  // namespace orvane::tools
