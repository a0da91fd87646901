#include "tools/recording/recording_merge.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>
#include <variant>

namespace orvane::tools {

Status RecordingMerge::open(const std::string& path, bool grows) {
    int error = 0;
    auto reader = RecordingReader::open(path, grows, error);
    if (!reader) {
        tell_unopened(path, error);
        return Status::failed;
    }
    static_cast<void>(is_new(path));
    sources_.push_back({std::move(reader), grows, std::nullopt, std::nullopt});
    return Status::ok;
}

bool RecordingMerge::is_asked_for(const RecordedEvent& event) const {
    const std::int64_t time = time_of(event);
    const bool names_loggers = std::holds_alternative<LoggerEvent>(event);
    return !span_.is_behind(time, *begin_) && (names_loggers || !span_.is_before(time, *begin_));
}

double RecordingMerge::progress() const {
    double read = 0;
    double size = 0;
    for (const Source& source : sources_) {
        read += static_cast<double>(source.reader->position());
        size += static_cast<double>(source.reader->size());
    }
    return size > read ? read / size : 1;
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
    if (earliest == nullptr) {
        return std::nullopt;
    }
    begin_ = begin_.value_or(time_of(*earliest->first));
    return std::exchange(earliest->first, std::nullopt);
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

bool RecordingMerge::go_on() {
    bool does = false;
    for (Source& source : sources_) {
        does = (source.grows && !source.first && go_on(source)) || does;
    }
    return does;
}

bool RecordingMerge::go_on(Source& source) {
    const std::string path = source.reader->path();
    if (!source.next) {
        source.next = next_file(path, source.reader->last_write());
        // The present file has all of its events since before there was the next one, but they may
        // have come since it was read.
        return source.next.has_value();
    }
    const NextFile next = *std::exchange(source.next, std::nullopt);
    int error = 0;
    auto reader = RecordingReader::open(next.path, true, error);
    if (!reader) {
        // If it has been deleted, another one will be the next.
        source.grows = error == ENOENT;
        if (!source.grows) {
            tell_unopened(next.path, error);
        }
        return false;
    }
    if (!is_new(next.path)) {
        source.grows = false;
        return false;
    }
    if (!next.is_adjacent) {
        tell(fmt::format("{}: a file between {} and this one has been deleted", next.path, path));
    }
    source.reader = std::move(reader);
    return true;
}

bool RecordingMerge::is_new(const std::string& path) {
    std::error_code unknown;
    return opened_.insert(std::filesystem::weakly_canonical(path, unknown)).second;
}

void RecordingMerge::tell_unopened(const std::string& path, int error) {
    tell(fmt::format("{}: could not open: {}", path, std::strerror(error)));
}

void RecordingMerge::tell(const std::string& problem) {
    has_problems_ = true;
    report_(problem);
}

}  // namespace orvane::tools
