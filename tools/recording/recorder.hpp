/// @file recorder.hpp
/// @brief Writes events to files on a thread of its own.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tools/recording/recording_files.hpp"

namespace orvane::tools {

/// The thread that hands events over never waits for the disk. While nothing can be written, events
/// wait, and what has no room then is counted. When there is room again, recording goes on with an
/// event of the type "gap" that says how many are missing.
class Recorder {
public:
    /// Tells the user of a failure and of what is missing. It is called on the recorder's thread.
    using Report = std::function<void(const std::string& text)>;

    /// @param error the errno when the result is null: the first file could not be created
    static std::unique_ptr<Recorder> start(const RecordingOptions& options, Report report,
                                           int& error, CreateFile create = create_file);
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder();

    void add(std::vector<RecordedEvent> events);

    /// Writes what waits, and ends the file. A disk that cannot be written now is not waited for.
    /// @return the number of events that are not in the recording
    std::uint64_t stop();

private:
    Recorder(RecordingFiles files, const RecordingOptions& options, Report report);
    void run();
    bool has_work() const;
    void wait(std::unique_lock<std::mutex>& lock);
    /// Takes events from the queue. @return whether there are any
    bool fill_batch();
    void write_queue(std::unique_lock<std::mutex>& lock);
    void add_gap(std::uint64_t events);
    void report_failure();

    RecordingFiles files_;
    std::size_t queue_limit_;
    Report report_;
    int reported_error_ = 0;
    std::deque<RecordedEvent> batch_;  ///< taken from the queue, few at a time
    std::uint64_t missing_ = 0;        ///< events that were refused, as far as the thread knows

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<RecordedEvent> queue_;
    std::size_t queue_size_ = 0;  ///< bytes
    std::uint64_t refused_ = 0;   ///< events without room
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace orvane::tools
