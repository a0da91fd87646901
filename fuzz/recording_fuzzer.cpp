// A recording, in lines of JSON when it begins with a brace and else in MCAP. What it gives must be
// the same however the bytes come in, and an event must be the same when it is written and read
// once more.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/demand.hpp"
#include "tests/tools/decode_pieces.hpp"
#include "tools/text/json_event.hpp"
#include "tools/text/json_line.hpp"

namespace orvane::tools {
namespace {

void check_event(const RecordedEvent& event) {
    const std::string line = json_line(event);
    for (const std::string& text : {line, foxglove_json(event)}) {
        std::string problem;
        const auto again = parse_json_event(text, problem);
        demand(again && json_line(*again) == line);
    }
}

/// Keeps lines of events, and texts of damages.
struct Take {
    std::vector<std::string>& contents;

    void operator()(const RecordedEvent& event) const {
        check_event(event);
        contents.push_back(json_line(event));
    }
    void operator()(const Damage& damage) const {
        contents.push_back(std::to_string(damage.position) + damage.text);
    }
};

std::vector<std::string> read(std::string_view bytes, std::size_t piece) {
    std::vector<std::string> contents;
    decode_pieces(bytes,
                  bytes.starts_with('{') ? RecordingFormat::json_lines : RecordingFormat::mcap,
                  piece, Take{contents});
    return contents;
}

}  // namespace
}  // namespace orvane::tools

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes{reinterpret_cast<const char*>(data), size};
    using orvane::tools::read;
    constexpr std::size_t small_piece = 7;
    demand(read(bytes, small_piece) == read(bytes, size + 1));
    return 0;
}
