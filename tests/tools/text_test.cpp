#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>
#include <string_view>

#include "tests/tools/fake_domain.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/json_line.hpp"
#include "tools/text/log_line.hpp"
#include "tools/text/logger_text.hpp"

namespace orvane::tools {
namespace {

using namespace std::string_view_literals;

constexpr struct {
    const char* what;
    std::string_view text;
    std::string_view displayed;
} texts[] = {
    // Well-formed text passes.
    {"empty", "", ""},
    {"printable ASCII; a backslash is no escape", " azAZ09~\\n", " azAZ09~\\n"},
    {"smallest and largest of each size, around the surrogates",
     "\u00a0\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff",
     "\u00a0\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff"},
    {"neighbours of hidden characters", "\u061b\u061d\u2010\u2027\u202f\u205f\u2070\ufffd",
     "\u061b\u061d\u2010\u2027\u202f\u205f\u2070\ufffd"},
    // One newline at the end is dropped, others show.
    {"only a newline", "\n", ""},
    {"newlines within and at the end", "rea\ndy\n\n", "rea\\ndy\\n"},
    {"with a carriage return", "ready\r\n", "ready\\r"},
    // Controls of a terminal show.
    {"escape sequences", "\x1b[2J\x1b]0;title\a", "\\x1b[2J\\x1b]0;title\\x07"},
    {"tabulator, unit separator, delete, NUL", "\t\x1f\x7f\0b"sv, "\\t\\x1f\\x7f\\x00b"},
    {"C1 as a character", "\u0080\u009b2J\u009f", "\\xc2\\x80\\xc2\\x9b2J\\xc2\\x9f"},
    {"C1 as a byte",
     "\x9b"
     "2J",
     "\\x9b2J"},
    // Marks that reorder or hide text show.
    {"letter mark, zero width", "\u061c\u200b\u200f\ufeff",
     "\\xd8\\x9c\\xe2\\x80\\x8b\\xe2\\x80\\x8f\\xef\\xbb\\xbf"},
    {"separators to overrides", "\u2028\u202e", "\\xe2\\x80\\xa8\\xe2\\x80\\xae"},
    {"word joiner to isolates", "\u2060\u206f", "\\xe2\\x81\\xa0\\xe2\\x81\\xaf"},
    {"annotation", "\ufff9\ufffb", "\\xef\\xbf\\xb9\\xef\\xbf\\xbb"},
    // Every byte that is not UTF-8 shows, and the decoder goes on behind it.
    {"continuation alone", "a\x80z", "a\\x80z"},
    {"overlong escape character", "\xc1\x9b", "\\xc1\\x9b"},
    {"overlong of three", "\xe0\x9f\xbf", "\\xe0\\x9f\\xbf"},
    {"overlong of four", "\xf0\x8f\xbf\xbf", "\\xf0\\x8f\\xbf\\xbf"},
    {"first and last surrogate", "\xed\xa0\x80\xed\xbf\xbf", "\\xed\\xa0\\x80\\xed\\xbf\\xbf"},
    {"beyond the last character", "\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
    {"lead bytes that never occur", "\xf5\xff", "\\xf5\\xff"},
    {"cut by the end of the view, not of the memory", "\xc3\xa9"sv.substr(0, 1), "\\xc3"},
    {"cut after three of four", "\xf0\x9f\x98", "\\xf0\\x9f\\x98"},
    {"cut by a newline at the end", "\xe2\x82\n", "\\xe2\\x82"},
    {"cut by a whole character", "\xe2\xc3\xa9", "\\xe2\u00e9"},
};

TEST(DisplayText, PassesTextThatIsHarmlessAndEscapesTheRest) {
    for (const auto& each : texts) {
        std::string line = "> ";
        append_displayable(line, each.text);
        EXPECT_EQ(line, "> " + std::string{each.displayed}) << each.what;
    }
}

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

LoggerState hostile_logger() {
    LoggerState logger = logger_state(0xfffffffe, "p\x1b[2J\u00fcmp\n\xff");
    logger.state = QEL_KX_STATE_NONOPERATIONAL;
    logger.filter_level = 650;
    logger.domain_id = -7;
    logger.verbosities[1] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE;
    logger.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL;
    return logger;
}

TEST(LoggerText, StandsInColumnsThatNoKindCanDisturb) {
    // clang-format off
    EXPECT_EQ(logger_table({logger_state(1, ""), hostile_logger()}, {}),
        "LOGGER             KIND               STATE           LEVEL  DOMAIN  PLATFORM  COMMUNICATION  DATABASE  ENTITIES  API    FORMAT\n"
        "0a141e28:00000001  -                  OPERATIONAL     INFO   0       ERROR     ERROR          ERROR     ERROR     ERROR  DEFAULT\n"
        "0a141e28:fffffffe  p\\x1b[2J\u00fcmp\\n\\xff  NONOPERATIONAL  650    -7      ERROR     STATUS_REMOTE  ERROR     ERROR     ERROR  MAXIMAL\n");
    // clang-format on
}

TEST(LoggerText, TellsProgramsEverythingInOneLineOfAscii) {
    EXPECT_EQ(
        json_line({LoggerChange::Kind::changed, logger_state(1, "pump"), hostile_logger()}, 1),
        R"({"event":"changed","time":"1970-01-01T00:00:00.000000001Z",)"
        R"("app":"0a141e28:fffffffe","host_id":169090600,"app_id":4294967294,)"
        R"("kind":"p\u001b[2J\u00fcmp\n\ufffd","state":"NONOPERATIONAL","filter_level":650,)"
        R"("filter_level_name":"650","domain":-7,"verbosities":{"platform":"ERROR",)"
        R"("communication":"STATUS_REMOTE","database":"ERROR","entities":"ERROR",)"
        R"("api":"ERROR"},"print_format":"MAXIMAL"})"
        "\n");
}

TEST(LoggerText, TellsPeopleWhatHasChanged) {
    const LoggerState pump = logger_state(1, "pump");
    LoggerState renamed = pump;
    renamed.kind = "mill";
    LoggerState other = pump;
    other.state = QEL_KX_STATE_NONOPERATIONAL;
    other.filter_level = 0;
    other.verbosities[4] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT;
    other.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL;
    const struct {
        LoggerChange change;
        const char* says;
    } cases[] = {
        {{LoggerChange::Kind::appeared, pump, pump},
         " appeared 0a141e28:00000001 pump  OPERATIONAL, filter level INFO\n"},
        {{LoggerChange::Kind::changed, pump, other},
         " changed  0a141e28:00000001 pump  state OPERATIONAL -> NONOPERATIONAL, filter level INFO "
         "-> SILENT, API ERROR -> SILENT, print format DEFAULT -> MINIMAL\n"},
        {{LoggerChange::Kind::changed, pump, renamed},
         " changed  0a141e28:00000001 mill  application kind or domain\n"},
        {{LoggerChange::Kind::gone, other, other}, " gone     0a141e28:00000001 pump  ended\n"},
        {{LoggerChange::Kind::gone, pump, pump}, " gone     0a141e28:00000001 pump  lost\n"},
    };
    for (const auto& each : cases) {
        EXPECT_TRUE(change_line(each.change, 0).ends_with(each.says))
            << change_line(each.change, 0);
    }
}

TEST(LoggerText, ShowsOfAnOutcomeWhatTheCommandWasAbout) {
    const LoggerState before = logger_state(1, "pump");
    LoggerState now = before;
    now.filter_level = 700;
    now.verbosities[1] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING;
    now.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG;
    const CommandOutcome outcome{
        .before = before, .now = now, .result = QEL_KX_COMMAND_RESULT_OK, .message = {}};
    const SetVerbosities verbosities{
        {{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION,
          QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING}}};
    EXPECT_EQ(outcome_line(outcome, verbosities, 5s),
              "0a141e28:00000001 pump  API ERROR, COMMUNICATION ERROR -> WARNING\n");
    EXPECT_EQ(outcome_line(outcome, SetPrintFormat{QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG}, 5s),
              "0a141e28:00000001 pump  print format DEFAULT -> DEBUG\n");
}

}  // namespace
}  // namespace orvane::tools
