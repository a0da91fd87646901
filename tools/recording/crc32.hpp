/// @file crc32.hpp
/// @brief The cyclic redundancy check of 32 bits that zip and PNG use, too.
#pragma once

#include <cstdint>
#include <string_view>

namespace orvane::tools {

/// @param before the check of the bytes before these
std::uint32_t crc32(std::string_view bytes, std::uint32_t before = 0);

}  // namespace orvane::tools
