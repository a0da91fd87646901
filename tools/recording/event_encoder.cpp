#include "tools/recording/event_encoder.hpp"

#include <filesystem>

#include "tools/recording/mcap_encoder.hpp"
#include "tools/text/json_line.hpp"

namespace orvane::tools {
namespace {

/// A line for each event.
class JsonLinesEncoder : public EventEncoder {
public:
    void add(const RecordedEvent& event) override { lines_ += json_line(event); }
    std::size_t size() const override { return lines_.size(); }
    std::string_view block() override { return lines_; }
    void block_is_written() override { lines_.clear(); }
    std::string head() const override { return {}; }
    void begin_file() override {}
    std::string end() const override { return {}; }

private:
    std::string lines_;
};

}  // namespace

std::unique_ptr<EventEncoder> EventEncoder::make(RecordingFormat format) {
    if (format == RecordingFormat::mcap) {
        return std::make_unique<McapEncoder>();
    }
    return std::make_unique<JsonLinesEncoder>();
}

std::optional<RecordingFormat> format_of_file(const std::string& file) {
    const std::string ending = std::filesystem::path{file}.extension().string();
    if (ending == ".mcap") {
        return RecordingFormat::mcap;
    }
    return ending == ".jsonl" || ending == ".json" ? std::optional{RecordingFormat::json_lines}
                                                   : std::nullopt;
}

}  // namespace orvane::tools
