#include "tests/platform/dds/filter/content_filter_fixture.hpp"
#include "tests/support/faults.hpp"

using pexa::dds::FilterFault;

namespace filter_test {
namespace {

// Of the sample: every comparison of a row holds.
const char* const matching[] = {
    "level = 500 AND level != 501 AND level <= 500 AND level > 499 AND 500 = level",
    "level > target.app AND level = +500 AND level = 0x1F4 AND target.host = 0xC0A80001",
    "level<1000 AND(1<level)",
    "target.host > -9223372036854775808 AND level < 9223372036854775807",
    "extra.size = -1 AND extra.size = 0xffffffff",
    "level BETWEEN 500 AND 600 AND level NOT BETWEEN 501 AND 600",
    "450 BETWEEN target.app AND level AND name BETWEEN 'i' AND 'j'",
    "name = 'it''s on' AND name > 'it' AND name <= 'it''s on'",
    "'x' = extra.label AND name <> extra.label",
    "name LIKE 'it%' AND name like '%on' AND name LIKE '%s%' AND name LIKE 'it_s on'",
    "name LIKE '%' AND name LIKE '%%_' AND name LIKE '%t%s%n' AND name LIKE '_______'",
    "NOT name NOT LIKE 'it%'",
    "kind = BUSY AND kind = 'BUSY' AND BUSY = kind AND kind <> FAILED AND kind < 'FAILED'",
    "kind BETWEEN IDLE AND BUSY AND kind < level AND kind < command._d AND extra.mode = ON",
    "command._d = FAILED AND command._u.note = 'motor 7' AND command._u.limit = 0",
    "command._u.note LIKE 'motor _'",
    "level = 1 AND level = 2 OR level = 500",
    "level = 500 OR level = 1 AND level = 2",
    "NOT level = 1 AND level = 500",
    "NOT (level = 500 AND level = 1)",
    "NOT NOT level = 500",
    "nOt level = 1 aNd kind = 1 oR level = 2"};

// No comparison of a row holds, but for the last two.
const char* const not_matching[] = {
    "level < 500 OR level >= 501 OR target.host = 3232235521 OR extra.size = 4294967295",
    "level BETWEEN 501 AND 600 OR level BETWEEN 600 AND 400",
    "name = 'it''''s on' OR name = '' OR name < 'it' OR name LIKE '' OR name LIKE 'on'",
    "name LIKE 'it__s on' OR name LIKE '%t%n%s' OR name LIKE '________' OR name LIKE 'it*'",
    "level = 1 AND (level = 2 OR level = 500)",
    "(level = 500 OR level = 1) AND level = 2"};

const struct {
    const char* expression;
    Parameters parameters;
    bool matches;
} parameter_cases[] = {
    {"target.host = %0 and target.app = %1", {"-1062731775", "42"}, true},
    {"target.host = %0 and target.app = %1", {"-1062731775", "43"}, false},
    {"level = %0", {" 500 "}, true},
    {"level NOT BETWEEN %1 AND %0", {"500", "500"}, false},
    {"name = %0 AND name = %0", {"'it''s on'"}, true},
    {"name LIKE %0", {"'IT%'"}, false},
    {"kind = %0", {"BUSY"}, true},
    {"kind = %0", {"'IDLE'"}, false},
};

TEST(ContentFilter, DecidesByTheExpression) {
    for (const char* expression : matching) {
        EXPECT_TRUE(matches(probe_type, expression, mutable_sample)) << expression;
    }
    for (const char* expression : not_matching) {
        EXPECT_FALSE(matches(probe_type, expression, mutable_sample)) << expression;
    }
    for (const auto& row : parameter_cases) {
        EXPECT_EQ(matches(probe_type, row.expression, mutable_sample, row.parameters), row.matches)
            << row.expression;
    }
}

TEST(ContentFilter, FindsEveryFieldInEveryEncoding) {
    const char* all_fields =
        "target.host = -1062731775 AND target.app = 42 AND level = 500 AND kind = BUSY AND "
        "name = 'it''s on' AND command._d = FAILED AND command._u.note = 'motor 7' AND "
        "extra.size = -1 AND extra.label = 'x' AND extra.mode = ON";
    for (const char* expression : {all_fields, "name LIKE '%on' AND NOT extra.mode = OFF"}) {
        EXPECT_TRUE(matches(probe_type, expression, mutable_sample));
        EXPECT_TRUE(matches(probe_type, expression, mutable_big_endian));
        EXPECT_TRUE(matches(flat_type, expression, final_sample));
        EXPECT_TRUE(matches(flat_type, expression, final_big_endian));
    }
    const Bytes other_branch = bytes(
        "00010000 01000000 02000000 03000000 00000000 01000000 00000000 01000000 02000000 "
        "05000000 06000000 07000000 08000000 01000000 02000000 03000000 04000000 00000000 "
        "06000000 'label' 00 0000 00000000");
    EXPECT_TRUE(matches(flat_type, "command._d = BUSY AND extra.label = 'label'", other_branch));
    const char* empty =
        "target.host = 0 AND level = 0 AND kind = IDLE AND name = '' AND name LIKE '%' AND "
        "command._d = IDLE AND extra.label = ''";
    EXPECT_TRUE(matches(probe_type, empty, bytes("00030000 027f0000")))
        << "members that a sample lacks are zero or empty";
}

struct FaultCase {
    const char* expression;
    /// The place, and a part of what is said about it.
    const char* message;
    Parameters parameters = {};
};

const FaultCase fault_cases[] = {
    {"", "character 1: expected a field, a number, a text in quotes or a parameter, found the end"},
    {"level", "character 6: expected a comparison, BETWEEN or LIKE, found the end"},
    {"level = 1 level = 2", "character 11: expected AND, OR or the end, found level"},
    {"level = 1 OR OR level = 2", "character 14: expected a field"},
    {"(level = 1", "character 11: expected AND, OR or ')', found the end"},
    {"()", "character 2: expected a field"},
    {"level = (1)", "character 9: found ("},
    {"level NOT = 1", "character 11: expected BETWEEN or LIKE, found ="},
    {"level BETWEEN 1", "character 16: expected AND and the upper end of the range, found the end"},
    {"level = 12ab", "character 9: not an integer: 12ab"},
    {"level = 1.5", "character 9: not an integer: 1.5"},
    {"level = +-1", "character 9: not an integer"},
    {"level = 0x", "character 9: not an integer: 0x"},
    {"level = 0x100000000", "character 9: more than 32 bits"},
    {"level = 9223372036854775808", "character 9: more than 64 bits"},
    {"name = 'abc", "character 8: a text without closing quote: 'abc"},
    {"level # 1", "character 7: a character without meaning here: #"},
    {"target. = 1", "character 1: a name that ends in a dot: target."},
    {"size = 1", "character 1: there is no field size in size"},
    {"levels = 1", "character 1: there is no field levels in levels"},
    {"target.port = 1", "character 8: there is no field port in target.port"},
    {"target.host.byte = 1", "character 13: there is no field byte"},
    {"target = 1", "character 1: target is not a number, text or enumeration"},
    {"command._u.items = 1", "character 1: command._u.items is not a number"},
    {"1 = 1", "character 1: expected a field on one side of the comparison"},
    {"level = 'abc'", "character 9: expected a number"},
    {"name = 7", "character 8: expected a text in quotes"},
    {"level = name", "character 9: a field of another type"},
    {"kind = extra.mode", "character 8: a field of another type"},
    {"kind = RUNNING", "character 8: RUNNING is not an enumerator of Kind"},
    {"kind = 'busy'", "character 8: busy is not an enumerator of Kind"},
    {"level LIKE 'a'", "character 1: expected a text field in front of LIKE"},
    {"'a' LIKE name", "character 1: expected a text field in front of LIKE"},
    {"name LIKE 7", "character 11: expected a pattern in quotes behind LIKE"},
    {"level = %0", "character 9: there is no parameter %0"},
    {"level = %1", "character 9: there is no parameter %1", {"1"}},
    {"level = %0", "character 9: there is no parameter %0", {nullptr}},
    {"level = %", "character 9: not a parameter of %0 to %99: %", {"1"}},
    {"level = %100", "character 9: not a parameter of %0 to %99: %100", {"1"}},
    {"level = %0",
     "parameter %0, character 1: expected a number, a text in quotes or an enumerator",
     {""}},
    {"level = %0", "parameter %0, character 3: expected the end, found 2", {"1 2"}},
    {"level = %0", "parameter %0, character 1: not an integer: 12ab", {"12ab"}},
    {"level = %1", "parameter %1, character 2: expected a number", {"1", " 'a'"}},
    {"name = %0", "parameter %0, character 1: expected a text in quotes", {"abc"}},
    {"level = %0", "parameter %0, character 1: expected a number", {"level"}},
    {"%0 = level", "parameter %0, character 1: expected a number", {"name"}},
    {"%0 = %0", "parameter %0, character 1: expected a number or a text in quotes", {"name"}},
    {"kind = %0", "parameter %0, character 1: busy is not an enumerator of Kind", {"busy"}},
    {"name = %0", "parameter %0, character 1: a text without closing quote", {"'abc"}},
};

TEST(ContentFilter, SaysWhatIsWrongWithAnExpressionAndWhere) {
    for (const auto& [expression, message, parameters] : fault_cases) {
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
    while (count-- > 0) {
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
    for (const std::string& expression :
         {bracketed(64), comparisons(256), repeated("NOT ", 1000) + "level = 500",
          repeated("(level <> 1) AND ", 100) + "level = 500",
          "level = 500" + std::string(16384 - 11, ' ')}) {
        EXPECT_TRUE(matches(probe_type, expression, mutable_sample));
    }
    const std::pair<std::string, const char*> faults[] = {
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

TEST(ContentFilter, LeavesNothingBehindWhenMemoryIsShortAndDecidesWithoutMemory) {
    orvane::test::sweep(orvane::test::heap_allocation, [] {
        FilterFault fault;
        const auto filter = compile(probe_type, "level = %0", {"500"}, fault);
        EXPECT_TRUE(filter != nullptr ||
                    fault.text.data() == std::string("no memory for the filter"));
        return filter != nullptr;
    });
    FilterFault fault;
    const char* expression = "name LIKE '%on' AND command._u.note = 'motor 7'";
    const auto filter = compile(probe_type, expression, {}, fault);
    ASSERT_NE(filter, nullptr);
    const auto sample = std::as_bytes(std::span(mutable_sample));
    const orvane::test::Calls from_heap(orvane::test::heap_allocation);
    const orvane::test::Calls from_new(orvane::test::new_expression);
    EXPECT_TRUE(filter->matches(sample));
    EXPECT_EQ(from_heap.count() + from_new.count(), 0);
}

}  // namespace
}  // namespace filter_test
