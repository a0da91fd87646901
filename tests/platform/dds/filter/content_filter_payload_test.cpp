#include <algorithm>

#include <gtest/gtest.h>

#include "tests/platform/dds/filter/content_filter_fixture.hpp"

using pexa::dds::ContentFilter;

namespace filter_test {
namespace {

/// A block of exactly the payload's size, so that a sanitizer sees a read behind it.
bool matches_tightly(const ContentFilter& filter, std::span<const std::byte> payload) {
    const auto copy = std::make_unique<std::byte[]>(payload.size());
    std::copy(payload.begin(), payload.end(), copy.get());
    return filter.matches({copy.get(), payload.size()});
}

// Holds for every sample of both types, and looks at fields at the beginning and the end.
constexpr const char* always =
    "(name LIKE '%' AND level <> 77777 AND target.app <> 77777) OR extra.label <> 'y' OR "
    "command._u.note <> 'z'";

TEST(ContentFilterPayload, APlainSampleThatIsCutOffNeverMatches) {
    const auto filter = compiled(flat_type, always);
    for (const Encoding& encoding : all_encodings()) {
        const Bytes sample = encoded_flat(encoding);
        ASSERT_TRUE(matches_tightly(*filter, sample));
        for (std::size_t size = 0; size < sample.size(); ++size) {
            EXPECT_FALSE(matches_tightly(*filter, {sample.data(), size}))
                << size << " bytes, " << to_string(encoding);
        }
    }
}

TEST(ContentFilterPayload, AListOfMembersMatchesOnlyWhenCutOffBetweenThem) {
    const auto filter = compiled(probe_type, always);
    Encoder probe({}, true);
    std::vector<std::size_t> ends = {4};
    for (const auto& [id, value] :
         std::vector<std::pair<std::uint32_t, Encoder>>{{1, probe.value().number(500)},
                                                        {3, probe.value().text("four")},
                                                        {0, probe.value().number(1).number(2)}}) {
        probe.member(id, value);
        ends.push_back(probe.payload().size());
    }
    const Bytes sample = probe.payload();
    for (std::size_t size = 0; size <= sample.size(); ++size) {
        const bool between = std::find(ends.begin(), ends.end(), size) != ends.end();
        EXPECT_EQ(matches_tightly(*filter, {sample.data(), size}), between) << size;
    }
}

TEST(ContentFilterPayload, IsNeverReadBeyondItsEndWhateverAByteSays) {
    const auto probe_filter = compiled(probe_type, always);
    const auto flat_filter = compiled(flat_type, always);
    constexpr int values[] = {0x00, 0x01, 0x02, 0x03, 0x3f, 0x40, 0x7f, 0x80, 0xfe, 0xff};
    for (const Encoding& encoding : all_encodings()) {
        for (const auto& [filter, valid] : {std::pair(&probe_filter, encoded_probe(encoding)),
                                            std::pair(&flat_filter, encoded_flat(encoding))}) {
            ASSERT_TRUE(matches_tightly(**filter, valid));
            for (std::size_t i = 0; i < valid.size(); ++i) {
                for (const int value : values) {
                    Bytes hostile = valid;
                    hostile[i] = static_cast<std::byte>(value);
                    // Twice, for a verdict that depends on other memory may change.
                    EXPECT_EQ(matches_tightly(**filter, hostile),
                              matches_tightly(**filter, hostile));
                }
            }
        }
    }
}

struct MalformedCase {
    const char* what;
    const DDS_TypeCode& type;
    Bytes payload;
};

TEST(ContentFilterPayload, ThatIsNoEncodingOfTheTypeDoesNotMatch) {
    const Encoder list({}, true);
    const auto value = [&] { return list.value(); };
    const auto flat_with = [](std::int64_t name_length, std::int64_t label) {
        Encoder flat({}, false);
        flat.numbers({1, 2, 3, 0});
        if (name_length < 0) {
            flat.text(std::string(static_cast<std::size_t>(-name_length), 'n'));
        } else {
            flat.number(name_length).text("");
        }
        flat.number(label).number(4);
        flat.numbers({0, 0, 0, 0, 0}).text("").number(0);
        return flat.payload();
    };
    Bytes foreign_identifier = encoded_probe({});
    foreign_identifier[1] = std::byte{6};
    const MalformedCase cases[] = {
        {"nothing", probe_type, {}},
        {"half an encapsulation header", probe_type, Bytes(3)},
        {"an encapsulation of another kind", probe_type, foreign_identifier},
        {"an unknown member that must be understood", probe_type,
         Encoder(list).member(99, value().number(1), true).list_end().payload()},
        {"an unknown member that must be understood, in a member", probe_type,
         Encoder(list)
             .member(300, value().member(9, value().number(1), true).list_end())
             .payload()},
        {"a member shorter than its type", probe_type,
         Encoder(list).member(0, value().number(1)).list_end().payload()},
        {"a text longer than its bound", probe_type,
         Encoder(list).member(3, value().text(std::string(17, 'n'))).list_end().payload()},
        {"a text of length 0", probe_type,
         Encoder(list).member(3, value().number(0)).list_end().payload()},
        {"a text without its end", probe_type,
         Encoder(list).member(3, value().number(4).number(0x61616161)).list_end().payload()},
        {"a text with an end inside", probe_type,
         Encoder(list).member(3, value().number(4).number(0x00610061)).list_end().payload()},
        {"a member beyond the end of the payload", probe_type,
         [&] {
             Bytes bytes = Encoder(list).member(1, value().number(1)).payload();
             bytes[6] = std::byte{200};
             return bytes;
         }()},
        {"a plain text longer than its bound", flat_type, flat_with(-17, 0)},
        {"a plain text that ends behind the payload", flat_type, flat_with(1 << 30, 0)},
        {"a sequence of more elements than its bound", flat_type,
         Encoder({}, false)
             .numbers({1, 2, 3, 0})
             .text("")
             .numbers({1, 4, 1, 1, 2, 2, 3, 3, 4, 4})
             .numbers({0, 0, 0, 0, 0})
             .text("")
             .number(0)
             .payload()},
        {"a sequence of a negative number of elements", flat_type, flat_with(-4, 1)},
    };
    for (const auto& [what, type, payload] : cases) {
        EXPECT_FALSE(matches_tightly(*compiled(type, always), payload)) << what;
    }
    EXPECT_TRUE(matches_tightly(*compiled(flat_type, always), flat_with(-16, 0)));
}

TEST(ContentFilterPayload, MayContainMembersLongerThanExpected) {
    const Encoder list({}, true);
    const Bytes payload = Encoder(list)
                              .member(1, list.value().number(500).number(0))
                              .member(2, list.value().number(1))
                              .list_end()
                              .payload();
    EXPECT_TRUE(matches_tightly(*compiled(probe_type, "level = 500 AND kind = BUSY"), payload));
}

}  // namespace
}  // namespace filter_test
