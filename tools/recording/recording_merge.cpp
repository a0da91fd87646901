#include "tools/recording/recording_merge.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <variant>

namespace orvane::tools {

Status RecordingMerge::open(const std::string& path, bool grows) {
    int error = 0;
    auto reader = RecordingReader::open(path, grows, error);
    if (!reader) {
        tell(fmt::format("{}: could not open: {}", path, std::strerror(error)));
        return Status::failed;
    }
    sources_.push_back({std::move(reader), std::nullopt});
    return Status::ok;
}

std::optional<RecordedEvent> RecordingMerge::next() {
    Source* earliest = nullptr;
    for (Source& source : sources_) {
        fill(source);
        if (source.first &&
            (earliest == nullptr || time_of(*source.first) < time_of(*earliest->first))) {
            earliest = &source;
        }
    }
    return earliest == nullptr ? std::nullopt : std::exchange(earliest->first, std::nullopt);
}

void RecordingMerge::fill(Source& source) {
    while (!source.first) {
        auto read = source.reader->next();
        if (!read) {
            return;
        }
        if (const auto* problem = std::get_if<ReadingProblem>(&*read)) {
            tell(problem->text);
        } else {
            source.first = std::get<RecordedEvent>(*std::move(read));
        }
    }
}

void RecordingMerge::tell(const std::string& problem) {
    has_problems_ = true;
    report_(problem);
}

}  // namespace orvane::tools
