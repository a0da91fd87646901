/// @file recording_merge.hpp
/// @brief Several recordings as one, in the order of time.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/recording/recording_reader.hpp"
#include "tools/records/recorded_event.hpp"
#include "tools/records/result.hpp"

namespace orvane::tools {

/// The events of one file keep their order.
class RecordingMerge {
public:
    /// Tells the user what could not be read, and where.
    using Report = std::function<void(const std::string& text)>;

    explicit RecordingMerge(Report report) : report_(std::move(report)) {}

    /// Adds a recording.
    /// @param grows it is still being written, so that its end is no end
    Status open(const std::string& path, bool grows);

    /// @return nothing at the end of all files; those that grow may give more later
    std::optional<RecordedEvent> next();

    /// Whether something could not be read.
    bool has_problems() const { return has_problems_; }

private:
    struct Source {
        std::unique_ptr<RecordingReader> reader;
        std::optional<RecordedEvent> first;  ///< of those that have not been given
    };

    void fill(Source& source);
    void tell(const std::string& problem);

    Report report_;
    std::vector<Source> sources_;
    bool has_problems_ = false;
};

}  // namespace orvane::tools
