#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;
constexpr std::size_t kept_per_level = 10;

template <typename Message>
std::vector<Message> last(std::size_t count, const std::vector<Message>& messages) {
    return {messages.end() - static_cast<std::ptrdiff_t>(std::min(count, messages.size())),
            messages.end()};
}

template <typename Message>
std::vector<Message> of_level(std::int32_t level, std::vector<Message> messages) {
    std::erase_if(messages, [&](const Message& message) { return message.level != level; });
    return messages;
}

TEST(Delivery, BringsTenThousandMessagesOnceInOrderAndWithTheTimeOfTheCall) {
    constexpr std::size_t count = 10'000;
    Viewer viewer{domain_id};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    ASSERT_EQ(application.ask("log 600 " + std::to_string(count) + " 500"), "log");
    EXPECT_TRUE(await_all(application, viewer)) << application.process().transcript();

    EXPECT_EQ(difference(application.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});
}

TEST(Delivery, GivesALateViewerTheLastTenMessagesOfEveryLevel) {
    constexpr std::size_t count = 25;
    Viewer early{domain_id};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, early)) << early.process().transcript();
    ASSERT_EQ(application.ask("log 600 25 1000"), "log");
    ASSERT_EQ(application.ask("log 400 25 1000"), "log");
    ASSERT_TRUE(early.wait_for(2 * count, numbered_category, patience));

    Viewer late{domain_id};
    ASSERT_TRUE(late.wait_for(2 * kept_per_level, numbered_category, patience));
    EXPECT_TRUE(await_all(application, late)) << application.process().transcript();

    const std::vector<LoggedMessage> logged = application.logged();
    const std::vector<ViewedMessage> viewed = late.messages(numbered_category);
    EXPECT_EQ(viewed.size(), 2 * kept_per_level);
    for (const std::int32_t level : {400, 600}) {
        EXPECT_EQ(
            difference(last(kept_per_level, of_level(level, logged)), of_level(level, viewed)), "")
            << level;
    }
}

TEST(Delivery, GoesOnWhenTheViewerIsKilledAndServesItsSuccessor) {
    constexpr std::size_t count = 1000;
    Viewer killed{domain_id};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, killed)) << killed.process().transcript();

    application.start("log 600 " + std::to_string(count) + " 5000");
    ASSERT_TRUE(killed.wait_for(count / 5, numbered_category, patience));
    killed.process().send_signal(SIGKILL);
    EXPECT_EQ(killed.process().wait_for_end(patience), "signal 9");

    const std::int64_t restart = wall_clock();
    Viewer successor{domain_id};
    const std::string last_number = std::to_string(count - 1);
    EXPECT_TRUE(successor.wait_until(
        [&](const std::vector<ViewedMessage>& messages) {
            return !messages.empty() && messages.back().text == last_number;
        },
        patience));

    ASSERT_EQ(application.answer(), "log");
    const std::vector<LoggedMessage> logged = application.logged();
    ASSERT_EQ(logged.size(), count);
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});

    const std::vector<ViewedMessage> before = killed.messages(numbered_category);
    EXPECT_EQ(
        difference({logged.begin(), logged.begin() + static_cast<std::ptrdiff_t>(before.size())},
                   before),
        "");
    const std::vector<ViewedMessage> after = successor.messages(numbered_category);
    // The history moves on while a late reader catches up. A message that falls out of it before it
    // has been sent is lost, so that only the messages behind the history have no gaps.
    const std::size_t settled = after.size() - std::min<std::size_t>(after.size(), kept_per_level);
    EXPECT_EQ(difference(last(settled, logged), last(settled, after)), "");
    const auto not_ascending = std::adjacent_find(
        after.begin(), after.end(),
        [](const auto& left, const auto& right) { return left.nanoseconds >= right.nanoseconds; });
    EXPECT_EQ(not_ascending, after.end());
    const auto history = std::count_if(after.begin(), after.end(), [&](const ViewedMessage& each) {
        return each.nanoseconds < restart;
    });
    EXPECT_LE(history, static_cast<std::ptrdiff_t>(kept_per_level));
}

}  // namespace
}  // namespace orvane::tests
