#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <string>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;
constexpr const char* middleware_category = "com.qel.pexa.config.Logger";

std::vector<ViewedMessage> of_application(const std::string& identity,
                                          std::vector<ViewedMessage> messages) {
    std::erase_if(messages,
                  [&](const ViewedMessage& message) { return message.application != identity; });
    return messages;
}

std::vector<std::string> texts(const std::vector<ViewedMessage>& messages) {
    std::vector<std::string> texts;
    texts.reserve(messages.size());
    for (const ViewedMessage& message : messages) {
        texts.push_back(message.text);
    }
    return texts;
}

TEST(Applications, AreToldApartByOneViewer) {
    constexpr std::size_t count = 500;
    Viewer viewer{domain_id};
    Application first{domain_id};
    Application second{domain_id};
    ASSERT_TRUE(connect(first, viewer)) << viewer.process().transcript();
    ASSERT_TRUE(connect(second, viewer)) << viewer.process().transcript();
    const std::string first_identity = first.ask("identity");
    const std::string second_identity = second.ask("identity");
    ASSERT_NE(first_identity, second_identity);

    first.start("log 600 " + std::to_string(count) + " 2000");
    second.start("log 500 " + std::to_string(count) + " 2000");
    ASSERT_EQ(first.answer(), "log");
    ASSERT_EQ(second.answer(), "log");
    EXPECT_TRUE(viewer.wait_for(2 * count, numbered_category, patience));

    const std::vector<ViewedMessage> viewed = viewer.messages(numbered_category);
    EXPECT_EQ(viewed.size(), 2 * count);
    EXPECT_EQ(difference(first.logged(), of_application(first_identity, viewed)), "");
    EXPECT_EQ(difference(second.logged(), of_application(second_identity, viewed)), "");
}

TEST(Applications, LeaveTheViewerAndTheOthersAloneWhenOneIsKilled) {
    constexpr std::size_t count = 500;
    Viewer viewer{domain_id};
    Application survivor{domain_id};
    Application victim{domain_id};
    ASSERT_TRUE(connect(survivor, viewer)) << viewer.process().transcript();
    ASSERT_TRUE(connect(victim, viewer)) << viewer.process().transcript();
    const std::string survivor_identity = survivor.ask("identity");
    const std::string victim_identity = victim.ask("identity");

    survivor.start("log 600 " + std::to_string(count) + " 2000");
    victim.start("log 600 " + std::to_string(count) + " 2000");
    ASSERT_TRUE(viewer.wait_for(count / 2, numbered_category, patience));
    victim.process().send_signal(SIGKILL);
    EXPECT_EQ(victim.process().wait_for_end(patience), "signal 9");

    EXPECT_EQ(survivor.answer(), "log");
    EXPECT_TRUE(await_all(survivor, viewer)) << survivor.process().transcript();
    const std::vector<ViewedMessage> viewed = viewer.messages(numbered_category);
    EXPECT_EQ(difference(survivor.logged(), of_application(survivor_identity, viewed)), "");

    const std::vector<std::string> seen = texts(of_application(victim_identity, viewed));
    EXPECT_GT(seen.size(), 0U);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        ASSERT_EQ(seen[i], std::to_string(i));
    }
}

TEST(Applications, LogFromTheirOwnListenersAndKeepTheirParticipant) {
    Viewer viewer{domain_id};
    Application application{domain_id, {"--own-participant"}};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    EXPECT_EQ(application.ask("trigger 5"), "trigger 5");
    EXPECT_TRUE(viewer.wait_until(
        [](const std::vector<ViewedMessage>& messages) {
            return std::any_of(messages.begin(), messages.end(), [](const ViewedMessage& message) {
                return message.text == "heard 4";
            });
        },
        patience));
    EXPECT_EQ(texts(viewer.messages("")),
              (std::vector<std::string>{"heard 0", "heard 1", "heard 2", "heard 3", "heard 4"}));

    EXPECT_EQ(application.ask("finish"), "finish 0");
    EXPECT_EQ(application.ask("trigger 5"), "trigger 10");
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});
}

TEST(Applications, PublishWhatTheMiddlewareReports) {
    Viewer viewer{domain_id};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    ASSERT_EQ(application.ask("misuse"), "misuse 3");
    ASSERT_TRUE(viewer.wait_for(1, middleware_category, patience))
        << application.process().transcript();

    const ViewedMessage report = viewer.messages(middleware_category).front();
    EXPECT_EQ(report.level, 300);
    EXPECT_EQ(report.application, application.ask("identity"));
    EXPECT_NE(report.text.find("DDS_Topic_get_qos"), std::string::npos) << report.text;
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});

    EXPECT_EQ(application.ask("finish"), "finish 0");
    ASSERT_EQ(application.ask("misuse"), "misuse 3");
    EXPECT_EQ(application.diagnostics().size(), 1U) << application.process().transcript();
}

}  // namespace
}  // namespace orvane::tests
