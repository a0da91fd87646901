#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;

std::vector<ViewedMessage> of_application(const std::string& identity,
                                          std::vector<ViewedMessage> messages) {
    std::erase_if(messages,
                  [&](const ViewedMessage& message) { return message.application != identity; });
    return messages;
}

TEST(Applications, AreToldApartAndLeaveTheOthersAloneWhenOneIsKilled) {
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

    const std::vector<ViewedMessage> last_words = of_application(victim_identity, viewed);
    EXPECT_GT(last_words.size(), 0U);
    for (std::size_t i = 0; i < last_words.size(); ++i) {
        ASSERT_EQ(last_words[i].text, std::to_string(i));
    }
}

}  // namespace
}  // namespace orvane::tests
