#include "tools/text/setting_names.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace orvane::tools {
namespace {

TEST(SettingNames, AreReadInAnyCaseOrAsNumbersAndNothingElse) {
    const struct {
        const char* text;
        std::optional<int> level;
        std::optional<int> category;
        std::optional<int> verbosity;
        std::optional<int> format;
    } cases[] = {
        {"SILENT", 0, {}, 0, {}},
        {"Warning", 400, {}, 2, {}},
        {"debug", 700, {}, {}, 4},
        {"error", 300, {}, 1, {}},
        {"API", {}, 4, {}, {}},
        {"communication", {}, 1, {}, {}},
        {"Status_Remote", {}, {}, 4, {}},
        {"verbose_timestamped", {}, {}, {}, 3},
        {"0", 0, 0, 0, 0},
        {"4", 4, 4, 4, 4},
        {"5", 5, {}, 5, 5},
        {"6", 6, {}, {}, 6},
        {"7", 7, {}, {}, {}},
        {"2147483647", 2147483647, {}, {}, {}},
        {"2147483648", {}, {}, {}, {}},
        {"-1", {}, {}, {}, {}},
        {"", {}, {}, {}, {}},
        {"API ", {}, {}, {}, {}},
        {"4x", {}, {}, {}, {}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(parse_filter_level(each.text), each.level) << each.text;
        EXPECT_EQ(parse_category(each.text), each.category) << each.text;
        EXPECT_EQ(parse_verbosity(each.text), each.verbosity) << each.text;
        EXPECT_EQ(parse_print_format(each.text), each.format) << each.text;
    }
}

TEST(SettingNames, NameLevelsBetweenTheNamesByTheirNumbers) {
    EXPECT_EQ(filter_level_text(0), "SILENT");
    EXPECT_EQ(filter_level_text(700), "DEBUG");
    EXPECT_EQ(filter_level_text(650), "650");
}

}  // namespace
}  // namespace orvane::tools
