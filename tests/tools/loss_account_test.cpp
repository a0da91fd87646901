#include "tools/domain/loss_account.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

/// What a viewer receives, by the time since its start.
struct Step {
    std::chrono::milliseconds when;
    std::function<void(LossAccount&, LossAccount::Clock::time_point)> receive;
};

Step messages(std::chrono::milliseconds when, std::vector<std::uint64_t> numbers) {
    return {when, [=](LossAccount& account, LossAccount::Clock::time_point now) {
                for (const std::uint64_t number : numbers) {
                    account.receive(number, now);
                }
            }};
}

Step unnumbered(std::chrono::milliseconds when) {
    return {when, [](LossAccount& account, auto) { account.receive_unnumbered(); }};
}

Step statistics(std::chrono::milliseconds when, const MessageCounts& counts,
                std::optional<MessageCounts> at_match) {
    return {when, [=](LossAccount& account, LossAccount::Clock::time_point now) {
                LoggerStatistics said;
                said.now = counts;
                said.at_match = at_match;
                said.has_forgotten_viewers = !at_match && counts.queue_full > 6;
                account.receive(said, now);
            }};
}

constexpr MessageCounts at_start{};

TEST(LossAccount, TellsWhatIsMissingAndWhereItWasLost) {
    const struct {
        const char* what;
        std::vector<Step> steps;
        LostMessages lost;
        std::uint64_t earlier = 0;
    } cases[] = {
        {"nothing", {messages(0ms, {1, 2, 3}), statistics(1s, {.published = 3}, at_start)}, {}},
        {"a gap", {statistics(0ms, {}, at_start), messages(1ms, {1, 2, 5, 6})}, {.on_the_way = 2}},
        {"samples of a take are in no order",
         {statistics(0ms, {}, at_start), messages(1ms, {1, 4, 2, 6, 3, 5})},
         {}},
        {"repaired in time",
         {statistics(0ms, {}, at_start), messages(1ms, {1, 4}), messages(900ms, {2, 3})},
         {}},
        {"repaired in part",
         {statistics(0ms, {}, at_start), messages(1ms, {1, 9}), messages(900ms, {2, 5, 8})},
         {.on_the_way = 4}},
        {"the last ones as long as they come",
         {statistics(0ms, {.published = 9}, at_start), messages(900ms, {1, 2, 3}),
          messages(1800ms, {4, 5, 6}), messages(2700ms, {8})},
         {.on_the_way = 2}},
        {"one that comes when it was given up",
         {statistics(0ms, {}, at_start), messages(1ms, {1, 4}), messages(2s, {3}),
          messages(3s, {7})},
         {.on_the_way = 3}},
        {"a writer that comes back sends its history again",
         {messages(0ms, {1, 2, 4}), messages(5s, {1, 4}), messages(6s, {2, 3, 6})},
         {.on_the_way = 1}},
        {"and with statistics",
         {messages(0ms, {4}), statistics(0ms, {.published = 3}, {{.published = 3}}),
          messages(5s, {3, 4}), messages(6s, {3, 4, 6})},
         {.on_the_way = 1},
         2},
        {"statistics from before the match",
         {messages(0ms, {41}), statistics(1ms, {7, 5, 0, 0}, {}),
          statistics(2ms, {30, 6, 0, 0}, {}), statistics(900ms, {43, 6, 0, 0}, {{41, 6, 0, 0}})},
         {.on_the_way = 2},
         40 + 6},
        {"the first ones", {statistics(0ms, {}, at_start), messages(1ms, {3})}, {.on_the_way = 2}},
        {"the last ones",
         {statistics(0ms, {}, at_start), messages(1ms, {1}),
          statistics(1s, {.published = 4}, at_start)},
         {.on_the_way = 3}},
        {"statistics overtake messages",
         {statistics(0ms, {.published = 3}, at_start), messages(500ms, {1, 2, 3})},
         {}},
        {"causes at the logger",
         {statistics(0ms, {}, at_start), messages(1ms, {1, 3}),
          statistics(1s, {3, 30, 4, 0}, at_start), statistics(2s, {3, 50, 4, 6}, at_start)},
         {.queue_full = 50, .no_memory = 4, .discarded = 6, .on_the_way = 1}},
        {"a late viewer misses no history",
         {messages(0ms, {41, 44, 45}), statistics(1ms, {45, 7, 0, 0}, {{44, 7, 0, 0}}),
          messages(2ms, {46, 48}), statistics(1s, {48, 9, 0, 0}, {{44, 7, 0, 0}})},
         {.queue_full = 2, .on_the_way = 1},
         42 + 7},
        {"a logger that has forgotten the viewer",
         {messages(0ms, {5}), statistics(1ms, {3, 7, 0, 0}, {}), messages(2ms, {8}),
          statistics(900ms, {10, 9, 0, 0}, {}), messages(950ms, {12}),
          statistics(2s, {12, 10, 0, 0}, {})},
         {.queue_full = 1, .on_the_way = 1},
         8 + 9},
        {"no statistics: what is missing at first may be history",
         {messages(0ms, {5, 9}), messages(2500ms, {10, 14})},
         {.on_the_way = 3},
         7},
        {"ends of instances have numbers too",
         {messages(0ms, {1}), messages(3s, {2}), unnumbered(3s), messages(3s, {4, 6})},
         {.on_the_way = 1}},
        {"but not those at the end of a logger",
         {statistics(0ms, {}, at_start), messages(1ms, {1, 3}), unnumbered(2ms)},
         {.on_the_way = 1}},
    };
    for (const auto& each : cases) {
        LossAccount account;
        const LossAccount::Clock::time_point start{};
        LostMessages lost;
        const auto tell = [&](std::chrono::milliseconds when) {
            const LostMessages more = account.take_losses(start + when);
            lost.queue_full += more.queue_full;
            lost.no_memory += more.no_memory;
            lost.discarded += more.discarded;
            lost.on_the_way += more.on_the_way;
        };
        const auto go_on_to = [&](std::chrono::milliseconds when) {
            for (auto next = account.next_deadline(); next && *next <= start + when;
                 next = account.next_deadline()) {
                tell(std::chrono::duration_cast<std::chrono::milliseconds>(*next - start));
            }
        };
        for (const Step& step : each.steps) {
            go_on_to(step.when);
            step.receive(account, start + step.when);
            tell(step.when);
        }
        go_on_to(60s);
        EXPECT_EQ(lost, each.lost)
            << each.what << ": on the way " << lost.on_the_way << ", full " << lost.queue_full;
        EXPECT_EQ(account.earlier(), each.earlier) << each.what;
        EXPECT_EQ(account.next_deadline(), std::nullopt) << each.what;
    }
}

}  // namespace
}  // namespace orvane::tools
