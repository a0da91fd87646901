/// @file display.hpp
/// @brief Prints the events of a domain, for people or for programs.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/records/event.hpp"
#include "tools/records/log_query.hpp"
#include "tools/text/log_line.hpp"
#include "tools/text/logger_name.hpp"

namespace orvane::tools {

struct DisplayOptions {
    LogQuery query;
    bool json = false;
    bool no_color = false;
    bool utc = false;
    bool ids = false;
    TimeFormat time = TimeFormat::clock;
    std::optional<std::uint64_t> count;  ///< end after so many messages
};

/// Prints events on the standard output, and counts the messages.
class Display {
public:
    enum class [[nodiscard]] Progress{goes_on, complete, write_failed};

    explicit Display(const DisplayOptions& options);

    /// Prints what was asked for, up to the count of messages. A failure is printed on the standard
    /// error.
    Progress show(const std::vector<Event>& events);

    /// Lines with the number of messages, of all loggers and of each, and with the targets from
    /// which none came.
    /// @param earlier messages that were logged before, and did not come
    std::string summary(double seconds, std::uint64_t earlier) const;

private:
    struct Count {
        std::string name;
        std::uint64_t shown = 0;
        std::uint64_t lost = 0;
    };

    bool is_complete() const { return options_.count && shown_ >= *options_.count; }
    void meet(const Logger& logger);
    std::string text_of(const Event& event);
    std::string text_of(const MessageEvent& event);
    std::string text_of(const LossEvent& event);
    std::string counts_text() const;

    const DisplayOptions& options_;
    std::size_t width_ = 0;  ///< cells of the terminal, 0 for none
    LogLines lines_;
    Introductions introductions_;
    /// Of the loggers with messages that were shown or lost, and of those that have certainly
    /// published in the name of one, or {}.
    std::map<std::pair<Application, Application>, Count> counts_;
    std::vector<bool> met_;  ///< an event, for each target of the query
    std::uint64_t shown_ = 0;
    std::uint64_t hidden_ = 0;
    std::uint64_t lost_ = 0;
};

}  // namespace orvane::tools
