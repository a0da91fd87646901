#include "tools/recording/zstd_frame.hpp"

#include <zstd.h>

#include <algorithm>

namespace orvane::tools {

void ZstdCompressor::Deleter::operator()(ZSTD_CCtx_s* context) const {
    ZSTD_freeCCtx(context);
}

std::optional<std::string_view> ZstdCompressor::compress(std::string_view bytes) {
    // Log messages become no smaller with the next levels, and take longer.
    constexpr int level = 1;
    if (!context_) {
        context_.reset(ZSTD_createCCtx());
    }
    if (!context_) {
        return std::nullopt;
    }
    frame_.resize(std::max(frame_.size(), ZSTD_compressBound(bytes.size())));
    const std::size_t size = ZSTD_compressCCtx(context_.get(), frame_.data(), frame_.size(),
                                               bytes.data(), bytes.size(), level);
    if (ZSTD_isError(size) != 0) {
        return std::nullopt;
    }
    return std::string_view{frame_}.substr(0, size);
}

std::optional<std::string> decompress(std::string_view frame, std::size_t size) {
    std::string bytes(size, '\0');
    const bool is_whole =
        ZSTD_decompress(bytes.data(), bytes.size(), frame.data(), frame.size()) == size;
    return is_whole ? std::optional{std::move(bytes)} : std::nullopt;
}

}  // namespace orvane::tools
