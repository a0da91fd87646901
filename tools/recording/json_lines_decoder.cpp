#include "tools/recording/json_lines_decoder.hpp"

#include <fmt/format.h>

#include <utility>

#include "tools/text/json_event.hpp"

namespace orvane::tools {

std::optional<DecodedEvent> JsonLinesDecoder::next() {
    while (const auto line = next_line()) {
        if (std::exchange(is_oversize_, false)) {
            return damage(fmt::format("expected a line of at most {} bytes", largest_json_event));
        }
        if (line->find_first_not_of(" \t\r") == std::string_view::npos) {
            continue;
        }
        std::string problem;
        if (auto event = parse_json_event(*line, problem)) {
            return *std::move(event);
        }
        return damage(is_cut_ ? problem + "; the file ends within the line" : problem);
    }
    return std::nullopt;
}

std::optional<std::string_view> JsonLinesDecoder::next_line() {
    const std::string_view bytes = rest();
    std::size_t end = bytes.find('\n', searched_);
    if (end == std::string_view::npos) {
        searched_ = bytes.size();
        if (!is_finished()) {
            if (bytes.size() > largest_json_event) {
                is_oversize_ = true;
                use(bytes.size());
                searched_ = 0;
            }
            return std::nullopt;
        }
        if (bytes.empty() && !is_oversize_) {
            return std::nullopt;
        }
        is_cut_ = true;
        end = bytes.size();
    }
    ++line_;
    searched_ = 0;
    use(std::min(end + 1, bytes.size()));
    is_oversize_ = is_oversize_ || end > largest_json_event;
    return bytes.substr(0, end);
}

}  // namespace orvane::tools
