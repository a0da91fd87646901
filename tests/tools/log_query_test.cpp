#include "tools/records/log_query.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace orvane::tools {
namespace {

TEST(LogQuery, ReadsLevelsByNameAndNumberAndNothingElse) {
    const struct {
        const char* text;
        std::optional<std::int32_t> level;
    } cases[] = {
        {"FATAL", 100},
        {"SEVERE", 200},
        {"ERROR", 300},
        {"WARNING", 400},
        {"NOTICE", 500},
        {"INFO", 600},
        {"DEBUG", 700},
        {"TRACE", 800},
        {"warning", 400},
        {"Info", 600},
        {"600", 600},
        {"350", 350},
        {"0", 0},
        {"-5", -5},
        {"2147483647", std::numeric_limits<std::int32_t>::max()},
        {"-2147483648", std::numeric_limits<std::int32_t>::min()},
        {"2147483648", {}},
        {"", {}},
        {" ", {}},
        {"INFO ", {}},
        {" 600", {}},
        {"600x", {}},
        {"+600", {}},
        {"0x258", {}},
        {"6e2", {}},
        {"WARN", {}},
        {"WARNINGS", {}},
        {"SILENT", {}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(parse_level(each.text), each.level) << '"' << each.text << '"';
    }
}

TEST(LogQuery, NamesEveryLevelAsItReadsIt) {
    EXPECT_EQ(level_names(), "FATAL, SEVERE, ERROR, WARNING, NOTICE, INFO, DEBUG, TRACE");
    for (std::int32_t level = 100; level <= 800; level += 100) {
        EXPECT_EQ(parse_level(level_name(level)), level);
    }
    for (const std::int32_t level : {0, -5, 99, 101, 350, 900}) {
        EXPECT_EQ(level_name(level), "") << level;
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
        {"1", {}},
        {"1:", {}},
        {":1", {}},
        {"1:2:3", {}},
        {"0x1:2", {}},
        {"-1:2", {}},
        {"1: 2", {}},
        {"g:1", {}},
        {"100000000:1", {}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(parse_application(each.text), each.application) << '"' << each.text << '"';
    }
    EXPECT_EQ(format_application({0x0a141e28, 0xc350}), "0a141e28:0000c350");
    EXPECT_EQ(format_application({0xc0a80001, 0}), "c0a80001:00000000");
}

LogRecord record(std::int32_t level, std::string category, std::string message) {
    return {.nanoseconds = 0,
            .application = {1, 2},
            .level = level,
            .category = std::move(category),
            .message = std::move(message)};
}

TEST(LogQuery, LetsThroughWhatMeetsEveryCondition) {
    const LogRecord warning = record(400, "nav.route", "gate 7 is closed");
    const struct {
        const char* what;
        LogQuery query;
        bool matches;
    } cases[] = {
        {"nothing asked", {}, true},
        {"same level", {400, {}, {}, {}}, true},
        {"more severe than asked", {401, {}, {}, {}}, true},
        {"less severe than asked", {399, {}, {}, {}}, false},
        {"category", {{}, "nav.route", {}, {}}, true},
        {"beginning of the category only", {{}, "nav", {}, {}}, false},
        {"pattern", {{}, "nav.*", {}, {}}, true},
        {"pattern of one character", {{}, "nav?rout[ef]", {}, {}}, true},
        {"pattern for something else", {{}, "*.map", {}, {}}, false},
        {"case of the category", {{}, "NAV.*", {}, {}}, false},
        {"the empty category", {{}, "", {}, {}}, false},
        {"application", {{}, {}, Application{1, 2}, {}}, true},
        {"application of another host", {{}, {}, Application{2, 2}, {}}, false},
        {"another application of the host", {{}, {}, Application{1, 1}, {}}, false},
        {"text within", {{}, {}, {}, "7 is"}, true},
        {"text that is not there", {{}, {}, {}, "7is"}, false},
        {"a pattern as text", {{}, {}, {}, "gate*"}, false},
        {"all at once", {600, "nav.*", Application{1, 2}, "gate"}, true},
        {"all but one", {600, "nav.*", Application{1, 2}, "door"}, false},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(each.query.matches(warning), each.matches) << each.what;
    }
}

TEST(LogQuery, FindsMessagesWithoutCategoryAndWithNegativeLevel) {
    const LogRecord unnamed = record(-5, "", "");
    const struct {
        const char* what;
        LogQuery query;
        bool matches;
    } cases[] = {
        {"the empty category", {{}, "", {}, {}}, true}, {"any category", {{}, "*", {}, {}}, true},
        {"some category", {{}, "?*", {}, {}}, false},   {"level SILENT", {0, {}, {}, {}}, true},
        {"more severe yet", {-6, {}, {}, {}}, false},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(each.query.matches(unnamed), each.matches) << each.what;
    }
}

}  // namespace
}  // namespace orvane::tools
