/// @file log_stream.hpp
/// @brief The messages of a domain in the order in which they are told, with what is missing.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "tools/domain/logger_directory.hpp"
#include "tools/domain/writer_accounts.hpp"
#include "tools/records/endpoint.hpp"
#include "tools/records/event.hpp"

namespace orvane::tools {

/// Who has sent a sample, and its place in what that writer sends.
struct Origin {
    Endpoint writer;
    std::optional<std::uint64_t> number;  ///< not known for a writer of the viewer's own process
};

/// Makes events of what arrives. Used by one thread.
///
/// A message may arrive before the State that names its logger. Then it waits for the State, and
/// all messages behind it wait too, but no longer than @ref patience_for_names. A logger without a
/// State makes others wait once only.
class LogStream {
public:
    using Clock = LossAccount::Clock;

    static constexpr std::chrono::milliseconds patience_for_names{500};

    /// @param is_authenticated certificates say who has published a message
    explicit LogStream(const LoggerDirectory& directory, bool is_authenticated = false)
        : directory_(directory), is_authenticated_(is_authenticated) {}

    /// Notes a message. One that comes again is not told again.
    void receive(LogRecord record, const Origin& origin, Clock::time_point now);
    /// Notes a sample without a message: an instance has ended.
    void receive_end(const Origin& origin, Clock::time_point now);
    void receive(const LoggerStatistics& statistics, Clock::time_point now);
    /// Says which writers of messages are matched from now on.
    void set_matched(std::set<Endpoint> writers);

    /// Appends what is to be told now.
    /// @param wall_clock the time of losses that are noticed now, since 1970-01-01 UTC
    /// @param is_last no message waits any more
    void take(Clock::time_point now, std::int64_t wall_clock, bool is_last,
              std::vector<Event>& events);

    /// Messages of these loggers that were logged before there was this viewer, and that did not
    /// come.
    std::uint64_t earlier(const std::function<bool(const Logger& logger)>& is_wanted) const;

    /// Number of writers that are not forgotten.
    std::size_t accounts() const { return accounts_.open().size() + accounts_.closed().size(); }

    /// When @ref take may return something although nothing comes. Nothing means never.
    std::optional<Clock::time_point> next_deadline() const;

private:
    struct Waiting {
        LogRecord record;
        Application publisher;
        Clock::time_point until;
    };

    bool waits_for_name(const Logger& logger) const;

    const LoggerDirectory& directory_;
    const bool is_authenticated_;
    std::deque<Waiting> messages_;
    std::set<Application> nameless_;  ///< have made others wait
    WriterAccounts accounts_;
    /// The loggers of accounts that were dropped, with what is in their sum of @ref earlier.
    std::vector<std::pair<Logger, std::uint64_t>> earlier_of_dropped_;
};

}  // namespace orvane::tools
