#include "tools/text/display_text.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orvane::tools {
namespace {

struct Case {
    const char* what;
    std::string_view text;
    std::string_view displayed;
};

void expect_displayed(const Case& each) {
    std::string line = "> ";
    append_displayable(line, each.text);
    EXPECT_EQ(line, "> " + std::string{each.displayed}) << each.what;
}

TEST(DisplayText, LetsWellFormedTextPass) {
    constexpr Case cases[] = {
        {"empty", "", ""},
        {"printable ASCII", " !\"azAZ09~", " !\"azAZ09~"},
        {"a backslash, which is no escape", "C:\\n", "C:\\n"},
        {"smallest and largest of two bytes", "\u00a0\u07ff", "\u00a0\u07ff"},
        {"smallest and largest of three bytes", "\u0800\uffff", "\u0800\uffff"},
        {"last before and first after the surrogates", "\ud7ff\ue000", "\ud7ff\ue000"},
        {"smallest and largest of four bytes", "\U00010000\U0010ffff", "\U00010000\U0010ffff"},
        {"right-to-left letters", "\u05d0\u0627", "\u05d0\u0627"},
        {"next to what is hidden", "\u061b\u061d\u2010\u2027\u202f\u2070\ufffd",
         "\u061b\u061d\u2010\u2027\u202f\u2070\ufffd"},
    };
    for (const Case& each : cases) {
        expect_displayed(each);
    }
}

TEST(DisplayText, DropsOneNewlineAtTheEndAndShowsTheOthers) {
    constexpr Case cases[] = {
        {"only a newline", "\n", ""},
        {"one at the end", "ready\n", "ready"},
        {"two at the end", "ready\n\n", "ready\\n"},
        {"within", "a\nb", "a\\nb"},
        {"at the front", "\na", "\\na"},
        {"with a carriage return", "ready\r\n", "ready\\r"},
    };
    for (const Case& each : cases) {
        expect_displayed(each);
    }
}

TEST(DisplayText, ShowsWhatCouldSteerATerminal) {
    using namespace std::string_view_literals;
    constexpr Case cases[] = {
        {"escape sequence", "\x1b[2J\x1b[31m", "\\x1b[2J\\x1b[31m"},
        {"title and bell", "\x1b]0;title\a", "\\x1b]0;title\\x07"},
        {"return and overwrite", "denied\rgranted", "denied\\rgranted"},
        {"backspace, tabulator", "a\b\tb\vc\f", "a\\x08\\tb\\x0bc\\x0c"},
        {"NUL", "a\0b"sv, "a\\x00b"},
        {"delete", "\x7f", "\\x7f"},
        {"C1 as a character", "\u0080\u009b2J\u009f", "\\xc2\\x80\\xc2\\x9b2J\\xc2\\x9f"},
        {"C1 as a byte",
         "\x9b"
         "2J",
         "\\x9b2J"},
    };
    for (const Case& each : cases) {
        expect_displayed(each);
    }
}

TEST(DisplayText, ShowsWhatReordersOrHidesText) {
    constexpr Case cases[] = {
        {"override", "\u202e", "\\xe2\\x80\\xae"},
        {"embeddings", "\u202a\u202b\u202c\u202d",
         "\\xe2\\x80\\xaa\\xe2\\x80\\xab\\xe2\\x80\\xac\\xe2\\x80\\xad"},
        {"isolates", "\u2066\u2069", "\\xe2\\x81\\xa6\\xe2\\x81\\xa9"},
        {"marks", "\u061c\u200e\u200f", "\\xd8\\x9c\\xe2\\x80\\x8e\\xe2\\x80\\x8f"},
        {"zero width", "\u200b\u200d\u2060\ufeff",
         "\\xe2\\x80\\x8b\\xe2\\x80\\x8d\\xe2\\x81\\xa0\\xef\\xbb\\xbf"},
        {"line and paragraph separator", "\u2028\u2029", "\\xe2\\x80\\xa8\\xe2\\x80\\xa9"},
        {"annotation", "\ufff9\ufffb", "\\xef\\xbf\\xb9\\xef\\xbf\\xbb"},
    };
    for (const Case& each : cases) {
        expect_displayed(each);
    }
}

TEST(DisplayText, ShowsEveryByteThatIsNotUtf8AndGoesOnBehindIt) {
    constexpr Case cases[] = {
        {"continuation alone", "a\x80z", "a\\x80z"},
        {"overlong slash", "\xc0\xaf", "\\xc0\\xaf"},
        {"overlong escape character", "\xc1\x9b", "\\xc1\\x9b"},
        {"overlong of three", "\xe0\x9f\xbf", "\\xe0\\x9f\\xbf"},
        {"overlong of four", "\xf0\x8f\xbf\xbf", "\\xf0\\x8f\\xbf\\xbf"},
        {"first and last surrogate", "\xed\xa0\x80\xed\xbf\xbf", "\\xed\\xa0\\x80\\xed\\xbf\\xbf"},
        {"beyond the last character", "\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
        {"lead bytes that never occur", "\xf5\xff", "\\xf5\\xff"},
        {"cut after one of two", "\xc3", "\\xc3"},
        {"cut after two of three", "\xe2\x82", "\\xe2\\x82"},
        {"cut after three of four", "\xf0\x9f\x98", "\\xf0\\x9f\\x98"},
        {"cut by a newline at the end", "\xe2\x82\n", "\\xe2\\x82"},
        {"cut by a letter", "\xe2\x82z", "\\xe2\\x82z"},
        {"cut by a whole character", "\xe2\xc3\xa9", "\\xe2\u00e9"},
    };
    for (const Case& each : cases) {
        expect_displayed(each);
    }
}

}  // namespace
}  // namespace orvane::tools
