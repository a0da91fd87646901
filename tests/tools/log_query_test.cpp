#include "tools/records/log_query.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "tools/text/application_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/target_text.hpp"

namespace orvane::tools {
namespace {

TEST(Names, OfLevelsAndSettingsAreReadInAnyCaseOrAsNumbersAndNothingElse) {
    const struct {
        const char* text;
        std::optional<std::int32_t> level;
        std::optional<std::int32_t> filter_level;
        std::optional<int> category;
        std::optional<int> verbosity;
        std::optional<int> format;
    } cases[] = {
        {"FATAL", 100, 100, {}, {}, {}},
        {"SEVERE", 200, 200, {}, {}, {}},
        {"error", 300, 300, {}, 1, {}},
        {"Warning", 400, 400, {}, 2, {}},
        {"NOTICE", 500, 500, {}, {}, {}},
        {"INFO", 600, 600, {}, {}, {}},
        {"debug", 700, 700, {}, {}, 4},
        {"TRACE", 800, 800, {}, {}, {}},
        {"SILENT", {}, 0, {}, 0, {}},
        {"API", {}, {}, 4, {}, {}},
        {"communication", {}, {}, 1, {}, {}},
        {"Status_Remote", {}, {}, {}, 4, {}},
        {"verbose_timestamped", {}, {}, {}, {}, 3},
        {"0", 0, 0, 0, 0, 0},
        {"4", 4, 4, 4, 4, 4},
        {"5", 5, 5, {}, 5, 5},
        {"6", 6, 6, {}, {}, 6},
        {"7", 7, 7, {}, {}, {}},
        {"-5", -5, {}, {}, {}, {}},
        {"2147483647", 2147483647, 2147483647, {}, {}, {}},
        {"2147483648", {}, {}, {}, {}, {}},
        {"", {}, {}, {}, {}, {}},
        {"INFO ", {}, {}, {}, {}, {}},
        {"600x", {}, {}, {}, {}, {}},
        {"+600", {}, {}, {}, {}, {}},
        {"WARN", {}, {}, {}, {}, {}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(parse_level(each.text), each.level) << each.text;
        EXPECT_EQ(parse_filter_level(each.text), each.filter_level) << each.text;
        EXPECT_EQ(parse_middleware_category(each.text), each.category) << each.text;
        EXPECT_EQ(parse_verbosity(each.text), each.verbosity) << each.text;
        EXPECT_EQ(parse_print_format(each.text), each.format) << each.text;
    }
}

TEST(LogQuery, ReadsApplicationsAsItPrintsThem) {
    const struct {
        const char* text;
        std::optional<Application> application;
    } cases[] = {
        {"0a141e28:0000c350", Application{0x0a141e28, 0xc350}},
        {"FFFFFFFF:ffffffff", Application{0xffffffff, 0xffffffff}},
        {"0:1", Application{0, 1}},
        {"", {}},
        {":", {}},
        {"1:2:f3", Application{1, 2, 0xf3}},
        {"1:2:", {}},
        {"1:2:3:4", {}},
        {"g:1", {}},
        {"100000000:1", {}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(parse_application(each.text), each.application) << '"' << each.text << '"';
    }
    EXPECT_EQ(format_application({0x0a141e28, 0xc350}), "0a141e28:0000c350");
}

const Logger pump_two{.application = {0x0a141e28, 0xc350},
                      .kind = "pump",
                      .number = 2,
                      .host = "robot2",
                      .process = "planner",
                      .process_id = 4711};

TEST(LoggerTarget, IsAnApplicationOrConditionsForKindNumberAndHost) {
    Logger odd = pump_two;
    odd.kind = "a#3@b";
    Logger unknown;
    unknown.application = pump_two.application;
    const struct {
        const char* target;
        Logger logger;
        bool matches;
    } cases[] = {
        {"A141E28:C350", pump_two, true},
        {"0a141e28:0000c351", pump_two, false},
        {"a141e28:c350", unknown, true},
        {"pump", pump_two, true},
        {"PUMP", pump_two, false},
        {"pum", pump_two, false},
        {"p?m[op]*", pump_two, true},
        {"pump", unknown, false},
        {"*", unknown, true},
        {"pump#2", pump_two, true},
        {"pump#1", pump_two, false},
        {"p*#2", pump_two, true},
        {"pump@robot2", pump_two, true},
        {"p*@robot?", pump_two, true},
        {"pump@robot", pump_two, false},
        {"pump@robot?", unknown, false},
        {"pump#2@robot2", pump_two, true},
        {"pump#1@robot2", pump_two, false},
        {"pump#2@robot1", pump_two, false},
        {"a#3@b", odd, true},
        {"a#3", odd, false},
    };
    for (const auto& each : cases) {
        std::string error;
        const auto target = parse_target(each.target, error);
        ASSERT_TRUE(target) << error;
        EXPECT_EQ(target->matches(each.logger), each.matches) << each.target;
    }
}

TEST(LoggerTarget, SaysWhatWasExpected) {
    const struct {
        const char* target;
        const char* error;
    } cases[] = {
        {"", "'' is no target: HOST:APP in hexadecimal, KIND, KIND@HOST or KIND#NUMBER expected"},
        {"pump@", "'pump@' is no target: the name of a host or a pattern expected behind '@'"},
        {"@robot",
         "'@robot' is no target: an application kind or a pattern expected in front, say *"},
        {"#2", "'#2' is no target: an application kind or a pattern expected in front, say *"},
        {"pump#0", "'pump#0' is no target: a number from 1 on expected behind '#'"},
        {"pump#x@a", "'pump#x@a' is no target: a number from 1 on expected behind '#'"},
    };
    for (const auto& each : cases) {
        std::string error;
        EXPECT_FALSE(parse_target(each.target, error)) << each.target;
        EXPECT_EQ(error, each.error);
    }
}

TEST(LogQuery, LetsThroughWhatMeetsEveryCondition) {
    const MessageEvent warning{.record = {.nanoseconds = 0,
                                          .application = {1, 2},
                                          .level = 400,
                                          .category = "nav.route",
                                          .message = "gate 7 is closed"},
                               .logger = pump_two};
    MessageEvent unnamed = warning;
    unnamed.record.level = -5;
    unnamed.record.category = "";
    std::string error;
    const std::vector<LoggerTarget> pumps = {*parse_target("mill", error),
                                             *parse_target("pump", error)};
    const std::vector<LoggerTarget> mills = {*parse_target("mill", error)};
    const struct {
        const char* what;
        LogQuery query;
        MessageEvent event;
        bool matches;
    } cases[] = {
        {"nothing asked", {}, warning, true},
        {"same level", {400, {}, {}, {}, {}}, warning, true},
        {"less severe than asked", {399, {}, {}, {}, {}}, warning, false},
        {"category", {{}, "nav.route", {}, {}, {}}, warning, true},
        {"beginning of the category only", {{}, "nav", {}, {}, {}}, warning, false},
        {"pattern", {{}, "nav?rout[ef]", {}, {}, {}}, warning, true},
        {"case of the category", {{}, "NAV.*", {}, {}, {}}, warning, false},
        {"one of the loggers", {{}, {}, {}, pumps, {}}, warning, true},
        {"none of the loggers", {{}, {}, {}, mills, {}}, warning, false},
        {"excluded", {{}, {}, {}, {}, pumps}, warning, false},
        {"others excluded", {{}, {}, {}, {}, mills}, warning, true},
        {"asked for and excluded", {{}, {}, {}, pumps, pumps}, warning, false},
        {"text within", {{}, {}, "7 is", {}, {}}, warning, true},
        {"a pattern as text", {{}, {}, "gate*", {}, {}}, warning, false},
        {"all at once", {600, "nav.*", "gate", pumps, mills}, warning, true},
        {"all but one", {600, "nav.*", "door", pumps, mills}, warning, false},
        {"no category", {{}, "", {}, {}, {}}, unnamed, true},
        {"some category", {{}, "?*", {}, {}, {}}, unnamed, false},
        {"a more severe one", {-6, {}, {}, {}, {}}, unnamed, false},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(each.query.matches(each.event), each.matches) << each.what;
    }
}

}  // namespace
}  // namespace orvane::tools
