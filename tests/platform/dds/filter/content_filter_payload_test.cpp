#include <set>

#include "tests/platform/dds/filter/content_filter_fixture.hpp"

namespace filter_test {
namespace {

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

/// A sample of the final type with this name and command.
Bytes final_with(const std::string& name, const std::string& command) {
    return bytes("00010000 01000000 02000000 03000000 00000000" + name + command +
                 "00000000 00000000 00000000 00000000 00000000 01000000 00000000 00000000");
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
    const std::string four_elements = "01000000 04000000" + std::string(64, '0');
    const struct {
        const char* what;
        std::string name;
        std::string command;
        bool matches = false;
    } final_cases[] = {
        {"a text as long as its bound", "11000000 'nnnnnnnnnnnnnnnn' 00 000000", limit, true},
        {"a text longer than its bound", "12000000 'nnnnnnnnnnnnnnnnn' 00 0000", limit},
        {"a text that ends behind the payload", "05000040 'nnnn' 00 000000", limit},
        {"a sequence of more elements than its bound", empty, four_elements},
        {"a sequence of a negative number of elements", empty, "01000000 fcffffff"},
    };
    for (const auto& row : final_cases) {
        EXPECT_EQ(matches(flat_type, always, final_with(row.name, row.command)), row.matches)
            << row.what;
    }
}

}  // namespace
}  // namespace filter_test
