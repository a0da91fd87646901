#include "tools/text/log_line.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>
#include <string>

namespace orvane::tools {
namespace {

constexpr std::int64_t second = 1'000'000'000;
// 2026-01-31 12:00:00 UTC.
constexpr std::int64_t noon = 1'769'860'800 * second;

LogRecord record(std::int64_t nanoseconds, std::int32_t level, std::string category,
                 std::string message) {
    return {.nanoseconds = nanoseconds,
            .application = {0x0a141e28, 0xc350},
            .level = level,
            .category = std::move(category),
            .message = std::move(message)};
}

TEST(TextLine, ShowsTimeLevelApplicationCategoryAndMessage) {
    const struct {
        LogRecord record;
        const char* line;
    } cases[] = {
        {record(noon + 123'456'789, 600, "nav", "ready"),
         "2026-01-31 12:00:00.123456Z INFO    0a141e28:0000c350 [nav] ready\n"},
        {record(noon + 999'999'999, 400, "", "closed\n"),
         "2026-01-31 12:00:00.999999Z WARNING 0a141e28:0000c350 closed\n"},
        {record(noon, 350, "", ""), "2026-01-31 12:00:00.000000Z 350     0a141e28:0000c350 \n"},
        {record(0, -5, "", "x"), "1970-01-01 00:00:00.000000Z -5      0a141e28:0000c350 x\n"},
        {record(-1, 600, "", "x"), "1969-12-31 23:59:59.999999Z INFO    0a141e28:0000c350 x\n"},
        {record(2'147'483'647 * second, 600, "", "x"),
         "2038-01-19 03:14:07.000000Z INFO    0a141e28:0000c350 x\n"},
        {record(noon, 600, "a]\x1b[0m", "b\nc\x9b"),
         "2026-01-31 12:00:00.000000Z INFO    0a141e28:0000c350 [a]\\x1b[0m] b\\nc\\x9b\n"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(text_line(each.record, {.color = false, .utc = true}), each.line);
    }
}

TEST(TextLine, ShowsLocalTimeUnlessUniversalTimeIsAskedFor) {
    // The zone's name reads backwards: this one is three hours ahead.
    setenv("TZ", "TEST-3", 1);
    tzset();
    EXPECT_EQ(text_line(record(noon, 600, "", "x"), {}),
              "2026-01-31 15:00:00.000000 INFO    0a141e28:0000c350 x\n");
    EXPECT_EQ(text_line(record(noon, 600, "", "x"), {.color = false, .utc = true}),
              "2026-01-31 12:00:00.000000Z INFO    0a141e28:0000c350 x\n");
    unsetenv("TZ");
    tzset();
}

TEST(TextLine, PaintsTheWholeLineBySeverityAndResetsThePaint) {
    const struct {
        std::int32_t level;
        std::string begin;
        std::string end;
    } cases[] = {
        {-5, "\x1b[1;31m", "\x1b[0m"},
        {100, "\x1b[1;31m", "\x1b[0m"},
        {300, "\x1b[31m", "\x1b[0m"},
        {350, "\x1b[33m", "\x1b[0m"},
        {400, "\x1b[33m", "\x1b[0m"},
        {500, "\x1b[36m", "\x1b[0m"},
        {600, "", ""},
        {700, "\x1b[2m", "\x1b[0m"},
        {900, "\x1b[2m", "\x1b[0m"},
    };
    for (const auto& each : cases) {
        const LogRecord painted = record(noon, each.level, "nav", "ready\n");
        std::string plain = text_line(painted, {.color = false, .utc = true});
        plain.pop_back();
        EXPECT_EQ(text_line(painted, {.color = true, .utc = true}),
                  each.begin + plain + each.end + "\n")
            << each.level;
    }
}

TEST(JsonLine, HoldsEveryFieldOfTheMessage) {
    EXPECT_EQ(json_line(record(noon + 5, 600, "nav", "gate \"7\"\n")),
              R"({"time":"2026-01-31T12:00:00.000000005Z","level":600,"level_name":"INFO",)"
              R"("app":"0a141e28:0000c350","host_id":169090600,"app_id":50000,)"
              R"("category":"nav","message":"gate \"7\"\n"})"
              "\n");
    const auto unnamed = nlohmann::json::parse(json_line(record(-1, -5, "", "")));
    EXPECT_EQ(unnamed["time"], "1969-12-31T23:59:59.999999999Z");
    EXPECT_EQ(unnamed["level"], -5);
    EXPECT_EQ(unnamed["level_name"], "-5");
    EXPECT_EQ(unnamed["category"], "");
    EXPECT_EQ(unnamed["message"], "");
}

TEST(JsonLine, IsOneLineOfAsciiWhateverTheMessageHolds) {
    const struct {
        const char* what;
        std::string text;
        std::string read_back;
    } cases[] = {
        {"letters of the world", "Stra\u00dfe \u4e2d \U0001f600", "Stra\u00dfe \u4e2d \U0001f600"},
        {"control characters", "\x1b[2J\r\n\t\x7f", "\x1b[2J\r\n\t\x7f"},
        {"C1 and an override", "\u009b2J\u202e", "\u009b2J\u202e"},
        {"a byte that is not UTF-8", "a\xffz", "a\ufffdz"},
        {"a cut character", "a\xe2\x82", "a\ufffd"},
        {"a surrogate", "\xed\xa0\x80", "\ufffd\ufffd\ufffd"},
    };
    for (const auto& each : cases) {
        std::string line = json_line(record(noon, 600, each.text, each.text));
        ASSERT_EQ(line.back(), '\n') << each.what;
        line.pop_back();
        for (const char byte : line) {
            EXPECT_TRUE(byte >= ' ' && byte < '\x7f') << each.what << ": " << line;
        }
        const auto object = nlohmann::json::parse(line);
        EXPECT_EQ(object["category"], each.read_back) << each.what;
        EXPECT_EQ(object["message"], each.read_back) << each.what;
    }
}

}  // namespace
}  // namespace orvane::tools
