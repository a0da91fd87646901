/// @file loss_account.hpp
/// @brief Finds the messages that are missing, and where they were lost.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>

#include "tools/records/logger_statistics.hpp"

namespace orvane::tools {

/// Messages that nobody will see any more, by cause.
struct LostMessages {
    std::uint64_t queue_full = 0;
    std::uint64_t no_memory = 0;
    std::uint64_t discarded = 0;
    std::uint64_t on_the_way = 0;

    friend bool operator==(const LostMessages&, const LostMessages&) = default;
};

/// The account of one writer of messages.
///
/// A writer numbers its messages from 1 on. A number that has not been received is missing. The
/// message is lost on the way unless it comes within @ref patience, or was published before the
/// writer began to send to this viewer: of those it has not kept all. The statistics of the logger
/// say what the last number was by then. They also show a loss of the last messages, and say how
/// many messages were never published. A message that comes after all makes up for the next one
/// that is lost. A writer that was unreachable and comes back sends its history again; what has
/// been received before does not count.
///
/// Without statistics, everything that is missing @ref time_of_history after the first sample may
/// have been published before.
class LossAccount {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds patience{1000};
    static constexpr std::chrono::milliseconds time_of_history{2000};
    /// A viewer that looks so much too late has not run, and gives what it then finds time to come.
    static constexpr std::chrono::milliseconds stall{500};

    /// Notes a message. A sample without a message has a number, too.
    /// @return whether it is the first one with this number
    bool receive(std::uint64_t number, Clock::time_point now);
    /// Notes a sample without a message of which the number is not known.
    void receive_unnumbered() { ++unnumbered_; }
    void receive(const LoggerStatistics& statistics, Clock::time_point now);

    /// @return what has been lost for good since the last call
    LostMessages take_losses(Clock::time_point now);

    /// Messages that were logged before the writer began to send, and that did not come.
    std::uint64_t earlier() const { return earlier_; }

    /// When @ref take_losses may have news although nothing comes. Nothing means never.
    std::optional<Clock::time_point> next_deadline() const;

private:
    /// Up to @ref last, from the number that is its key.
    struct Gap {
        std::uint64_t last;
        Clock::time_point noticed;
    };
    using Gaps = std::map<std::uint64_t, Gap>;

    void expect_up_to(std::uint64_t number, Clock::time_point now);
    /// Takes a number out of the gaps. @return whether it was in one
    bool fill(Gaps& gaps, std::uint64_t number, Clock::time_point now) const;
    /// Notes a message that may have been given up. @return whether it was
    bool take_back(std::uint64_t number, Clock::time_point now);
    void give_up(std::uint64_t first, const Gap& gap);
    void wait_anew_after_stall(Clock::time_point now);

    Gaps gaps_;
    Gaps given_up_;              ///< the last ones
    std::uint64_t highest_ = 0;  ///< number that has been received or is missing
    std::uint64_t unnumbered_ = 0;
    std::uint64_t come_late_ = 0;
    std::uint64_t earlier_ = 0;
    std::optional<Clock::time_point> first_sample_;
    std::optional<std::uint64_t> sent_from_;  ///< the last number before the writer began to send
    bool has_statistics_ = false;
    MessageCounts now_;
    /// What has been told of @ref now_, or was so before the writer began to send.
    std::optional<MessageCounts> told_;
};

}  // namespace orvane::tools
