#include <algorithm>
#include <csignal>
#include <cstdlib>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

constexpr std::size_t kept_per_level = 10;

template <typename Message>
std::vector<Message> last(std::size_t count, const std::vector<Message>& messages) {
    return {messages.end() - static_cast<std::ptrdiff_t>(std::min(count, messages.size())),
            messages.end()};
}

template <typename Message, typename Predicate>
std::vector<Message> only(std::vector<Message> messages, Predicate wanted) {
    std::erase_if(messages, [&](const Message& message) { return !wanted(message); });
    return messages;
}

TEST(Delivery, BringsTenThousandMessagesOnceInOrderAndWithTheTimeOfTheCall) {
    Viewer viewer;
    Application application;
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    ASSERT_EQ(application.ask("log 600 10000 500"), "log");
    EXPECT_TRUE(await_all(application, viewer)) << application.process().transcript();
    EXPECT_EQ(difference(application.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});
}

TEST(Delivery, BringsEveryMessageOfAProfileThatKeepsAllThroughALossyNetwork) {
    // The programs lose 5 % of the packets that they send; the engine counts in a thousand.
    const Words launcher = {
        "env",
        "CYCLONEDDS_URI=" + std::string{std::getenv("CYCLONEDDS_URI")} +
            ",<CycloneDDS><Domain Id=\"any\"><Internal><Test><XmitLossiness>50</XmitLossiness>"
            "</Test></Internal></Domain></CycloneDDS>",
        "PEXA_QOS_PROFILES=" ORVANE_KEEP_ALL_PROFILE};
    Viewer viewer{{}, launcher};
    Application application{{"--profile", "delivery", "keep_all"}, launcher};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    ASSERT_EQ(application.ask("log 600 3000 1000"), "log");
    EXPECT_TRUE(await_all(application, viewer)) << application.process().transcript();
    EXPECT_EQ(difference(application.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});
}

TEST(Delivery, GivesALateViewerTheLastTenMessagesOfEveryLevel) {
    Viewer early;
    Application application;
    ASSERT_TRUE(connect(application, early)) << early.process().transcript();
    ASSERT_EQ(application.ask("log 600 25 1000"), "log");
    ASSERT_EQ(application.ask("log 400 25 1000"), "log");
    ASSERT_TRUE(early.wait_for(50, numbered_category));

    Viewer late;
    ASSERT_TRUE(late.wait_for(2 * kept_per_level, numbered_category));
    EXPECT_TRUE(await_all(application, late)) << application.process().transcript();
    const std::vector<ViewedMessage> viewed = late.messages(numbered_category);
    EXPECT_EQ(viewed.size(), 2 * kept_per_level);
    for (const std::int32_t level : {400, 600}) {
        const auto has_level = [&](const auto& message) { return message.level == level; };
        EXPECT_EQ(difference(last(kept_per_level, only(application.logged(), has_level)),
                             only(viewed, has_level)),
                  "")
            << level;
    }
}

TEST(Delivery, GoesOnWhenTheViewerIsKilledAndServesItsSuccessor) {
    constexpr std::size_t count = 1000;
    Viewer killed;
    Application application;
    ASSERT_TRUE(connect(application, killed)) << killed.process().transcript();

    application.start("log 600 1000 5000");
    ASSERT_TRUE(killed.wait_for(count / 5, numbered_category));
    killed.process().send_signal(SIGKILL);
    EXPECT_EQ(killed.process().wait_for_end(), "signal 9");

    const std::int64_t restart = wall_clock();
    Viewer successor;
    EXPECT_TRUE(successor.wait_until([](const std::vector<ViewedMessage>& messages) {
        return !messages.empty() && messages.back().text == "999";
    }));
    ASSERT_EQ(application.answer(), "log");
    const std::vector<LoggedMessage> logged = application.logged();
    ASSERT_EQ(logged.size(), count);
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});

    const std::vector<ViewedMessage> after = successor.messages(numbered_category);
    // The history moves on while a late reader catches up. A message that falls out of it before it
    // has been sent is lost, so that only the messages behind the history have no gaps.
    const std::size_t settled = after.size() - std::min<std::size_t>(after.size(), kept_per_level);
    EXPECT_EQ(difference(last(settled, logged), last(settled, after)), "");
    EXPECT_EQ(std::ranges::adjacent_find(after, std::greater_equal{}, &ViewedMessage::nanoseconds),
              after.end());
    EXPECT_LE(
        only(after, [&](const auto& message) { return message.nanoseconds < restart; }).size(),
        kept_per_level);
}

TEST(Viewer, EndsWithSuccessAndASummaryWhenItIsStopped) {
    for (const int signal : {SIGINT, SIGTERM}) {
        Application application;
        Viewer viewer{{"--category", "[np]*", "--app", "none", "--app", application.ask("identity"),
                       "--exclude", "none@*"}};
        ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();
        ASSERT_EQ(application.ask("log 600 3 1000"), "log");
        ASSERT_TRUE(application.say(600, "other", "not asked for"));
        ASSERT_EQ(application.ask("log 600 1 1000"), "log");
        ASSERT_TRUE(viewer.wait_for(4, numbered_category));

        viewer.process().send_signal(signal);
        EXPECT_EQ(viewer.process().wait_for_end(), "exit 0");
        const Output output = viewer.process().output();
        ASSERT_EQ(output.error.size(), 2U) << viewer.process().transcript();
        EXPECT_EQ(output.error.back(), "orvane: no message came from 'none'");
        const std::string& summary = output.error.front();
        EXPECT_TRUE(summary.starts_with("orvane: " + std::to_string(output.out.size()) +
                                        " messages of 1 application in "))
            << summary;
        EXPECT_TRUE(summary.ends_with(" s, 1 not asked for")) << summary;
    }
}

TEST(Viewer, EndsAfterTheCountThatWasAskedForAndObeysNoMessage) {
    Viewer guide;
    ChildProcess viewer{tool_in_domain({"tail", "--utc", "--count", "3", "--level", "99"})};
    Application application;
    ASSERT_TRUE(connect(application, guide)) << guide.process().transcript();
    for (int number = 0; number < 5; ++number) {
        ASSERT_TRUE(application.say(99, "\x1b]0;owned\a",
                                    "\x9b"
                                    "31m\u202egpj.exe\n\xe2\x82"));
    }
    EXPECT_EQ(viewer.wait_for_end(), "exit 0") << viewer.transcript();
    EXPECT_EQ(viewer.output().out.size(), 3U) << viewer.transcript();
    for (const std::string& line : viewer.output().out) {
        EXPECT_TRUE(
            line.ends_with("[\\x1b]0;owned\\x07] \\x9b31m\\xe2\\x80\\xaegpj.exe"
                           "\\n\\xe2\\x82"))
            << line;
    }
}

}  // namespace
}  // namespace orvane::tests
