#include "tools/domain/loss_account.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace orvane::tools {
namespace {

/// The numbers come from the network.
std::uint64_t increase(std::uint64_t before, std::uint64_t now) {
    return now - std::min(before, now);
}

/// Takes as much as possible of both.
void deduct(std::uint64_t& known, std::uint64_t& lost) {
    const std::uint64_t common = std::min(known, lost);
    known -= common;
    lost -= common;
}

}  // namespace

void LossAccount::expect_up_to(std::uint64_t number, Clock::time_point now) {
    if (number > highest_) {
        gaps_.emplace_hint(gaps_.end(), highest_ + 1, Gap{number, now});
        highest_ = number;
    }
}

bool LossAccount::fill(Gaps& gaps, std::uint64_t number, Clock::time_point now) const {
    const auto behind = gaps.upper_bound(number);
    if (behind == gaps.begin()) {
        return false;
    }
    const auto around = std::prev(behind);
    const std::uint64_t first = around->first;
    const Gap gap = around->second;
    if (number > gap.last) {
        return false;
    }
    gaps.erase(around);
    if (first < number) {
        gaps.emplace_hint(behind, first, Gap{number - 1, gap.noticed});
    }
    if (number < gap.last) {
        // Messages come in their order, so those behind this one are still on their way.
        const bool is_open = gap.last == highest_;
        gaps.emplace_hint(behind, number + 1, Gap{gap.last, is_open ? now : gap.noticed});
    }
    return true;
}

bool LossAccount::receive(std::uint64_t number, Clock::time_point now) {
    first_sample_ = first_sample_.value_or(now);
    if (number > highest_) {
        expect_up_to(number - 1, now);
        highest_ = number;
        return true;
    }
    return fill(gaps_, number, now) || take_back(number, now);
}

bool LossAccount::take_back(std::uint64_t number, Clock::time_point now) {
    if (!fill(given_up_, number, now)) {
        return false;
    }
    if (sent_from_ && number <= *sent_from_) {
        --earlier_;
    } else {
        ++come_late_;
    }
    return true;
}

void LossAccount::give_up(std::uint64_t first, const Gap& gap) {
    // The oldest are the least likely to come.
    constexpr std::size_t most = 64;
    given_up_.emplace(first, gap);
    while (given_up_.size() > most) {
        given_up_.erase(given_up_.begin());
    }
}

void LossAccount::receive(const LoggerStatistics& statistics, Clock::time_point now) {
    // Statistics that do not know the viewer are older than the match. But a logger that has met
    // many viewers since may have forgotten it, and then the second ones are younger.
    if (statistics.at_match || (has_statistics_ && statistics.has_forgotten_viewers)) {
        const MessageCounts& at_match = statistics.at_match.value_or(statistics.now);
        sent_from_ = sent_from_.value_or(at_match.published);
        if (!told_) {
            told_ = at_match;
            earlier_ += at_match.lost();
        }
    }
    has_statistics_ = true;
    first_sample_ = first_sample_.value_or(now);
    now_ = statistics.now;
    expect_up_to(now_.published, now);
}

LostMessages LossAccount::take_losses(Clock::time_point now) {
    LostMessages lost;
    if (told_) {
        lost.queue_full = increase(told_->queue_full, now_.queue_full);
        lost.no_memory = increase(told_->no_memory, now_.no_memory);
        lost.discarded = increase(told_->discarded, now_.discarded);
        told_ = now_;
    }
    if (!sent_from_ && !has_statistics_ && first_sample_ &&
        now - *first_sample_ >= time_of_history) {
        sent_from_ = highest_;
    }
    wait_anew_after_stall(now);
    while (sent_from_ && !gaps_.empty() && now - gaps_.begin()->second.noticed >= patience) {
        const auto [first, gap] = *gaps_.begin();
        gaps_.erase(gaps_.begin());
        const std::uint64_t last_earlier = std::clamp(*sent_from_, first - 1, gap.last);
        earlier_ += last_earlier + 1 - first;
        lost.on_the_way += gap.last - last_earlier;
        give_up(first, gap);
    }
    deduct(come_late_, lost.on_the_way);
    // A logger with statistics writes nothing but messages. The end of its writer ends instances,
    // too, and that has no number.
    if (!has_statistics_) {
        deduct(unnumbered_, lost.on_the_way);
    }
    return lost;
}

void LossAccount::wait_anew_after_stall(Clock::time_point now) {
    if (gaps_.empty() || now - gaps_.begin()->second.noticed < patience + stall) {
        return;
    }
    for (auto& [first, gap] : gaps_) {
        gap.noticed = now;
    }
}

std::optional<LossAccount::Clock::time_point> LossAccount::next_deadline() const {
    if (!sent_from_) {
        return first_sample_ && !has_statistics_ ? std::optional{*first_sample_ + time_of_history}
                                                 : std::nullopt;
    }
    return gaps_.empty() ? std::nullopt : std::optional{gaps_.begin()->second.noticed + patience};
}

}  // namespace orvane::tools
