/// @file zstd_frame.hpp
/// @brief Bytes compressed as a frame of Zstandard (RFC 8878).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::tools {

/// @return nothing when there is no memory for it
std::optional<std::string> compress(std::string_view bytes);

/// @param size that the bytes have when they are decompressed; the caller limits it
/// @return nothing when they are damaged or have another size
std::optional<std::string> decompress(std::string_view frame, std::size_t size);

}  // namespace orvane::tools
