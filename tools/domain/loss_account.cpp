#include "tools/domain/loss_account.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane::tools {

void LossAccount::expect_up_to(std::uint64_t number, Clock::time_point now) {
    if (number > highest_) {
        gaps_.emplace_hint(gaps_.end(), highest_ + 1, Gap{number, now});
        highest_ = number;
    }
}

void LossAccount::fill(std::uint64_t number) {
    const auto behind = gaps_.upper_bound(number);
    if (behind == gaps_.begin()) {
        return;
    }
    const auto around = std::prev(behind);
    const std::uint64_t first = around->first;
    const Gap gap = around->second;
    if (number > gap.last) {
        return;
    }
    gaps_.erase(around);
    if (first < number) {
        gaps_.emplace_hint(behind, first, Gap{number - 1, gap.noticed});
    }
    if (number < gap.last) {
        gaps_.emplace_hint(behind, number + 1, gap);
    }
}

void LossAccount::receive(std::uint64_t number, Clock::time_point now) {
    first_sample_ = first_sample_.value_or(now);
    if (number > highest_) {
        expect_up_to(number - 1, now);
        highest_ = number;
    } else {
        fill(number);
    }
}

void LossAccount::receive(const LoggerStatistics& statistics, Clock::time_point now) {
    // The first statistics may be older than the match. The second ones are younger. A logger that
    // has met many viewers since does not know this one any more.
    if (statistics.at_match || has_statistics_) {
        const MessageCounts& at_match = statistics.at_match.value_or(statistics.now);
        sent_from_ = sent_from_.value_or(at_match.published);
        if (!told_) {
            told_ = at_match;
            earlier_ += at_match.queue_full + at_match.no_memory + at_match.discarded;
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
        lost.queue_full = now_.queue_full - told_->queue_full;
        lost.no_memory = now_.no_memory - told_->no_memory;
        lost.discarded = now_.discarded - told_->discarded;
        told_ = now_;
    }
    if (!sent_from_ && first_sample_ && now - *first_sample_ >= time_of_history) {
        sent_from_ = highest_;
    }
    while (sent_from_ && !gaps_.empty() && now - gaps_.begin()->second.noticed >= patience) {
        const auto [first, gap] = *gaps_.begin();
        gaps_.erase(gaps_.begin());
        const std::uint64_t last_earlier = std::clamp(*sent_from_, first - 1, gap.last);
        earlier_ += last_earlier + 1 - first;
        lost.on_the_way += gap.last - last_earlier;
    }
    // A logger with statistics writes nothing but messages. The end of its writer ends instances,
    // too, and that has no number.
    if (!has_statistics_) {
        const std::uint64_t explained = std::min(nameless_, lost.on_the_way);
        nameless_ -= explained;
        lost.on_the_way -= explained;
    }
    return lost;
}

std::optional<LossAccount::Clock::time_point> LossAccount::next_deadline() const {
    if (!sent_from_) {
        return first_sample_ ? std::optional{*first_sample_ + time_of_history} : std::nullopt;
    }
    return gaps_.empty() ? std::nullopt : std::optional{gaps_.begin()->second.noticed + patience};
}

}  // namespace orvane::tools
