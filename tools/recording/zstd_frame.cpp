#include "tools/recording/zstd_frame.hpp"

#include <zstd.h>

namespace orvane::tools {

std::optional<std::string> compress(std::string_view bytes) {
    constexpr int fast_level = 3;
    std::string frame(ZSTD_compressBound(bytes.size()), '\0');
    const std::size_t size =
        ZSTD_compress(frame.data(), frame.size(), bytes.data(), bytes.size(), fast_level);
    if (ZSTD_isError(size) != 0) {
        return std::nullopt;
    }
    frame.resize(size);
    return frame;
}

std::optional<std::string> decompress(std::string_view frame, std::size_t size) {
    std::string bytes(size, '\0');
    const bool is_whole =
        ZSTD_decompress(bytes.data(), bytes.size(), frame.data(), frame.size()) == size;
    return is_whole ? std::optional{std::move(bytes)} : std::nullopt;
}

}  // namespace orvane::tools
