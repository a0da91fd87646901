/// @file recording_merge.hpp
/// @brief Several recordings as one, in the order of time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/recording/next_file.hpp"
#include "tools/recording/recording_reader.hpp"
#include "tools/records/recorded_event.hpp"
#include "tools/records/result.hpp"
#include "tools/records/time_span.hpp"

namespace orvane::tools {

/// The events of one file keep their order.
class RecordingMerge {
public:
    /// Tells the user what could not be read, and where.
    using Report = std::function<void(const std::string& text)>;

    explicit RecordingMerge(Report report, const TimeSpan& span = {})
        : report_(std::move(report)), span_(span) {}

    /// Adds a recording.
    /// @param grows it is still being written, so that its end is no end
    Status open(const std::string& path, bool grows);

    /// @return nothing at the end of all files; those that grow may give more later
    std::optional<RecordedEvent> next();

    /// Whether an event that was given belongs to the time that is asked for. So do changes of
    /// loggers before, so that who logs then is known.
    bool is_asked_for(const RecordedEvent& event) const;

    /// Goes on from files that grow, and that have been read to their ends, to the next files of
    /// their recordings. To be called when @ref next has given nothing.
    /// @return whether @ref next may give something
    bool go_on();

    /// How much of the files has been read, from 0 to 1.
    double progress() const;

    /// Whether something could not be read.
    bool has_problems() const { return has_problems_; }

private:
    struct Source {
        std::unique_ptr<RecordingReader> reader;
        bool grows;
        std::optional<RecordedEvent> first;  ///< of those that have not been given
        std::optional<NextFile> next;        ///< of the recording
    };

    void fill(Source& source);
    bool go_on(Source& source);
    /// Notes that a file has been opened. @return whether it is the first time
    bool is_new(const std::string& path);
    void tell_unopened(const std::string& path, int error);
    void tell(const std::string& problem);

    Report report_;
    TimeSpan span_;
    std::optional<std::int64_t> begin_;  ///< time of the first event
    std::vector<Source> sources_;
    std::set<std::filesystem::path> opened_;  ///< the canonical paths
    bool has_problems_ = false;
};

}  // namespace orvane::tools
