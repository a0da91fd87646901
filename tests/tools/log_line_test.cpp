#include "tools/text/log_line.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>
#include <string>

namespace orvane::tools {
namespace {

// 2026-01-31 12:00:00 UTC.
constexpr std::int64_t noon = 1'769'860'800'000'000'000;

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
        {record(-1, -5, "", "x"), "1969-12-31 23:59:59.999999Z -5      0a141e28:0000c350 x\n"},
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
    unsetenv("TZ");
    tzset();
}

TEST(TextLine, PaintsTheWholeLineBySeverityAndResetsThePaint) {
    const struct {
        std::int32_t level;
        std::string paint;
    } cases[] = {{200, "\x1b[1;31m"}, {300, "\x1b[31m"}, {301, "\x1b[33m"}, {400, "\x1b[33m"},
                 {500, "\x1b[36m"},   {600, ""},         {601, "\x1b[2m"}};
    for (const auto& each : cases) {
        const LogRecord painted = record(noon, each.level, "nav", "ready\n");
        std::string plain = text_line(painted, {.color = false, .utc = true});
        plain.pop_back();
        EXPECT_EQ(text_line(painted, {.color = true, .utc = true}),
                  each.paint + plain + (each.paint.empty() ? "" : "\x1b[0m") + "\n")
            << each.level;
    }
}

TEST(JsonLine, HoldsEveryFieldOfTheMessage) {
    EXPECT_EQ(json_line(record(-1, -5, "nav", "gate \"7\"\n")),
              R"({"time":"1969-12-31T23:59:59.999999999Z","level":-5,"level_name":"-5",)"
              R"("app":"0a141e28:0000c350","host_id":169090600,"app_id":50000,)"
              R"("category":"nav","message":"gate \"7\"\n"})"
              "\n");
}

TEST(JsonLine, IsOneLineOfAsciiWhateverTheMessageHolds) {
    const std::string text = "\x1b[2J\n\u009b2J\u202e a\xffz\xe2\x82";
    std::string line = json_line(record(noon, 600, text, text));
    ASSERT_EQ(line.back(), '\n');
    line.pop_back();
    for (const char byte : line) {
        EXPECT_TRUE(byte >= ' ' && byte < '\x7f') << line;
    }
    const auto object = nlohmann::json::parse(line);
    EXPECT_EQ(object["category"], "\x1b[2J\n\u009b2J\u202e a\ufffdz\ufffd");
    EXPECT_EQ(object["message"], object["category"]);
}

}  // namespace
}  // namespace orvane::tools
