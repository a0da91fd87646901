#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;

class StoppedViewer : public testing::TestWithParam<int> {};

TEST_P(StoppedViewer, EndsWithSuccessAndASummary) {
    Application application{domain_id};
    Viewer viewer{domain_id, {"--category", "[np]*", "--app", application.ask("identity")}};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();
    ASSERT_EQ(application.ask("log 600 3 1000"), "log");
    ASSERT_TRUE(application.say(600, "other", "not asked for"));
    ASSERT_EQ(application.ask("log 600 1 1000"), "log");
    ASSERT_TRUE(viewer.wait_for(4, numbered_category, patience));

    viewer.process().send_signal(GetParam());

    EXPECT_EQ(viewer.process().wait_for_end(patience), "exit 0");
    const Output output = viewer.process().output();
    ASSERT_EQ(output.error.size(), 1U) << viewer.process().transcript();
    const std::string messages = std::to_string(output.out.size());
    const std::string& summary = output.error.front();
    EXPECT_TRUE(summary.starts_with("orvane: " + messages + " messages of 1 application in "))
        << summary;
    EXPECT_TRUE(summary.ends_with(" s, 1 not asked for")) << summary;
}

INSTANTIATE_TEST_SUITE_P(Signals, StoppedViewer, testing::Values(SIGINT, SIGTERM));

TEST(Viewer, ShowsHostileMessagesWithoutObeyingThem) {
    Viewer guide{domain_id};
    ChildProcess viewer{tool_command({"tail", "--utc", "--domain", std::to_string(domain_id)})};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, guide)) << guide.process().transcript();

    ASSERT_TRUE(application.say(600, "a\x1b]0;owned\a",
                                "\x1b[2J\x9b"
                                "31m\u202egpj.exe\n2026-01-31 all is well\r\xe2\x82"));
    ASSERT_TRUE(application.say(600, "", "the end"));
    ASSERT_TRUE(viewer.wait_until(
        [](const Output& output) {
            return !output.out.empty() && output.out.back().ends_with(" the end");
        },
        patience));

    const std::vector<std::string> lines = viewer.output().out;
    ASSERT_GE(lines.size(), 2U);
    const std::string& hostile = lines[lines.size() - 2];
    EXPECT_TRUE(
        hostile.ends_with("[a\\x1b]0;owned\\x07] \\x1b[2J\\x9b31m\\xe2\\x80\\xaegpj.exe"
                          "\\n2026-01-31 all is well\\r\\xe2\\x82"))
        << hostile;
    for (const std::string& line : lines) {
        for (const char byte : line) {
            EXPECT_TRUE(byte >= ' ' && byte < '\x7f') << line;
        }
    }
}

TEST(Viewer, GetsTextsWholeUpToTheirBounds) {
    constexpr struct {
        std::size_t category;
        std::size_t text;
    } cases[] = {{1, 0}, {31, 127}, {32, 128}, {512, 4096}, {513, 4097}};
    Viewer viewer{domain_id};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    char letter = 'a';
    for (const auto& each : cases) {
        const std::string category(each.category, letter);
        const std::string text(each.text, letter);
        ++letter;
        ASSERT_TRUE(application.say(600, category, text));
        const std::string shown = category.substr(0, 512);
        ASSERT_TRUE(viewer.wait_for(1, shown, patience)) << each.category;
        EXPECT_EQ(viewer.messages(shown).front().text, text.substr(0, 4096));
    }
}

TEST(Viewer, EndsAfterTheCountThatWasAskedFor) {
    Viewer guide{domain_id};
    ChildProcess viewer{
        tool_command({"tail", "--count", "3", "--domain", std::to_string(domain_id)})};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, guide)) << guide.process().transcript();

    ASSERT_EQ(application.ask("log 600 10 1000"), "log");

    EXPECT_EQ(viewer.wait_for_end(patience), "exit 0") << viewer.transcript();
    EXPECT_EQ(viewer.output().out.size(), 3U) << viewer.transcript();
}

TEST(Viewer, FailsWhenItsOutputCannotBeWritten) {
    Viewer guide{domain_id};
    const std::string program = tool_command({}).front();
    ChildProcess viewer{
        {"/bin/sh", "-c",
         "exec '" + program + "' tail --domain " + std::to_string(domain_id) + " > /dev/full"}};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, guide)) << guide.process().transcript();

    EXPECT_EQ(viewer.wait_for_end(patience), "exit 1");
    const Output output = viewer.output();
    ASSERT_FALSE(output.error.empty());
    EXPECT_EQ(output.error.back(), "orvane: could not write: No space left on device");
}

}  // namespace
}  // namespace orvane::tests
