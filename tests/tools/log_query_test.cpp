#include "tools/records/log_query.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "tools/text/application_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/setting_names.hpp"

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
        {"1:2:3", {}},
        {"g:1", {}},
        {"100000000:1", {}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(parse_application(each.text), each.application) << '"' << each.text << '"';
    }
    EXPECT_EQ(format_application({0x0a141e28, 0xc350}), "0a141e28:0000c350");
}

TEST(LogQuery, LetsThroughWhatMeetsEveryCondition) {
    const LogRecord warning{.nanoseconds = 0,
                            .application = {1, 2},
                            .level = 400,
                            .category = "nav.route",
                            .message = "gate 7 is closed"};
    LogRecord unnamed = warning;
    unnamed.level = -5;
    unnamed.category = "";
    const struct {
        const char* what;
        LogQuery query;
        LogRecord record;
        bool matches;
    } cases[] = {
        {"nothing asked", {}, warning, true},
        {"same level", {400, {}, {}, {}}, warning, true},
        {"less severe than asked", {399, {}, {}, {}}, warning, false},
        {"category", {{}, "nav.route", {}, {}}, warning, true},
        {"beginning of the category only", {{}, "nav", {}, {}}, warning, false},
        {"pattern", {{}, "nav?rout[ef]", {}, {}}, warning, true},
        {"case of the category", {{}, "NAV.*", {}, {}}, warning, false},
        {"application", {{}, {}, Application{1, 2}, {}}, warning, true},
        {"application of another host", {{}, {}, Application{2, 2}, {}}, warning, false},
        {"another application of the host", {{}, {}, Application{1, 1}, {}}, warning, false},
        {"text within", {{}, {}, {}, "7 is"}, warning, true},
        {"a pattern as text", {{}, {}, {}, "gate*"}, warning, false},
        {"all at once", {600, "nav.*", Application{1, 2}, "gate"}, warning, true},
        {"all but one", {600, "nav.*", Application{1, 2}, "door"}, warning, false},
        {"no category", {{}, "", {}, {}}, unnamed, true},
        {"some category", {{}, "?*", {}, {}}, unnamed, false},
        {"a more severe one", {-6, {}, {}, {}}, unnamed, false},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(each.query.matches(each.record), each.matches) << each.what;
    }
}

}  // namespace
}  // namespace orvane::tools
