#include "dds/content_filter.hpp"

#include <random>

#include <gtest/gtest.h>

#include "../platform_core/heap_faults.hpp"
#include "content_filter_fixture.hpp"

using pexa::dds::FilterFault;

namespace filter_test {
namespace {

struct MatchCase {
    const char* expression;
    Parameters parameters;
    bool matches;
};

const MatchCase match_cases[] = {
    // The two fields that address an application.
    {"target.host = %0 and target.app = %1", {"-1062731775", "42"}, true},
    {"target.host = %0 and target.app = %1", {"-1062731775", "43"}, false},
    {"target.host = %0 and target.app = %1", {"0", "42"}, false},
    // Comparisons, the field on either side.
    {"level = 500", {}, true},
    {"level <> 500", {}, false},
    {"level != 501", {}, true},
    {"level < 500", {}, false},
    {"level <= 500", {}, true},
    {"level > 499", {}, true},
    {"level >= 501", {}, false},
    {"500 = level", {}, true},
    {"499 < level", {}, true},
    {"501 <= level", {}, false},
    {"level > target.app", {}, true},
    {"level<1000 AND(1<level)", {}, true},
    // Numbers.
    {"level = +500", {}, true},
    {"level = 0x1F4", {}, true},
    {"target.host = 0xC0A80001", {}, true},
    {"target.host = 3232235521", {}, false},
    {"target.host > -9223372036854775808 AND level < 9223372036854775807", {}, true},
    {"extra.size = -1", {}, true},
    {"extra.size = 0xffffffff", {}, true},
    {"extra.size = 4294967295", {}, false},
    {"level = %0", {" 500 "}, true},
    // Ranges.
    {"level BETWEEN 500 AND 600", {}, true},
    {"level between 400 and 500", {}, true},
    {"level BETWEEN 501 AND 600", {}, false},
    {"level NOT BETWEEN 501 AND 600", {}, true},
    {"level NOT BETWEEN %1 AND %0", {"500", "500"}, false},
    {"level BETWEEN 600 AND 400", {}, false},
    {"450 BETWEEN target.app AND level", {}, true},
    {"name BETWEEN 'i' AND 'j'", {}, true},
    // Texts.
    {"name = 'it''s on'", {}, true},
    {"name = 'it''''s on'", {}, false},
    {"name = %0", {"'it''s on'"}, true},
    {"name = %0 AND name = %0", {"'it''s on'"}, true},
    {"name = ''", {}, false},
    {"name < 'it'", {}, false},
    {"name > 'it'", {}, true},
    {"name <= 'it''s on'", {}, true},
    {"extra.label = 'x'", {}, true},
    {"'x' = extra.label", {}, true},
    {"name <> extra.label", {}, true},
    // Patterns.
    {"name LIKE 'it%'", {}, true},
    {"name like '%on'", {}, true},
    {"name LIKE '%s%'", {}, true},
    {"name LIKE 'it_s on'", {}, true},
    {"name LIKE 'it__s on'", {}, false},
    {"name LIKE '%'", {}, true},
    {"name LIKE '%%_'", {}, true},
    {"name LIKE ''", {}, false},
    {"name LIKE 'on'", {}, false},
    {"name LIKE '%t%s%n'", {}, true},
    {"name LIKE '%t%n%s'", {}, false},
    {"name LIKE '_______'", {}, true},
    {"name LIKE '________'", {}, false},
    {"name NOT LIKE 'it%'", {}, false},
    {"NOT name NOT LIKE 'it%'", {}, true},
    {"name LIKE %0", {"'IT%'"}, false},
    {"name LIKE 'it*'", {}, false},
    // Enumerations: names with and without quotes, numbers, from a parameter.
    {"kind = BUSY", {}, true},
    {"kind = 'BUSY'", {}, true},
    {"BUSY = kind", {}, true},
    {"kind = 1", {}, true},
    {"kind <> FAILED", {}, true},
    {"kind < 'FAILED'", {}, true},
    {"kind = %0", {"BUSY"}, true},
    {"kind = %0", {"'IDLE'"}, false},
    {"kind BETWEEN IDLE AND BUSY", {}, true},
    {"kind < level", {}, true},
    {"kind < command._d", {}, true},
    {"extra.mode = ON", {}, true},
    // A union: its discriminator and its branches.
    {"command._d = FAILED", {}, true},
    {"command._u.note = 'motor 7'", {}, true},
    {"command._u.note LIKE 'motor _'", {}, true},
    {"command._u.limit = 0", {}, true},
    // Brackets and precedence.
    {"level = 1 AND level = 2 OR level = 500", {}, true},
    {"level = 1 AND (level = 2 OR level = 500)", {}, false},
    {"level = 500 OR level = 1 AND level = 2", {}, true},
    {"(level = 500 OR level = 1) AND level = 2", {}, false},
    {"NOT level = 1 AND level = 500", {}, true},
    {"NOT (level = 500 AND level = 1)", {}, true},
    {"NOT NOT level = 500", {}, true},
    {"NOT (NOT ((level = 500)))", {}, true},
    {"nOt level = 1 aNd kind = 1 oR level = 2", {}, true},
};

TEST(ContentFilter, decides_alike_on_every_encoding_of_a_sample) {
    for (const auto& [expression, parameters, matches] : match_cases) {
        const auto probe_filter = compiled(probe_type, expression, parameters);
        const auto flat_filter = compiled(flat_type, expression, parameters);
        ASSERT_TRUE(probe_filter != nullptr && flat_filter != nullptr);
        for (const Encoding& encoding : all_encodings()) {
            EXPECT_EQ(probe_filter->matches(encoded_probe(encoding)), matches)
                << expression << " on " << to_string(encoding);
            EXPECT_EQ(flat_filter->matches(encoded_flat(encoding)), matches)
                << expression << " on plain " << to_string(encoding);
        }
    }
}

TEST(ContentFilter, takes_members_that_a_sample_lacks_as_zero_or_empty) {
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

TEST(ContentFilter, takes_the_branch_that_a_union_carries) {
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
    int parameter;
    std::size_t position;
    const char* text;
};

const FaultCase fault_cases[] = {
    // What is missing or too much.
    {"", {}, -1, 1, "expected a field, a number, a text in quotes or a parameter, found the end"},
    {"level", {}, -1, 6, "expected a comparison, BETWEEN or LIKE, found the end"},
    {"level =", {}, -1, 8, "found the end"},
    {"level = 1 level = 2", {}, -1, 11, "expected AND, OR or the end, found level"},
    {"level = 1 AND", {}, -1, 14, "found the end"},
    {"level = 1 OR OR level = 2", {}, -1, 14, "expected a field"},
    {"AND level = 1", {}, -1, 1, "found AND"},
    {"(level = 1", {}, -1, 11, "expected AND, OR or ')', found the end"},
    {"level = 1)", {}, -1, 10, "expected AND, OR or the end, found )"},
    {"()", {}, -1, 2, "expected a field"},
    {"level = (1)", {}, -1, 9, "found ("},
    {"level NOT = 1", {}, -1, 11, "expected BETWEEN or LIKE, found ="},
    {"level BETWEEN 1", {}, -1, 16, "expected AND and the upper end of the range, found the end"},
    {"level BETWEEN 1 OR 2", {}, -1, 17, "found OR"},
    {"level == 1", {}, -1, 8, "found ="},
    // Words.
    {"level = 12ab", {}, -1, 9, "not an integer: 12ab"},
    {"level = 1.5", {}, -1, 9, "not an integer: 1.5"},
    {"level = -", {}, -1, 9, "not an integer: -"},
    {"level = +-1", {}, -1, 9, "not an integer"},
    {"level = 0x", {}, -1, 9, "not an integer: 0x"},
    {"level = 0x1g", {}, -1, 9, "not an integer"},
    {"level = 0x100000000", {}, -1, 9, "more than 32 bits"},
    {"level = 9223372036854775808", {}, -1, 9, "more than 64 bits"},
    {"name = 'abc", {}, -1, 8, "a text without closing quote: 'abc"},
    {"name = 'abc''", {}, -1, 8, "a text without closing quote"},
    {"level # 1", {}, -1, 7, "a character without meaning here: #"},
    {"level ! 1", {}, -1, 7, "a character without meaning here: !"},
    {"target. = 1", {}, -1, 1, "a name that ends in a dot: target."},
    // Fields.
    {"size = 1", {}, -1, 1, "there is no field size in size"},
    {"target.port = 1", {}, -1, 8, "there is no field port in target.port"},
    {"target.host.byte = 1", {}, -1, 13, "there is no field byte"},
    {"targe = 1", {}, -1, 1, "there is no field targe"},
    {"level = sizes", {}, -1, 9, "there is no field sizes"},
    {"size LIKE 'a'", {}, -1, 1, "there is no field size"},
    {"target = 1", {}, -1, 1, "target is not a number, text or enumeration"},
    {"history = 1", {}, -1, 1, "history is not a number"},
    {"command._u.items = 1", {}, -1, 1, "command._u.items is not a number"},
    {"1 = 1", {}, -1, 1, "expected a field on one side of the comparison"},
    {"'a' = 'a'", {}, -1, 1, "expected a field on one side"},
    // Types.
    {"level = 'abc'", {}, -1, 9, "expected a number"},
    {"name = 7", {}, -1, 8, "expected a text in quotes"},
    {"7 = name", {}, -1, 1, "expected a text in quotes"},
    {"level = name", {}, -1, 9, "a field of another type"},
    {"kind = name", {}, -1, 8, "a field of another type"},
    {"kind = extra.mode", {}, -1, 8, "a field of another type"},
    {"kind = RUNNING", {}, -1, 8, "RUNNING is not an enumerator of Kind"},
    {"kind = 'busy'", {}, -1, 8, "busy is not an enumerator of Kind"},
    {"level = BUSY", {}, -1, 9, "there is no field BUSY"},
    {"level LIKE 'a'", {}, -1, 1, "expected a text field in front of LIKE"},
    {"'a' LIKE name", {}, -1, 1, "expected a text field in front of LIKE"},
    {"name LIKE 7", {}, -1, 11, "expected a pattern in quotes behind LIKE"},
    {"name LIKE name", {}, -1, 11, "expected a pattern in quotes"},
    // Parameters.
    {"level = %0", {}, -1, 9, "there is no parameter %0"},
    {"level = %1", {"1"}, -1, 9, "there is no parameter %1"},
    {"level = %0", {nullptr}, -1, 9, "there is no parameter %0"},
    {"level = %", {"1"}, -1, 9, "not a parameter of %0 to %99: %"},
    {"level = %100", {"1"}, -1, 9, "not a parameter of %0 to %99: %100"},
    {"level = %x", {"1"}, -1, 9, "not a parameter"},
    {"level = %0", {""}, 0, 1, "expected a number, a text in quotes or an enumerator"},
    {"level = %0", {"1 2"}, 0, 3, "expected the end, found 2"},
    {"level = %0", {"12ab"}, 0, 1, "not an integer: 12ab"},
    {"level = %1", {"1", " 'a'"}, 1, 2, "expected a number"},
    {"name = %0", {"abc"}, 0, 1, "expected a text in quotes"},
    {"level = %0", {"level"}, 0, 1, "expected a number"},
    {"%0 = level", {"name"}, 0, 1, "expected a number"},
    {"%0 = %0", {"name"}, 0, 1, "expected a number or a text in quotes"},
    {"kind = %0", {"busy"}, 0, 1, "busy is not an enumerator of Kind"},
    {"name = %0", {"'abc"}, 0, 1, "a text without closing quote"},
};

TEST(ContentFilter, says_what_is_wrong_with_an_expression_and_where) {
    for (const auto& [expression, parameters, parameter, position, text] : fault_cases) {
        FilterFault fault;
        EXPECT_EQ(compile(probe_type, expression, parameters, fault), nullptr) << expression;
        EXPECT_EQ(fault.parameter, parameter) << expression;
        EXPECT_EQ(fault.position, position) << expression << ": " << fault.text.data();
        const std::string place = parameter < 0
                                      ? "character " + std::to_string(position) + ": "
                                      : "parameter %" + std::to_string(parameter) + ", character " +
                                            std::to_string(position) + ": ";
        const std::string message = fault.text.data();
        EXPECT_EQ(message.substr(0, place.size()), place) << expression;
        EXPECT_NE(message.find(text, place.size()), std::string::npos)
            << expression << ": " << message;
    }
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(ContentFilter, has_limits_that_it_keeps_to) {
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

TEST(ContentFilter, takes_a_hundred_parameters) {
    std::vector<std::string> texts;
    Parameters parameters;
    texts.reserve(101);
    for (int i = 0; i < 101; ++i) {
        texts.push_back(std::to_string(i + 401));
    }
    for (const std::string& text : texts) {
        parameters.push_back(text.c_str());
    }
    EXPECT_TRUE(compiled(probe_type, "level = %99 AND level <> %0", parameters)
                    ->matches(encoded_probe({})));
}

/// A random condition of comparisons that are known to hold or not.
struct Condition {
    std::string text;
    bool holds = false;
    int precedence = 0;  ///< OR 0, AND 1, NOT and comparisons 2
};

std::string bracket_below(const Condition& condition, int precedence) {
    return condition.precedence < precedence ? "(" + condition.text + ")" : condition.text;
}

Condition random_condition(std::minstd_rand& random, int depth) {
    const auto choice = depth == 0 ? 0 : random() % 4;
    if (choice == 0) {
        const bool holds = random() % 2 == 0;
        return {holds ? "level = 500" : "level = 501", holds, 2};
    }
    const Condition left = random_condition(random, depth - 1);
    if (choice == 1) {
        return {"NOT " + bracket_below(left, 2), !left.holds, 2};
    }
    const Condition right = random_condition(random, depth - 1);
    if (choice == 2) {
        return {bracket_below(left, 1) + " AND " + bracket_below(right, 2),
                left.holds && right.holds, 1};
    }
    return {left.text + " OR " + bracket_below(right, 1), left.holds || right.holds, 0};
}

TEST(ContentFilter, joins_conditions_as_logic_and_precedence_demand) {
    std::minstd_rand random(1);
    const Bytes sample = encoded_probe({});
    for (int i = 0; i < 2000; ++i) {
        const Condition condition = random_condition(random, 6);
        EXPECT_EQ(compiled(probe_type, condition.text)->matches(sample), condition.holds)
            << condition.text;
    }
}

TEST(ContentFilter, compiles_or_leaves_nothing_behind_when_memory_is_short) {
    heap_faults::sweep([] {
        FilterFault fault;
        const auto filter = compile(probe_type, "level = %0", {"500"}, fault);
        EXPECT_TRUE(filter != nullptr ||
                    fault.text.data() == std::string("no memory for the filter"));
        return filter != nullptr;
    });
}

TEST(ContentFilter, decides_without_allocating) {
    const auto filter = compiled(probe_type, "name LIKE '%on' AND command._u.note = 'motor 7'");
    const Bytes sample = encoded_probe({});
    heap_faults::fail_allocation(1);
    EXPECT_TRUE(filter->matches(sample));
    EXPECT_TRUE(heap_faults::was_out_of_reach());
}

}  // namespace
}  // namespace filter_test
