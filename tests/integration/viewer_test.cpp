#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

class StoppedViewer : public testing::TestWithParam<int> {};

TEST_P(StoppedViewer, EndsWithSuccessAndASummary) {
    Application application;
    Viewer viewer{{"--category", "[np]*", "--app", application.ask("identity")}};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();
    ASSERT_EQ(application.ask("log 600 3 1000"), "log");
    ASSERT_TRUE(application.say(600, "other", "not asked for"));
    ASSERT_EQ(application.ask("log 600 1 1000"), "log");
    ASSERT_TRUE(viewer.wait_for(4, numbered_category));

    viewer.process().send_signal(GetParam());
    EXPECT_EQ(viewer.process().wait_for_end(), "exit 0");
    const Output output = viewer.process().output();
    ASSERT_EQ(output.error.size(), 1U) << viewer.process().transcript();
    const std::string messages = std::to_string(output.out.size());
    const std::string& summary = output.error.front();
    EXPECT_TRUE(summary.starts_with("orvane: " + messages + " messages of 1 application in "))
        << summary;
    EXPECT_TRUE(summary.ends_with(" s, 1 not asked for")) << summary;
}

INSTANTIATE_TEST_SUITE_P(Signals, StoppedViewer, testing::Values(SIGINT, SIGTERM));

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
