/// @file view.hpp
/// @brief The loggers of a domain that have been found.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "tools/domain/administration.hpp"
#include "tools/domain/live_loggers.hpp"
#include "tools/domain/logger_directory.hpp"
#include "tools/records/logger_change.hpp"
#include "tools/records/logger_entry.hpp"
#include "tools/records/logger_target.hpp"

namespace orvane::tools {

struct News {
    std::vector<LoggerChange> changes;
    bool has_statistics = false;
    std::vector<CommandResponse> responses;
};

/// Keeps the last State of every logger that is alive.
class DomainView {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// A domain that has been quiet for so long counts as known. A logger answers a new
    /// participant's announcement at once, unless its host is busy or a packet is lost.
    static constexpr Milliseconds settling_time{1000};

    /// @param is_authenticated the domain is one of DDS Security, where certificates say who has
    /// published a State
    explicit DomainView(Administration& administration, bool is_authenticated = false);

    /// Waits for news. @return nothing when a reader failed
    Result<News> next(Milliseconds longest);

    /// Looks for the loggers of a target, no longer than @p longest. A target that is one
    /// application ends it when it is found, with those that share its HOST:APP; any other target
    /// when the domain has been quiet for
    /// @ref settling_time and every matched writer of States has been heard. Interrupting ends it
    /// early. The loggers of a kind are then numbered by host and application id, so that tools
    /// that find the same loggers give them the same numbers.
    /// @param target NULL means all loggers
    /// @return failed when a reader failed
    Status discover(const LoggerTarget* target, Milliseconds longest);

    /// @return NULL for a logger that has not been found or has gone
    const LoggerState* find(const Application& application) const;
    /// All, by host and application id.
    std::vector<LoggerState> loggers() const;
    /// Those of a target that execute commands, now or soon. Who shows a State in the name of a
    /// logger that is there executes none.
    std::vector<LoggerState> loggers(const LoggerTarget& target) const;
    /// All, with what is known of them.
    std::vector<LoggerEntry> entries() const;
    /// A change that is seen now, with what is known of the logger.
    LoggerEvent event_of(const LoggerChange& change) const;
    /// Who the loggers are, also those that have gone.
    const LoggerDirectory& directory() const { return directory_; }

    Administration& administration() { return administration_; }

private:
    struct Traffic {
        LoggerTraffic known;
        Administration::Clock::time_point received;
    };

    bool has(const LoggerTarget* target) const;
    bool has_the_name_of_another(const Application& application) const;
    Status look_for(const LoggerTarget* target, Milliseconds longest);
    void number_anew();
    void apply(const StateUpdate& update, std::vector<LoggerChange>& changes);
    void apply(const LoggerStatistics& statistics);
    std::optional<LoggerTraffic> traffic_of(const Application& application) const;
    /// @return how long the domain must stay quiet from now on
    Milliseconds time_to_settle(const LoggerTarget* target);

    Administration& administration_;
    const bool is_authenticated_;
    LiveLoggers live_;
    std::set<Application> heard_;  ///< have sent a State
    std::map<Application, Traffic> traffic_;
    LoggerDirectory directory_;
    std::size_t state_writers_ = 0;
    Administration::Clock::time_point last_news_;
};

}  // namespace orvane::tools
