#include <set>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dds/filter/content_filter.hpp"
#include "tests/platform/dds/filter/content_filter_types.hpp"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace filter_test {
namespace {

using orvane::test::Bytes;
using orvane::test::bytes;
using orvane::test::repeated;
using pexa::dds::FilterFault;

/// target (-1062731775, 42), level 500, kind BUSY, name "it's on", command FAILED with note
/// "motor 7", history (1, 2) and (3, 4), extra (-1, "x", ON): of the mutable type with short
/// headers in little-endian order, and with extended headers in big-endian order.
const Bytes mutable_sample = bytes(
    "00030000 00000800 0100a8c0 2a000000 01000400 f4010000 02000400 01000000 03000c00 08000000 "
    "69742773 206f6e00 04001c00 00000400 07000000 03000c00 08000000 'motor 7' 00 027f0000 05001000 "
    "01000000 02000000 03000000 04000000 2c012000 00000400 ffffffff 01000600 02000000 78000000 "
    "02000400 01000000 027f0000 027f0000");
const Bytes mutable_big_endian = bytes(
    "00020000 7f010008 00000000 00000008 c0a80001 0000002a 7f010008 00000001 00000004 000001f4 "
    "7f010008 00000002 00000004 00000001 7f010008 00000003 0000000c 00000008 69742773 206f6e00 "
    "7f010008 00000004 0000002c 7f010008 00000000 00000004 00000007 7f010008 00000003 0000000c "
    "00000008 'motor 7' 00 7f020000 7f010008 00000005 00000010 00000001 00000002 00000003 00000004 "
    "7f010008 0000012c 00000038 7f010008 00000000 00000004 ffffffff 7f010008 00000001 00000006 "
    "00000002 78000000 7f010008 00000002 00000004 00000001 7f020000 7f020000");
/// The same of the final type.
const Bytes final_sample = bytes(
    "00010000 0100a8c0 2a000000 f4010000 01000000 08000000 69742773 206f6e00 07000000 08000000 "
    "'motor 7' 00 01000000 02000000 03000000 04000000 ffffffff 02000000 78000000 01000000");
const Bytes final_big_endian = bytes(
    "00000000 c0a80001 0000002a 000001f4 00000001 00000008 69742773 206f6e00 00000007 00000008 "
    "'motor 7' 00 00000001 00000002 00000003 00000004 ffffffff 00000002 78000000 00000001");

using Parameters = std::vector<const char*>;

/// Compiles with parameters of which a NULL one is missing.
pexa::dds::ContentFilterPointer compile(const DDS_TypeCode& type, const std::string& expression,
                                        const Parameters& parameters, FilterFault& fault) {
    std::vector<char*> texts;
    for (const char* parameter : parameters) {
        texts.push_back(const_cast<char*>(parameter));
    }
    const auto count = static_cast<DDS_Long>(texts.size());
    DDS_StringSeq sequence{};
    DDS_StringSeq_loan_contiguous(&sequence, texts.data(), count, count);
    return pexa::dds::ContentFilter::compile(type, expression, &sequence, fault);
}

/// Decides about a copy in a block of exactly its size, so that a sanitizer sees a read behind it.
bool matches(const DDS_TypeCode& type, const std::string& expression, std::span<const char> payload,
             const Parameters& parameters = {}) {
    FilterFault fault;
    const auto filter = compile(type, expression, parameters, fault);
    EXPECT_NE(filter, nullptr) << expression << ": " << fault.text.data();
    const Bytes copy(payload.begin(), payload.end());
    return filter != nullptr && filter->matches(std::as_bytes(std::span(copy)));
}

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

const struct {
    const char* expression;
    /// The place, and a part of what is said about it.
    const char* message;
    Parameters parameters = {};
} fault_cases[] = {
    {"", "character 1: expected a field, a number, a text in quotes or a parameter, found the end"},
    {"level", "character 6: expected a comparison, BETWEEN or LIKE, found the end"},
    {"level = 1 level = 2", "character 11: expected AND, OR or the end, found level"},
    {"(level = 1", "character 11: expected AND, OR or ')', found the end"},
    {"()", "character 2: expected a field"},
    {"level NOT = 1", "character 11: expected BETWEEN or LIKE, found ="},
    {"level BETWEEN 1", "character 16: expected AND and the upper end of the range, found the end"},
    {"level = 12ab", "character 9: not an integer: 12ab"},
    {"level = 0x100000000", "character 9: more than 32 bits"},
    {"level = 9223372036854775808", "character 9: more than 64 bits"},
    {"name = 'abc", "character 8: a text without closing quote: 'abc"},
    {"level # 1", "character 7: a character without meaning here: #"},
    {"target. = 1", "character 1: a name that ends in a dot: target."},
    {"levels = 1", "character 1: there is no field levels in levels"},
    {"target.port = 1", "character 8: there is no field port in target.port"},
    {"target = 1", "character 1: target is not a number, text or enumeration"},
    {"1 = 1", "character 1: expected a field on one side of the comparison"},
    {"level = 'abc'", "character 9: expected a number"},
    {"name = 7", "character 8: expected a text in quotes"},
    {"level = name", "character 9: a field of another type"},
    {"kind = extra.mode", "character 8: a field of another type"},
    {"kind = RUNNING", "character 8: RUNNING is not an enumerator of Kind"},
    {"level LIKE 'a'", "character 1: expected a text field in front of LIKE"},
    {"name LIKE 7", "character 11: expected a pattern in quotes behind LIKE"},
    {"level = %0", "character 9: there is no parameter %0"},
    {"level = %1", "character 9: there is no parameter %1", {"1"}},
    {"level = %0", "character 9: there is no parameter %0", {nullptr}},
    {"level = %100", "character 9: not a parameter of %0 to %99: %100", {"1"}},
    {"level = %0", "parameter %0, character 3: expected the end, found 2", {"1 2"}},
    {"level = %1", "parameter %1, character 2: expected a number", {"1", " 'a'"}},
    {"%0 = %0", "parameter %0, character 1: expected a number or a text in quotes", {"name"}},
    {"kind = %0", "parameter %0, character 1: busy is not an enumerator of Kind", {"busy"}},
};

TEST(ContentFilter, SaysWhatIsWrongWithAnExpressionAndWhere) {
    for (const auto& [expression, message, parameters] : fault_cases) {
        FilterFault fault;
        EXPECT_EQ(compile(probe_type, expression, parameters, fault), nullptr) << expression;
        const std::string_view found = fault.text.data();
        const std::string_view expected = message;
        const std::size_t place_end = expected.find(": ") + 2;
        EXPECT_TRUE(found.starts_with(expected.substr(0, place_end)) &&
                    found.find(expected.substr(place_end), place_end) != found.npos)
            << expression << ": " << found;
    }
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
          "level = 500" + std::string(16384 - 11, ' ')}) {
        EXPECT_TRUE(matches(probe_type, expression, mutable_sample));
    }
    const std::pair<std::string, const char*> faults[] = {
        {bracketed(65), "more than 64 brackets"},
        {comparisons(257), "more than 256 co"},
        {std::string(100'000, '('), "longer than 16384 characters"},
    };
    for (const auto& [expression, text] : faults) {
        FilterFault fault;
        EXPECT_EQ(compile(probe_type, expression, {}, fault), nullptr);
        EXPECT_NE(std::string(fault.text.data()).find(text), std::string::npos)
            << fault.text.data();
    }
}

TEST(ContentFilter, DecidesWithoutMemory) {
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

// Holds for every sample of both types, and looks at fields at the beginning and the end.
constexpr const char* always =
    "(name LIKE '%' AND level <> 77777 AND target.app <> 77777) OR extra.label <> 'y' OR "
    "command._u.note <> 'z'";

TEST(ContentFilterPayload, MayLackMembersButNotTheEndOfOne) {
    const std::span<const char> all = final_sample;
    for (std::size_t size = 0; size <= all.size(); ++size) {
        EXPECT_EQ(matches(flat_type, always, all.first(size)), size == all.size()) << size;
    }
    const Bytes three_members = bytes(
        "00030000 01000400 05000000 03000900 05000000 'four' 00 000000 00000800 01000000 02000000");
    const std::set<std::size_t> ends = {4, 12, 25, 40};
    for (std::size_t size = 0; size <= three_members.size(); ++size) {
        EXPECT_EQ(matches(probe_type, always, std::span(three_members).first(size)),
                  ends.contains(size))
            << size;
    }
}

TEST(ContentFilterPayload, MayHaveMembersInAnyOrderUnknownOnesAndLongerOnes) {
    const Bytes sample = bytes(
        "00030000 2c012800 01000600 02000000 78000000 63000c00 08000000 'unknown' 00 00000400 "
        "ffffffff 027f0000 63000c00 08000000 'unknown' 00 037f0400 ffffffff 02000400 01000000 "
        "01000800 f4010000 00000000 027f0000");
    EXPECT_TRUE(matches(probe_type,
                        "level = 500 AND kind = BUSY AND extra.size = -1 AND extra.label = 'x'",
                        sample));
}

TEST(ContentFilterPayload, ThatIsNoEncodingOfTheTypeDoesNotMatch) {
    const std::pair<const char*, const char*> mutable_cases[] = {
        {"half an encapsulation header", "000300"},
        {"an encapsulation of another kind", "00060000 01000400 01000000 027f0000"},
        {"an unknown member that must be understood", "00030000 63400400 01000000 027f0000"},
        {"the same in a member", "00030000 2c010c00 09400400 01000000 027f0000"},
        {"a member shorter than its type", "00030000 00000400 01000000 027f0000"},
        {"a text longer than its bound",
         "00030000 03001600 12000000 'nnnnnnnnnnnnnnnnn' 00 0000 027f0000"},
        {"a text of length 0", "00030000 03000400 00000000 027f0000"},
        {"a text without its end", "00030000 03000800 04000000 'aaaa' 027f0000"},
        {"a text with an end inside", "00030000 03000800 04000000 61006100 027f0000"},
        {"a member beyond the end of the payload", "00030000 0100c800 01000000"},
    };
    for (const auto& [what, payload] : mutable_cases) {
        EXPECT_FALSE(matches(probe_type, always, bytes(payload))) << what;
    }
    const std::string empty = "01000000 00000000";
    const std::string limit = "00000000 04000000";
    const struct {
        std::string name;
        std::string command;
        bool matches = false;
    } final_cases[] = {
        {"11000000 'nnnnnnnnnnnnnnnn' 00 000000", limit, true},
        {"12000000 'nnnnnnnnnnnnnnnnn' 00 0000", limit},
        {"05000040 'nnnn' 00 000000", limit},
        {empty, "01000000 04000000" + std::string(64, '0')},
        {empty, "01000000 fcffffff"},
    };
    for (const auto& row : final_cases) {
        const Bytes sample =
            bytes("00010000 01000000 02000000 03000000 00000000" + row.name + row.command +
                  std::string(40, '0') + "01000000" + std::string(16, '0'));
        EXPECT_EQ(matches(flat_type, always, sample), row.matches) << row.name << row.command;
    }
}

}  // namespace
}  // namespace filter_test
