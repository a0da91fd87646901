/// @file recording_files.hpp
/// @brief The files of a recording: written in blocks, and begun anew by size and by time.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "tools/recording/event_encoder.hpp"
#include "tools/recording/output_file.hpp"

namespace orvane::tools {

struct RecordingOptions {
    std::string path;  ///< the first file; the others are named by @ref numbered_path
    RecordingFormat format = RecordingFormat::json_lines;
    /// The next file begins when the present one has so many bytes, or is so old, and there are
    /// events for it.
    std::optional<std::uint64_t> rotate_size{};
    std::optional<std::chrono::milliseconds> rotate_time{};
    /// So many of this recording's files stay, with the present one; the oldest are deleted.
    std::optional<std::size_t> keep{};
    /// Events that wait for the disk are limited to so many bytes.
    std::size_t queue_size = std::size_t{64} << 20U;
};

/// Each file tells which loggers there are, so that it can be read without the others.
///
/// Not for several threads at once. Times are those of the caller's steady clock.
class RecordingFiles {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit RecordingFiles(const RecordingOptions& options, CreateFile create = create_file);

    /// Creates the first file. @return 0, or the errno of the failure
    int open(Time now);

    /// Takes an event, and writes when there are enough. Must not be called while @ref is_stuck.
    void add(const RecordedEvent& event, Time now);

    /// Writes what has waited for a second, or could not be written a second ago.
    void tick(Time now);

    /// Writes what waits.
    void flush(Time now);

    /// Writes what waits, and the end of the file. What cannot be written is lost.
    void close(Time now);

    /// When @ref tick has something to do, if nothing else happens.
    std::optional<Time> due() const { return due_; }

    /// Whether events wait that could not be written.
    bool is_stuck() const { return error_ != 0 && due_.has_value(); }

    /// The errno of the last attempt to write, or 0.
    int error() const { return error_; }

    /// The present file.
    const std::string& path() const { return kept_.back(); }

    /// Events that @ref close could not write.
    std::uint64_t unwritten() const { return waiting_; }

private:
    void note_logger(const RecordedEvent& event);
    void add_present_loggers(std::int64_t nanoseconds);
    void write_block(Time now);
    int begin_file(const std::string& path, Time now);
    int begin_next_file(Time now);
    void delete_oldest();
    bool is_time_for_next_file(Time now) const;

    RecordingOptions options_;
    CreateFile create_;
    std::unique_ptr<EventEncoder> encoder_;
    std::unique_ptr<OutputFile> file_;
    std::map<Application, LoggerEvent> loggers_;  ///< that are alive, with their last State
    std::deque<std::string> kept_;
    std::uint64_t number_ = 0;  ///< of the last numbered path
    std::uint64_t size_ = 0;    ///< of the present file
    bool has_events_ = false;   ///< the present file
    Time opened_;
    std::uint64_t waiting_ = 0;  ///< events in the encoder, but for gaps
    std::optional<Time> due_;
    int error_ = 0;
};

}  // namespace orvane::tools
