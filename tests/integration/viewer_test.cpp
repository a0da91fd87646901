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

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value >> 4U];
        text += digits[value & 0xFU];
    }
    return text.empty() ? "-" : text;
}

std::string say(int level, std::string_view category, std::string_view text) {
    return "say " + std::to_string(level) + ' ' + hexadecimal(category) + ' ' + hexadecimal(text);
}

class StoppedViewer : public testing::TestWithParam<int> {};

TEST_P(StoppedViewer, EndsWithSuccessAndASummary) {
    Viewer viewer{domain_id, {"--category", "[np]*"}};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();
    ASSERT_EQ(application.ask("log 600 3 1000"), "log");
    ASSERT_EQ(application.ask(say(600, "other", "not asked for")), "say");
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

    ASSERT_EQ(application.ask(say(600, "a\x1b]0;owned\a",
                                  "\x1b[2J\x9b"
                                  "31m\u202egpj.exe\n2026-01-31 all is well\r\xe2\x82")),
              "say");
    ASSERT_EQ(application.ask(say(600, "", "the end")), "say");
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
    struct Case {
        std::size_t category;
        std::size_t text;
    };
    constexpr Case cases[] = {{1, 0}, {31, 127}, {32, 128}, {512, 4096}, {513, 4097}, {600, 5000}};
    Viewer viewer{domain_id};
    Application application{domain_id};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    char letter = 'a';
    for (const Case& each : cases) {
        const std::string category(each.category, letter);
        const std::string text(each.text, letter);
        ++letter;
        ASSERT_EQ(application.ask(say(600, category, text)), "say");
        const std::string shown = category.substr(0, 512);
        ASSERT_TRUE(viewer.wait_for(1, shown, patience)) << each.category;
        EXPECT_EQ(viewer.messages(shown).front().text, text.substr(0, 4096));
    }
}

TEST(Viewer, ShowsOneApplicationOnlyWhenAskedTo) {
    Viewer all{domain_id};
    Application chosen{domain_id};
    Application other{domain_id};
    ASSERT_TRUE(connect(chosen, all)) << all.process().transcript();
    ASSERT_TRUE(connect(other, all)) << all.process().transcript();
    Viewer one{domain_id, {"--app", chosen.ask("identity"), "--level", "WARNING"}};
    ASSERT_TRUE(connect(chosen, one)) << one.process().transcript();

    ASSERT_EQ(other.ask(say(400, "other", "a warning")), "say");
    ASSERT_TRUE(all.wait_for(1, "other", patience));
    ASSERT_EQ(chosen.ask(say(500, "chosen", "a notice")), "say");
    ASSERT_EQ(chosen.ask(say(400, "chosen", "a warning")), "say");
    ASSERT_TRUE(one.wait_for(1, "chosen", patience));

    EXPECT_EQ(one.messages("other").size(), 0U);
    EXPECT_EQ(one.messages("chosen").size(), 1U);
    EXPECT_EQ(one.messages("chosen").front().text, "a warning");
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
