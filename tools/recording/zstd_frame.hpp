/// @file zstd_frame.hpp
/// @brief Bytes compressed as a frame of Zstandard (RFC 8878).
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct ZSTD_CCtx_s;

namespace orvane::tools {

/// Compresses with memory that it keeps from one frame to the next.
class ZstdCompressor {
public:
    /// @return the frame, until the next call; nothing when there is no memory for it
    std::optional<std::string_view> compress(std::string_view bytes);

private:
    struct Deleter {
        void operator()(ZSTD_CCtx_s* context) const;
    };
    std::unique_ptr<ZSTD_CCtx_s, Deleter> context_;
    std::string frame_;
};

/// @param size that the bytes have when they are decompressed; the caller limits it
/// @return nothing when they are damaged or have another size
std::optional<std::string> decompress(std::string_view frame, std::size_t size);

}  // namespace orvane::tools
