/// @file json_lines_decoder.hpp
/// @brief Events from lines of JSON.
#pragma once

#include "tools/recording/event_decoder.hpp"

namespace orvane::tools {

class JsonLinesDecoder : public EventDecoder {
public:
    std::optional<DecodedEvent> next() override;

private:
    std::optional<std::string_view> next_line();
    Damage damage(std::string text) const { return {line_, std::move(text)}; }

    std::uint64_t line_ = 0;
    std::size_t searched_ = 0;  ///< bytes of the rest that are no newline
    bool is_oversize_ = false;  ///< the beginning of the line was given up
    bool is_cut_ = false;       ///< the line has no newline
};

}  // namespace orvane::tools
