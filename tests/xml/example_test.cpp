#include <gtest/gtest.h>

#include <string>

#include "tests/integration/application.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

const std::string domain = std::to_string(ORVANE_TEST_DOMAIN);

TEST(Example, LogsItsInputAsItsFileSays) {
    constexpr std::size_t count = 500;
    Viewer viewer{ORVANE_TEST_DOMAIN};
    ChildProcess journal{{ORVANE_JOURNAL, ORVANE_SOURCE_DIR "/examples/xml/journal.xml", domain}};
    // Also what was logged before the viewer was there arrives.
    for (std::size_t line = 0; line < count; ++line) {
        ASSERT_TRUE(journal.send_line("line " + std::to_string(line))) << journal.transcript();
    }
    EXPECT_TRUE(viewer.wait_for(count, "journal", patience)) << journal.transcript();
    journal.close_input();
    EXPECT_EQ(journal.wait_for_end(patience), "exit 0") << journal.transcript();
    EXPECT_EQ(journal.output().out, (std::vector<std::string>{"logged 500, discarded 0"}));

    const std::vector<ViewedMessage> messages = viewer.messages("journal");
    ASSERT_EQ(messages.size(), count);
    for (std::size_t line = 0; line < count; ++line) {
        EXPECT_EQ(messages[line].text, "line " + std::to_string(line));
    }
}

TEST(Example, DoesNotStartFromAFileItCannotUse) {
    ChildProcess journal{{ORVANE_JOURNAL, ORVANE_SOURCE_DIR "/README.md", domain}};
    EXPECT_EQ(journal.wait_for_end(patience), "exit 1");
    EXPECT_NE(journal.transcript().find("cannot be configured from"), std::string::npos)
        << journal.transcript();
}

}  // namespace
}  // namespace orvane::tests
