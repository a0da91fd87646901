#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/tools/fake_domain.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/json_line.hpp"
#include "tools/text/log_line.hpp"
#include "tools/text/logger_name.hpp"
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

const Logger pump{.application = {0x0a141e28, 0xc350},
                  .kind = "pump",
                  .host = "robot2",
                  .process = "planner",
                  .process_id = 4711};

Logger numbered(std::uint32_t number) {
    Logger logger = pump;
    logger.application.app_id += number - 1;
    logger.number = number;
    return logger;
}

Logger of_kind(std::string kind) {
    Logger logger;
    logger.application = pump.application;
    logger.kind = std::move(kind);
    return logger;
}

MessageEvent message(std::int64_t nanoseconds, std::int32_t level, std::string category,
                     std::string text, const Logger& logger = pump) {
    return {.record = {.nanoseconds = nanoseconds,
                       .application = logger.application,
                       .level = level,
                       .category = std::move(category),
                       .message = std::move(text)},
            .logger = logger};
}

std::string line_of(const MessageEvent& event, const LineStyle& style, std::size_t width = 0) {
    return LogLines{style}.line(event, width);
}

TEST(TextLine, ShowsTimeLevelLoggerCategoryAndMessage) {
    const struct {
        MessageEvent event;
        const char* line;
    } cases[] = {
        {message(noon + 123'456'789, 600, "nav", "ready"),
         "2026-01-31 12:00:00.123456Z INFO    pump [nav] ready\n"},
        {message(noon + 999'999'999, 400, "", "closed\n", numbered(2)),
         "2026-01-31 12:00:00.999999Z WARNING pump#2 closed\n"},
        {message(noon, 350, "", "", of_kind("")),
         "2026-01-31 12:00:00.000000Z 350     0a141e28:0000c350 \n"},
        {message(-1, -5, "", "x"), "1969-12-31 23:59:59.999999Z -5      pump x\n"},
        {message(noon, 600, "a]\x1b[0m", "b\nc\x9b", of_kind("p\x1b[2J")),
         "2026-01-31 12:00:00.000000Z INFO    p\\x1b[2J [a]\\x1b[0m] b\\nc\\x9b\n"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(line_of(each.event, {.color = false, .utc = true}), each.line);
    }
}

TEST(TextLine, ShowsLocalTimeUnlessUniversalTimeIsAskedFor) {
    // The zone's name reads backwards: this one is three hours ahead.
    setenv("TZ", "TEST-3", 1);
    tzset();
    EXPECT_EQ(line_of(message(noon, 600, "", "x"), {}),
              "2026-01-31 15:00:00.000000 INFO    pump x\n");
    unsetenv("TZ");
    tzset();
}

TEST(TextLine, ShowsTheFormOfTimesThatIsAskedFor) {
    const struct {
        TimeFormat format;
        std::vector<std::string> times;
    } cases[] = {
        {TimeFormat::relative, {"    0.000000", "    1.500000", "   -0.250000"}},
        {TimeFormat::delta, {"    0.000000", "    1.500000", "   -1.750000"}},
        {TimeFormat::iso,
         {"2026-01-31T12:00:00.000000000Z", "2026-01-31T12:00:01.500000000Z",
          "2026-01-31T11:59:59.750000000Z"}},
    };
    for (const auto& each : cases) {
        LogLines lines{{.time = each.format}};
        EXPECT_EQ(lines.line(message(noon, 600, "", "x"), 0), each.times[0] + " INFO    pump x\n");
        EXPECT_EQ(lines.line(message(noon + 1'500'000'000, 600, "", "x"), 0),
                  each.times[1] + " INFO    pump x\n");
        EXPECT_EQ(lines.line(message(noon - 250'000'000, 600, "", "x"), 0),
                  each.times[2] + " INFO    pump x\n");
    }
}

TEST(TextLine, KeepsTheColumnOfNamesAsWideAsTheWidestSoFar) {
    LogLines lines{{.ids = true, .time = TimeFormat::delta}};
    const std::string beyond(25, 'm');
    LogLines without_ids{{.time = TimeFormat::delta}};
    EXPECT_EQ(without_ids.line(message(noon, 600, "", "x", of_kind("")), 0),
              "    0.000000 INFO    0a141e28:0000c350 x\n");
    EXPECT_EQ(without_ids.line(message(noon, 600, "", "x"), 0), "    0.000000 INFO    pump x\n");
    const struct {
        Logger logger;
        std::string columns;
    } steps[] = {
        {of_kind(""), "- 0a141e28:0000c350"},
        {of_kind("p\u00fcmp"), "p\u00fcmp 0a141e28:0000c350"},
        {numbered(2), "pump#2 0a141e28:0000c351"},
        {of_kind("\u6cf5"), "\u6cf5     0a141e28:0000c350"},
        {of_kind(beyond), beyond + " 0a141e28:0000c350"},
        {pump, "pump" + std::string(20, ' ') + " 0a141e28:0000c350"},
    };
    for (const auto& step : steps) {
        EXPECT_EQ(lines.line(message(noon, 600, "", "x", step.logger), 0),
                  "    0.000000 INFO    " + step.columns + " x\n");
    }
}

TEST(TextLine, BreaksBetweenWordsBehindTheColumnsOfATerminal) {
    const std::string start = "    0.000000 INFO    pump ";
    const std::string indent(start.size(), ' ');
    const struct {
        const char* what;
        std::size_t room;
        const char* text;
        std::vector<std::string> lines;
    } cases[] = {
        {"fits", 24, "123456789 123456789 1234", {"123456789 123456789 1234"}},
        {"a word too many", 24, "123456789 123456789 12345", {"123456789 123456789", "12345"}},
        {"a space too many", 24, "123456789 123456789 1234 5", {"123456789 123456789 1234", "5"}},
        {"one long word",
         24,
         "12345678901234567890123456789012345678901234567890",
         {"123456789012345678901234", "567890123456789012345678", "90"}},
        {"wide characters and marks",
         24,
         "\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5a\u0301b\u6cf5",
         {"\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5\u6cf5a\u0301b", "\u6cf5"}},
    };
    for (const auto& each : cases) {
        std::string expected;
        for (const std::string& line : each.lines) {
            expected += (expected.empty() ? start : indent) + line + "\n";
        }
        EXPECT_EQ(line_of(message(noon, 600, "", each.text), {.time = TimeFormat::delta},
                          start.size() + each.room),
                  expected)
            << each.what;
    }
    EXPECT_EQ(line_of(message(noon, 600, "", "a narrow one"), {.time = TimeFormat::delta}, 30),
              "    0.000000 INFO    pump a\n    narrow one\n");
}

TEST(TextLine, PaintsTheWholeLineBySeverityAndResetsThePaint) {
    const struct {
        std::int32_t level;
        std::string paint;
    } cases[] = {{200, "\x1b[1;31m"}, {300, "\x1b[31m"}, {301, "\x1b[33m"}, {400, "\x1b[33m"},
                 {500, "\x1b[36m"},   {600, ""},         {601, "\x1b[2m"}};
    for (const auto& each : cases) {
        const MessageEvent painted = message(noon, each.level, "", "ready\n");
        std::string plain = line_of(painted, {.color = false, .utc = true});
        plain.pop_back();
        EXPECT_EQ(line_of(painted, {.color = true, .utc = true}),
                  each.paint + plain + (each.paint.empty() ? "" : "\x1b[0m") + "\n")
            << each.level;
    }
}

TEST(TextLine, PaintsTheLastPartOfTheCategoryByTheLogger) {
    const LineStyle style{.color = true, .time = TimeFormat::delta};
    const std::string first = line_of(message(noon, 400, "nav.route", "closed"), style);
    const std::string paint = first.substr(first.find("\x1b[38;5;"), 11);
    EXPECT_EQ(first, "\x1b[33m    0.000000 WARNING pump [nav.\x1b[0m" + paint +
                         "route\x1b[0m\x1b[33m] closed\x1b[0m\n");
    EXPECT_EQ(line_of(message(noon, 600, "gate", "open"), style),
              "    0.000000 INFO    pump [" + paint + "gate\x1b[0m] open\n");
    // The escape sequences take no room.
    EXPECT_EQ(line_of(message(noon, 400, "nav.route", "closed"), style, 45), first);
    EXPECT_EQ(line_of(message(noon, 600, "gate", "open", of_kind("planner")), style).find(paint),
              std::string::npos);
}

TEST(LoggerNames, AreExplainedOnceThereAreSeveralOfAKind) {
    Logger unknown = numbered(3);
    unknown.host = "";
    unknown.process = "";
    unknown.process_id = 0;
    Logger sharing = unknown;
    sharing.application.instance_id = 7;
    sharing.number = 4;
    const std::string first =
        "--- pump is 0a141e28:0000c350, process 4711 (planner) on host robot2 ---\n";
    const struct {
        Logger logger;
        std::string lines;
    } steps[] = {
        {pump, ""},
        {of_kind("mill"), ""},
        {of_kind(""), ""},
        {numbered(2),
         first + "--- pump#2 is 0a141e28:0000c351, process 4711 (planner) on host robot2 ---\n"},
        {pump, ""},
        {unknown, "--- pump#3 is 0a141e28:0000c352 ---\n"},
        {sharing, "--- pump#4 is 0a141e28:0000c352:00000007 ---\n"},
    };
    Introductions introductions;
    for (const auto& step : steps) {
        EXPECT_EQ(introductions.meet(step.logger), step.lines) << name_of(step.logger);
    }
}

TEST(LossLine, NamesTheCausesThatThereWere) {
    const struct {
        LossEvent loss;
        const char* line;
    } cases[] = {
        {{0, pump, 30, 0, 0, 7}, "--- 37 messages of pump lost: 30 queue full, 7 on the way ---\n"},
        {{0, of_kind(""), 0, 1, 0, 0},
         "--- 1 message of 0a141e28:0000c350 lost: 1 no memory ---\n"},
        {{0, numbered(2), 1, 2, 3, 4},
         "--- 10 messages of pump#2 lost: 1 queue full, 2 no memory, 3 discarded, 4 on the way "
         "---\n"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(loss_line(each.loss), each.line);
    }
    const std::string json = json_line(LossEvent{0, pump, 1, 2, 3, 4});
    EXPECT_TRUE(json.starts_with(R"({"type":"loss","time":"1970-)")) << json;
    EXPECT_TRUE(json.ends_with(R"("pid":4711,"lost":10,"queue_full":1,"no_memory":2,)"
                               R"("discarded":3,"on_the_way":4})"
                               "\n"))
        << json;
}

TEST(JsonLine, HoldsEveryFieldOfTheMessage) {
    EXPECT_EQ(json_line(message(-1, -5, "nav", "gate \"7\"\n")),
              R"({"type":"message","time":"1969-12-31T23:59:59.999999999Z","level":-5,)"
              R"("level_name":"-5","app":"0a141e28:0000c350","host_id":169090600,"app_id":50000,)"
              R"("kind":"pump","host":"robot2","process":"planner","pid":4711,)"
              R"("category":"nav","message":"gate \"7\"\n"})"
              "\n");
    const std::string second = json_line(message(noon, 600, "", "", numbered(2)));
    EXPECT_NE(second.find(R"("kind":"pump","number":2,"host")"), std::string::npos) << second;
}

TEST(JsonLine, IsOneLineOfAsciiWhateverTheMessageHolds) {
    const std::string text = "\x1b[2J\b\f\n\r\t\\\"/\x7f\u009b2J\u202e\U0001F600 a\xffz\xe2\x82";
    std::string line = json_line(message(noon, 600, text, text));
    ASSERT_EQ(line.back(), '\n');
    line.pop_back();
    for (const char byte : line) {
        EXPECT_TRUE(byte >= ' ' && byte < '\x7f') << line;
    }
    const auto object = nlohmann::json::parse(line);
    EXPECT_EQ(object["category"],
              "\x1b[2J\b\f\n\r\t\\\"/\x7f\u009b2J\u202e\U0001F600 a\ufffdz\ufffd\ufffd");
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
    const LoggerState hostile = hostile_logger();
    const std::vector<LoggerEntry> entries = {
        {logger_state(1, ""), of_kind(""), ""},
        {hostile,
         {.application = hostile.application,
          .kind = hostile.kind,
          .number = 2,
          .host = "a\nb",
          .process = ""},
         ""},
    };
    // clang-format off
    EXPECT_EQ(logger_table(entries, {}),
        "KIND                 HOST  PROCESS  PID  LOGGER             STATE           LEVEL  DOMAIN  PLATFORM  COMMUNICATION  DATABASE  ENTITIES  API    FORMAT\n"
        "-                    -     -        -    0a141e28:0000c350  OPERATIONAL     INFO   0       ERROR     ERROR          ERROR     ERROR     ERROR  DEFAULT\n"
        "p\\x1b[2J\u00fcmp\\n\\xff#2  a\\nb  -        -    0a141e28:fffffffe  NONOPERATIONAL  650    -7      ERROR     STATUS_REMOTE  ERROR     ERROR     ERROR  MAXIMAL\n");
    // clang-format on
}

TEST(LoggerText, ShowsTrafficWhereThereAreStatistics) {
    LoggerTraffic traffic;
    traffic.last.now = {.published = 70, .queue_full = 4, .no_memory = 2, .discarded = 1};
    traffic.last.queued = 3;
    traffic.last.queue_size = 128;
    traffic.rate = 12.6;
    const std::string table = logger_table({{logger_state(1, "pump"), pump, "", traffic},
                                            {logger_state(2, "mute"), of_kind("mute"), ""}},
                                           {});
    const auto has = [&](const char* cells) { return table.find(cells) != std::string::npos; };
    EXPECT_TRUE(has("LEVEL  RATE  QUEUE  LOST  DOMAIN")) << table;
    EXPECT_TRUE(has("INFO   13/s  3/128  7     0")) << table;
    EXPECT_TRUE(has("INFO   -     -      -     0")) << table;
}

TEST(LoggerText, CutsNamesAndLeavesColumnsOutToFitATerminal) {
    Logger far = pump;
    far.host = "a-very-long-name-of-a-host";
    const std::vector<LoggerEntry> entries = {{logger_state(0xc350, "pump"), far, "10.0.0.1"}};
    const std::string columns = "pump  a-very-long-name-of-a-host  planner  4711  ";
    const std::string wide = logger_table(entries, {.wide = true, .width = 10});
    EXPECT_NE(wide.find("\n" + columns + "0a141e28:0000c350  "), std::string::npos) << wide;
    EXPECT_NE(wide.find("  10.0.0.1\n"), std::string::npos) << wide;
    // clang-format off
    EXPECT_EQ(logger_table(entries, {.width = 80}),
        "KIND  HOST          PROCESS  PID   LOGGER             STATE        LEVEL  DOMAIN\n"
        "pump  a-very-long…  planner  4711  0a141e28:0000c350  OPERATIONAL  INFO   0\n"
        "6 more columns with --wide\n");
    EXPECT_EQ(logger_table(entries, {.width = 20}),
        "KIND  HOST      PROCESS  PID   LOGGER\n"
        "pump  a-very-…  planner  4711  0a141e28:0000c350\n"
        "9 more columns with --wide\n");
    // clang-format on
}

TEST(LoggerText, TellsProgramsEverythingInOneLineOfAscii) {
    const LoggerState hostile = hostile_logger();
    const Logger logger{.application = hostile.application,
                        .kind = hostile.kind,
                        .number = 2,
                        .host = "h",
                        .process = "p",
                        .process_id = 3};
    const std::string members =
        R"("app":"0a141e28:fffffffe","host_id":169090600,"app_id":4294967294,)"
        R"("kind":"p\u001b[2J\u00fcmp\n\ufffd","number":2,"host":"h","process":"p","pid":3,)"
        R"("state":"NONOPERATIONAL","filter_level":650,)"
        R"("filter_level_name":"650","domain":-7,"verbosities":{"platform":"ERROR",)"
        R"("communication":"STATUS_REMOTE","database":"ERROR","entities":"ERROR",)"
        R"("api":"ERROR"},"print_format":"MAXIMAL")";
    EXPECT_EQ(
        json_line({1, {LoggerChange::Kind::changed, logger_state(1, "pump"), hostile}, logger}),
        R"({"type":"logger","time":"1970-01-01T00:00:00.000000001Z","event":"changed",)" + members +
            R"(,"before":{"kind":"pump","state":"OPERATIONAL","filter_level":600,)"
            R"("filter_level_name":"INFO","domain":0,"verbosities":{"platform":"ERROR",)"
            R"("communication":"ERROR","database":"ERROR","entities":"ERROR","api":"ERROR"},)"
            R"("print_format":"DEFAULT"}})"
            "\n");
    EXPECT_EQ(json_line(LoggerEntry{hostile, logger, "10.0.0.1"}),
              "{" + members + R"(,"addresses":"10.0.0.1"})" + "\n");
}

TEST(LoggerText, TellsPeopleWhatHasChanged) {
    const LoggerState before = logger_state(1, "pump");
    LoggerState renamed = before;
    renamed.kind = "mill";
    LoggerState other = before;
    other.state = QEL_KX_STATE_NONOPERATIONAL;
    other.filter_level = 0;
    other.verbosities[4] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT;
    other.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL;
    const struct {
        LoggerChange change;
        Logger logger;
        const char* says;
    } cases[] = {
        {{LoggerChange::Kind::appeared, before, before},
         pump,
         " appeared 0a141e28:0000c350 pump  OPERATIONAL, filter level INFO, process 4711 (planner) "
         "on host robot2\n"},
        {{LoggerChange::Kind::appeared, before, before},
         of_kind("pump"),
         " appeared 0a141e28:0000c350 pump  OPERATIONAL, filter level INFO\n"},
        {{LoggerChange::Kind::changed, before, other},
         of_kind("pump"),
         " changed  0a141e28:0000c350 pump  state OPERATIONAL -> NONOPERATIONAL, filter level INFO "
         "-> SILENT, API ERROR -> SILENT, print format DEFAULT -> MINIMAL\n"},
        {{LoggerChange::Kind::changed, before, renamed},
         of_kind("mill"),
         " changed  0a141e28:0000c350 mill  application kind or domain\n"},
        {{LoggerChange::Kind::gone, other, other},
         numbered(2),
         " gone     0a141e28:0000c351 pump#2  ended\n"},
        {{LoggerChange::Kind::gone, before, before},
         of_kind(""),
         " gone     0a141e28:0000c350 -  lost\n"},
    };
    for (const auto& each : cases) {
        const std::string line = change_line({0, each.change, each.logger});
        EXPECT_TRUE(line.ends_with(each.says)) << line;
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
    EXPECT_EQ(outcome_line(outcome, pump, verbosities, 5s),
              "0a141e28:0000c350 pump  API ERROR, COMMUNICATION ERROR -> WARNING\n");
    EXPECT_EQ(
        outcome_line(outcome, pump, SetPrintFormat{QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG}, 5s),
        "0a141e28:0000c350 pump  print format DEFAULT -> DEBUG\n");
}

}  // namespace
}  // namespace orvane::tools
