#pragma once

#include <cstddef>
#include <string_view>

#include "tools/recording/event_decoder.hpp"

namespace orvane::tools {

/// Decodes a whole file that comes in pieces. Calls @p take with each event and each damage.
template <typename Take>
void decode_pieces(std::string_view bytes, RecordingFormat format, std::size_t piece, Take take) {
    const auto decoder = EventDecoder::make(format);
    const auto decode = [&] {
        while (const auto decoded = decoder->next()) {
            std::visit(take, *decoded);
        }
    };
    for (std::size_t i = 0; i < bytes.size(); i += piece) {
        decoder->feed(bytes.substr(i, piece));
        decode();
    }
    decoder->finish();
    decode();
}

}  // namespace orvane::tools
