#include "tools/recording/event_decoder.hpp"

#include "tools/recording/json_lines_decoder.hpp"
#include "tools/recording/mcap_decoder.hpp"

namespace orvane::tools {

std::unique_ptr<EventDecoder> EventDecoder::make(RecordingFormat format) {
    if (format == RecordingFormat::mcap) {
        return std::make_unique<McapDecoder>();
    }
    return std::make_unique<JsonLinesDecoder>();
}

void EventDecoder::feed(std::string_view bytes) {
    buffer_.erase(0, used_);
    used_ = 0;
    buffer_ += bytes;
}

}  // namespace orvane::tools
