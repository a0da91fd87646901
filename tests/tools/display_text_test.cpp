#include "tools/text/display_text.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orvane::tools {
namespace {

using namespace std::string_view_literals;

constexpr struct {
    const char* what;
    std::string_view text;
    std::string_view displayed;
} cases[] = {
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
    for (const auto& each : cases) {
        std::string line = "> ";
        append_displayable(line, each.text);
        EXPECT_EQ(line, "> " + std::string{each.displayed}) << each.what;
    }
}

}  // namespace
}  // namespace orvane::tools
