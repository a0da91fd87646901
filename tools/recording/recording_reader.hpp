/// @file recording_reader.hpp
/// @brief Reads a recording from its file.
#pragma once

#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "tools/recording/event_decoder.hpp"
#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// A place in a recording that could not be read: "log.jsonl:7: no member "time", expected one".
/// What is whole before and behind it is read all the same.
struct ReadingProblem {
    std::string text;
};

using ReadResult = std::variant<RecordedEvent, ReadingProblem>;

class RecordingReader {
public:
    /// @param grows the file is still being written, so that its end is no end
    /// @param error the errno when the result is null
    static std::unique_ptr<RecordingReader> open(const std::string& path, bool grows, int& error);
    RecordingReader(const RecordingReader&) = delete;
    RecordingReader& operator=(const RecordingReader&) = delete;
    ~RecordingReader();

    /// @return nothing at the end of the file. A file that grows may give more later.
    std::optional<ReadResult> next();

    const std::string& path() const { return path_; }

    /// Bytes whose events have been given, or will be without reading on.
    std::uint64_t position() const;
    /// Bytes that the file had when it was opened.
    std::uint64_t size() const { return size_; }
    /// When the file was written last, by the clock of the file system.
    timespec last_write() const;

private:
    RecordingReader(std::string path, int descriptor, bool grows);
    bool feed(std::string_view bytes);
    ReadResult problem(const Damage& damage) const;

    std::string path_;
    int descriptor_;
    bool grows_;
    std::uint64_t read_ = 0;  ///< bytes
    std::uint64_t size_ = 0;
    bool is_over_ = false;
    bool is_at_end_ = false;
    std::unique_ptr<EventDecoder> decoder_;  ///< null until the format is known
};

}  // namespace orvane::tools
