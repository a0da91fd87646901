#include "platform/dds/filter/content_filter.hpp"

#include <gtest/gtest.h>

#include "tests/platform/dds/filter/content_filter_fixture.hpp"
#include "tests/support/heap_faults.hpp"

using pexa::dds::FilterFault;

namespace filter_test {
namespace {

struct MatchCase {
    const char* expression;
    Parameters parameters;
    bool matches;
};

// Of what encoded_probe() gives: precedence and brackets, numbers, ranges, texts, patterns,
// enumerations, unions.
const char* const matching[] = {
    "level = 500",
    "level != 501",
    "level <= 500",
    "level > 499",
    "500 = level",
    "level > target.app",
    "level<1000 AND(1<level)",
    "level = +500",
    "level = 0x1F4",
    "target.host = 0xC0A80001",
    "target.host > -9223372036854775808 AND level < 9223372036854775807",
    "extra.size = -1",
    "extra.size = 0xffffffff",
    "level BETWEEN 500 AND 600",
    "level NOT BETWEEN 501 AND 600",
    "450 BETWEEN target.app AND level",
    "name BETWEEN 'i' AND 'j'",
    "name = 'it''s on'",
    "name > 'it'",
    "name <= 'it''s on'",
    "'x' = extra.label",
    "name <> extra.label",
    "name LIKE 'it%'",
    "name like '%on'",
    "name LIKE '%s%'",
    "name LIKE 'it_s on'",
    "name LIKE '%'",
    "name LIKE '%%_'",
    "name LIKE '%t%s%n'",
    "name LIKE '_______'",
    "NOT name NOT LIKE 'it%'",
    "kind = BUSY",
    "kind = 'BUSY'",
    "BUSY = kind",
    "kind <> FAILED",
    "kind < 'FAILED'",
    "kind BETWEEN IDLE AND BUSY",
    "kind < level",
    "kind < command._d",
    "extra.mode = ON",
    "command._d = FAILED",
    "command._u.note = 'motor 7'",
    "command._u.note LIKE 'motor _'",
    "command._u.limit = 0",
    "level = 1 AND level = 2 OR level = 500",
    "level = 500 OR level = 1 AND level = 2",
    "NOT level = 1 AND level = 500",
    "NOT (level = 500 AND level = 1)",
    "NOT NOT level = 500",
    "nOt level = 1 aNd kind = 1 oR level = 2"};

const char* const not_matching[] = {"level < 500",
                                    "level >= 501",
                                    "target.host = 3232235521",
                                    "extra.size = 4294967295",
                                    "level BETWEEN 501 AND 600",
                                    "level BETWEEN 600 AND 400",
                                    "name = 'it''''s on'",
                                    "name = ''",
                                    "name < 'it'",
                                    "name LIKE 'it__s on'",
                                    "name LIKE ''",
                                    "name LIKE 'on'",
                                    "name LIKE '%t%n%s'",
                                    "name LIKE '________'",
                                    "name LIKE 'it*'",
                                    "level = 1 AND (level = 2 OR level = 500)",
                                    "(level = 500 OR level = 1) AND level = 2"};

const MatchCase match_cases[] = {
    {"target.host = %0 and target.app = %1", {"-1062731775", "42"}, true},
    {"target.host = %0 and target.app = %1", {"-1062731775", "43"}, false},
    {"target.host = %0 and target.app = %1", {"0", "42"}, false},
    {"level = %0", {" 500 "}, true},
    {"level NOT BETWEEN %1 AND %0", {"500", "500"}, false},
    {"name = %0", {"'it''s on'"}, true},
    {"name = %0 AND name = %0", {"'it''s on'"}, true},
    {"name LIKE %0", {"'IT%'"}, false},
    {"kind = %0", {"BUSY"}, true},
    {"kind = %0", {"'IDLE'"}, false},
};

void expect_decision(const MatchCase& one) {
    const auto probe_filter = compiled(probe_type, one.expression, one.parameters);
    const auto flat_filter = compiled(flat_type, one.expression, one.parameters);
    ASSERT_TRUE(probe_filter != nullptr && flat_filter != nullptr);
    for (const Encoding& encoding : all_encodings()) {
        EXPECT_EQ(probe_filter->matches(encoded_probe(encoding)), one.matches)
            << one.expression << " on " << to_string(encoding);
        EXPECT_EQ(flat_filter->matches(encoded_flat(encoding)), one.matches)
            << one.expression << " on plain " << to_string(encoding);
    }
}

TEST(ContentFilter, DecidesAlikeOnEveryEncodingOfASample) {
    for (const char* expression : matching) {
        expect_decision({expression, {}, true});
    }
    for (const char* expression : not_matching) {
        expect_decision({expression, {}, false});
    }
    for (const MatchCase& one : match_cases) {
        expect_decision(one);
    }
}

TEST(ContentFilter, TakesMembersThatASampleLacksAsZeroOrEmpty) {
    const Bytes empty = Encoder({}, true).list_end().payload();
    const char* const expressions[] = {
        "target.host = 0 AND target.app = 0",
        "level = 0",
        "kind = IDLE",
        "name = ''",
        "name LIKE '%'",
        "command._d = IDLE",
        "extra.label = ''",
    };
    for (const char* expression : expressions) {
        EXPECT_TRUE(compiled(probe_type, expression)->matches(empty)) << expression;
    }
}

TEST(ContentFilter, TakesTheBranchThatAUnionCarries) {
    for (const Encoding& encoding : all_encodings()) {
        Encoder flat(encoding, false);
        flat.numbers({1, 2, 3, 0}).text("").numbers({1, 2, 5, 6, 7, 8});
        flat.numbers({1, 2, 3, 4, 0}).text("label").number(0);
        EXPECT_TRUE(compiled(flat_type, "command._d = BUSY AND extra.label = 'label'")
                        ->matches(flat.payload()))
            << to_string(encoding);
    }
}

struct FaultCase {
    const char* expression;
    Parameters parameters;
    /// The place, and a part of what is said about it.
    const char* message;
};

const FaultCase fault_cases[] = {
    {"",
     {},
     "character 1: expected a field, a number, a text in quotes or a parameter, found the end"},
    {"level", {}, "character 6: expected a comparison, BETWEEN or LIKE, found the end"},
    {"level = 1 level = 2", {}, "character 11: expected AND, OR or the end, found level"},
    {"level = 1 OR OR level = 2", {}, "character 14: expected a field"},
    {"(level = 1", {}, "character 11: expected AND, OR or ')', found the end"},
    {"()", {}, "character 2: expected a field"},
    {"level = (1)", {}, "character 9: found ("},
    {"level NOT = 1", {}, "character 11: expected BETWEEN or LIKE, found ="},
    {"level BETWEEN 1",
     {},
     "character 16: expected AND and the upper end of the range, found the end"},
    {"level = 12ab", {}, "character 9: not an integer: 12ab"},
    {"level = 1.5", {}, "character 9: not an integer: 1.5"},
    {"level = +-1", {}, "character 9: not an integer"},
    {"level = 0x", {}, "character 9: not an integer: 0x"},
    {"level = 0x100000000", {}, "character 9: more than 32 bits"},
    {"level = 9223372036854775808", {}, "character 9: more than 64 bits"},
    {"name = 'abc", {}, "character 8: a text without closing quote: 'abc"},
    {"level # 1", {}, "character 7: a character without meaning here: #"},
    {"target. = 1", {}, "character 1: a name that ends in a dot: target."},
    {"size = 1", {}, "character 1: there is no field size in size"},
    {"target.port = 1", {}, "character 8: there is no field port in target.port"},
    {"target.host.byte = 1", {}, "character 13: there is no field byte"},
    {"size LIKE 'a'", {}, "character 1: there is no field size"},
    {"target = 1", {}, "character 1: target is not a number, text or enumeration"},
    {"command._u.items = 1", {}, "character 1: command._u.items is not a number"},
    {"1 = 1", {}, "character 1: expected a field on one side of the comparison"},
    {"level = 'abc'", {}, "character 9: expected a number"},
    {"name = 7", {}, "character 8: expected a text in quotes"},
    {"level = name", {}, "character 9: a field of another type"},
    {"kind = extra.mode", {}, "character 8: a field of another type"},
    {"kind = RUNNING", {}, "character 8: RUNNING is not an enumerator of Kind"},
    {"kind = 'busy'", {}, "character 8: busy is not an enumerator of Kind"},
    {"level LIKE 'a'", {}, "character 1: expected a text field in front of LIKE"},
    {"'a' LIKE name", {}, "character 1: expected a text field in front of LIKE"},
    {"name LIKE 7", {}, "character 11: expected a pattern in quotes behind LIKE"},
    {"level = %0", {}, "character 9: there is no parameter %0"},
    {"level = %1", {"1"}, "character 9: there is no parameter %1"},
    {"level = %0", {nullptr}, "character 9: there is no parameter %0"},
    {"level = %", {"1"}, "character 9: not a parameter of %0 to %99: %"},
    {"level = %100", {"1"}, "character 9: not a parameter of %0 to %99: %100"},
    {"level = %x", {"1"}, "character 9: not a parameter"},
    {"level = %0",
     {""},
     "parameter %0, character 1: expected a number, a text in quotes or an enumerator"},
    {"level = %0", {"1 2"}, "parameter %0, character 3: expected the end, found 2"},
    {"level = %0", {"12ab"}, "parameter %0, character 1: not an integer: 12ab"},
    {"level = %1", {"1", " 'a'"}, "parameter %1, character 2: expected a number"},
    {"name = %0", {"abc"}, "parameter %0, character 1: expected a text in quotes"},
    {"level = %0", {"level"}, "parameter %0, character 1: expected a number"},
    {"%0 = level", {"name"}, "parameter %0, character 1: expected a number"},
    {"%0 = %0", {"name"}, "parameter %0, character 1: expected a number or a text in quotes"},
    {"kind = %0", {"busy"}, "parameter %0, character 1: busy is not an enumerator of Kind"},
    {"name = %0", {"'abc"}, "parameter %0, character 1: a text without closing quote"},
};

TEST(ContentFilter, SaysWhatIsWrongWithAnExpressionAndWhere) {
    for (const auto& [expression, parameters, message] : fault_cases) {
        FilterFault fault;
        EXPECT_EQ(compile(probe_type, expression, parameters, fault), nullptr) << expression;
        const std::string found = fault.text.data();
        const std::string expected = message;
        const std::size_t place_end = expected.find(": ") + 2;
        EXPECT_EQ(found.substr(0, place_end), expected.substr(0, place_end)) << expression;
        EXPECT_NE(found.find(expected.substr(place_end), place_end), std::string::npos)
            << expression << ": " << found;
    }
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(ContentFilter, HasLimitsThatItKeepsTo) {
    const auto bracketed = [](std::size_t depth) {
        return repeated("NOT (", depth) + "level = 500" + repeated(")", depth);
    };
    const auto comparisons = [](std::size_t count) {
        return repeated("level <> 1 AND ", count - 1) + "level = 500";
    };
    const Bytes sample = encoded_probe({});
    for (const std::string& expression :
         {bracketed(64), comparisons(256), repeated("NOT ", 1000) + "level = 500",
          repeated("(level <> 1) AND ", 100) + "level = 500",
          "level = 500" + std::string(16384 - 11, ' ')}) {
        EXPECT_TRUE(compiled(probe_type, expression)->matches(sample));
    }
    const struct {
        std::string expression;
        const char* text;
    } faults[] = {
        {bracketed(65), "more than 64 brackets"},
        {comparisons(257), "more than 256 co"},
        {std::string(100'000, '('), "longer than 16384 characters"},
        {std::string(16384, '('), "more than 64 brackets"},
    };
    for (const auto& [expression, text] : faults) {
        FilterFault fault;
        EXPECT_EQ(compile(probe_type, expression, {}, fault), nullptr);
        EXPECT_NE(std::string(fault.text.data()).find(text), std::string::npos)
            << fault.text.data();
    }
}

TEST(ContentFilter, CompilesOrLeavesNothingBehindWhenMemoryIsShort) {
    heap_faults::sweep([] {
        FilterFault fault;
        const auto filter = compile(probe_type, "level = %0", {"500"}, fault);
        EXPECT_TRUE(filter != nullptr ||
                    fault.text.data() == std::string("no memory for the filter"));
        return filter != nullptr;
    });
}

TEST(ContentFilter, DecidesWithoutAllocating) {
    const auto filter = compiled(probe_type, "name LIKE '%on' AND command._u.note = 'motor 7'");
    const Bytes sample = encoded_probe({});
    heap_faults::fail_allocation(1);
    EXPECT_TRUE(filter->matches(sample));
    EXPECT_TRUE(heap_faults::was_out_of_reach());
}

}  // namespace
}  // namespace filter_test
