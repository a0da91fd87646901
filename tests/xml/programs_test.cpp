#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

TEST(Example, LogsItsInputAsItsFileSays) {
    Viewer viewer;
    ChildProcess journal{{ORVANE_JOURNAL, ORVANE_SOURCE_DIR "/examples/xml/journal.xml", domain()}};
    // The messages that are logged before the viewer is there arrive too.
    std::vector<std::string> lines;
    for (int number = 0; number < 500; ++number) {
        lines.push_back("line " + std::to_string(number));
        ASSERT_TRUE(journal.send_line(lines.back())) << journal.transcript();
    }
    EXPECT_TRUE(viewer.wait_for(lines.size(), "journal")) << journal.transcript();
    journal.close_input();
    EXPECT_EQ(journal.wait_for_end(), "exit 0") << journal.transcript();
    EXPECT_EQ(journal.output().out, (std::vector<std::string>{"logged 500, discarded 0"}));
    std::vector<std::string> viewed;
    for (const ViewedMessage& message : viewer.messages("journal")) {
        viewed.push_back(message.text);
    }
    EXPECT_EQ(viewed, lines);
}

}  // namespace
}  // namespace orvane::tests
