/// @file silence.hpp
/// @brief Who is in a domain, and is not heard.
#pragma once

#include <chrono>
#include <functional>

#include "tools/domain/participant_census.hpp"
#include "tools/records/domain_options.hpp"

namespace orvane::tools {

/// Says on the standard error who is in the domain and does not talk to this participant.
/// @param is_heard whether anybody has been heard; if nobody has, it says why that may be
/// @return whether somebody should have been heard
bool tell_of_silent(const DomainOptions& domain, const ParticipantCensus& census, bool is_heard);

/// Says it once, after a while, for a subcommand that goes on.
class Silence {
public:
    using Clock = std::chrono::steady_clock;

    /// The domain is joined now, or soon.
    Silence(const DomainOptions& domain, std::function<ParticipantCensus()> census)
        : domain_(domain), census_(std::move(census)) {}

    void note(bool is_somebody_heard) { is_heard_ = is_heard_ || is_somebody_heard; }

    /// How long to wait for news, no longer than @p longest.
    std::chrono::milliseconds wait(std::chrono::milliseconds longest) const;

    /// @param is_over the time that the user gave is over
    /// @return whether nobody has been heard, and somebody should have been
    bool tell(bool is_over = false);

private:
    const DomainOptions& domain_;
    std::function<ParticipantCensus()> census_;
    Clock::time_point start_ = Clock::now();
    bool is_heard_ = false;
    bool is_told_ = false;
    bool are_others_silent_ = false;
};

}  // namespace orvane::tools
