/// @file domain_view.hpp
/// @brief The loggers of a domain as far as they have been found.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "tools/domain/administration.hpp"
#include "tools/domain/logger_target.hpp"

namespace orvane::tools {

struct LoggerChange {
    enum class Kind { appeared, changed, gone };
    Kind kind = Kind::appeared;
    LoggerState before;  ///< the same as @ref now, but for @ref Kind::changed
    LoggerState now;     ///< the last one known
};

struct News {
    std::vector<LoggerChange> changes;
    std::vector<CommandAnswer> answers;
};

/// Keeps the last State of every logger that is alive.
class DomainView {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// How long a domain must have been quiet to count as known. Loggers answer a newcomer's
    /// announcement at once, so that what takes longer is a lost packet or a busy host.
    static constexpr Milliseconds settling_time{1000};

    explicit DomainView(Administration& administration);

    /// Waits for news. @return nothing when a reader failed
    [[nodiscard]] std::optional<News> next(Milliseconds longest);

    /// Waits until a logger that is meant has been found, and, unless the target is one
    /// application, the domain has then been quiet for @ref settling_time and everybody who
    /// publishes a State has been heard; but no longer than @p longest. Interrupting ends it early.
    /// @param target NULL means all
    /// @return false when a reader failed
    [[nodiscard]] bool discover(const LoggerTarget* target, Milliseconds longest);

    /// @return NULL for one that has not been found or has gone
    [[nodiscard]] const LoggerState* find(const Application& application) const;
    /// All, by host and application id.
    [[nodiscard]] std::vector<LoggerState> loggers() const;

    Administration& administration() { return administration_; }

private:
    [[nodiscard]] bool has(const LoggerTarget* target) const;
    void apply(const StateReport& report, std::vector<LoggerChange>& changes);
    /// @return how long the domain must stay quiet from now on
    Milliseconds time_to_settle();

    Administration& administration_;
    std::map<Application, LoggerState> loggers_;
    std::size_t publishers_ = 0;
    Administration::Clock::time_point last_news_;
};

}  // namespace orvane::tools
