// What decoding makes of input that this version of the types would not write.
#include <set>

#include "tests/types/sample.hpp"

namespace orvane::types {
namespace {

struct Input {
    const char* what;
    std::string written;
};

// Pieces of log messages, little-endian.
const std::string head = "00 03 00 00 ";
const std::string identity = "00 00 08 00  04 03 02 01  0D 0C 0B 0A ";
const std::string level = "01 00 04 00  2C 01 00 00 ";
const std::string category = "02 00 08 00  04 00 00 00  'net' 00 ";
const std::string message = "03 00 07 00  03 00 00 00  'hi' 00  00 ";
const std::string list_end = "02 7F 00 00 ";
const std::string all_but_identity = level + category + message + list_end;
const std::string all_values = "16909060 168496141 300 'net' 'hi'";

std::string value_of(const QEL_KX_LogMessage& sample) {
    return std::to_string(sample.hostAndAppId.rtps_host_id) + " " +
           std::to_string(sample.hostAndAppId.rtps_app_id) + " " + std::to_string(sample.level) +
           " '" + sample.category + "' '" + sample.message + "'";
}

TEST(Decoding, OfOtherVersionsOfATypeKeepsWhatIsKnown) {
    const struct {
        const char* what;
        std::string members;
        std::string value = all_values;
    } inputs[] = {
        {"nothing but the end", list_end, "0 0 0 '' ''"},
        {"nothing at all", "", "0 0 0 '' ''"},
        {"no message", identity + level + category + list_end, "16909060 168496141 300 'net' ''"},
        {"no end of the list", identity + level + category + message},
        {"neither end nor padding",
         identity + level + category + "03 00 07 00  03 00 00 00  'hi' 00"},
        {"two of three padding bytes", "03 00 05 00  01 00 00 00  00  00 00", "0 0 0 '' ''"},
        {"members in another order", message + category + level + identity + list_end},
        {"an unknown member", identity + "09 00 05 00 01 02 03 04 05 00 00 00 " + all_but_identity},
        {"an unknown member in the extended form",
         identity + "01 7F 08 00 00 00 01 00 04 00 00 00 01 02 03 04 " + all_but_identity},
        {"an ignored member that must be understood",
         identity + "03 7F 04 00 01 02 03 04 " + all_but_identity},
        {"known members that must be understood",
         "00 40 08 00  04 03 02 01  0D 0C 0B 0A 01 40 04 00  2C 01 00 00 " + category + message},
        {"extended headers",
         "01 7F 08 00 00 00 00 00 08 00 00 00  04 03 02 01  0D 0C 0B 0A " + level +
             "01 7F 08 00 02 00 00 00 08 00 00 00  04 00 00 00  'net' 00 " + message},
        {"members longer than expected",
         "00 00 0C 00  04 03 02 01  0D 0C 0B 0A  FF FF FF FF "
         "01 00 08 00  2C 01 00 00  FF FF FF FF " +
             category + "03 00 0A 00  03 00 00 00  'hi' 00  FF FF FF  00 00 " + list_end},
        {"a member twice",
         "02 00 06 00  02 00 00 00  'x' 00  00 00 " + identity + all_but_identity},
        {"something behind the end", identity + all_but_identity + "01 00 04 00 01 00 00 00"},
        {"an end with a length", identity + level + category + message + "02 7F 04 00 01 00 00 00"},
        {"an end with a length beyond the input",
         identity + level + category + message + "02 3F FF FF "},
    };
    for (const auto& input : inputs) {
        Sample<QEL_KX_LogMessage> sample;
        sample->hostAndAppId = {77, 78};
        sample->level = 79;
        std::strcpy(sample->category, "old category");
        std::strcpy(sample->message, "old message");
        for (const char* identifier : {"00 03 00 00 ", "00 01 00 00 "}) {
            EXPECT_TRUE(decode(*sample, bytes(identifier + input.members))) << input.what;
            EXPECT_EQ(value_of(*sample), input.value) << input.what;
        }
    }
}

TEST(Decoding, RefusesMalformedLogMessages) {
    const Input inputs[] = {
        {"no encapsulation header", "00 03 00"},
        {"identifier 4", "00 04 00 00 " + identity + list_end},
        {"identifier in the wrong byte order", "03 00 00 00 " + identity + list_end},
        {"an unknown member that must be understood",
         head + identity + "09 40 04 00 01 02 03 04 " + list_end},
        {"an unknown extended member that must be understood",
         head + "01 7F 08 00 09 00 00 40 04 00 00 00 01 02 03 04 " + list_end},
        {"half a header", head + "01 00"},
        {"a length beyond the input", head + "01 00 08 00  2C 01 00 00"},
        {"an extended length beyond the input",
         head + "01 7F 08 00 01 00 00 00 FF FF FF FF 2C 01 00 00"},
        {"an extended header cut short", head + "01 7F 08 00 01 00 00 00"},
        {"an extended header that says it is shorter",
         head + "01 7F 04 00 01 00 00 00 04 00 00 00 2C 01 00 00"},
        {"a number shorter than its four bytes", head + "01 00 02 00  2C 01 00 00 " + list_end},
        {"a structure shorter than its eight bytes",
         head + "00 00 04 00  04 03 02 01  0D 0C 0B 0A " + list_end},
        {"a text longer than its member", head + "02 00 06 00  04 00 00 00  'net' 00 " + list_end},
        {"a text longer than the input", head + "02 00 08 00  FF FF FF FF  'net' 00 " + list_end},
        {"a text without its terminator", head + "02 00 07 00  03 00 00 00  'net' 00 " + list_end},
        {"a text without any byte", head + "02 00 04 00  00 00 00 00 " + list_end},
        {"a text that ends early", head + "02 00 08 00  04 00 00 00  'n' 00 't' 00 " + list_end},
        {"a member without content", head + "02 00 00 00 " + list_end},
    };
    for (const auto& input : inputs) {
        Sample<QEL_KX_LogMessage> sample;
        QELCdrStream after;
        EXPECT_FALSE(decode(*sample, bytes(input.written), &after)) << input.what;
        EXPECT_EQ(after.size, bytes(input.written).size()) << input.what;
        EXPECT_EQ(after.rejected, 0) << input.what;
    }
}

TEST(Decoding, OfATruncatedSampleSucceedsOnlyWhereAMemberEnds) {
    const Bytes whole = bytes(head + identity + level + category + message + list_end);
    const std::set<std::size_t> member_ends{4, 16, 24, 36, 47, 48, 52};
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const Bytes truncated(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        Sample<QEL_KX_LogMessage> sample;
        EXPECT_EQ(decode(*sample, truncated), member_ends.contains(size)) << size;
    }
}

template <typename T>
void expect_rejected(std::initializer_list<Input> inputs) {
    for (const Input& input : inputs) {
        Sample<T> sample;
        QELCdrStream after;
        EXPECT_FALSE(decode(*sample, bytes(input.written), &after)) << input.what;
        EXPECT_EQ(after.rejected, 1) << input.what;
    }
}

TEST(Decoding, RejectsNumbersThatAreNoEnumerator) {
    expect_rejected<QEL_KX_ADMIN_State>({
        {"state 4", head + "02 00 04 00 04 00 00 00"},
        {"state -1", head + "02 00 04 00 FF FF FF FF"},
        {"format 7", head + "06 00 04 00 07 00 00 00"},
        {"the last pair's verbosity 6",
         head + "05 00 28 00 " + std::string(64, '0') + "04 00 00 00 06 00 00 00"},
    });
    expect_rejected<QEL_KX_ADMIN_Command>({
        {"discriminator 3", head + "00 00 04 00 03 00 00 00"},
        {"format 7", head + "00 00 04 00 02 00 00 00 03 00 04 00 07 00 00 00"},
        {"category 5", head + "02 00 0C 00 01 00 00 00 05 00 00 00 00 00 00 00"},
    });
    expect_rejected<QEL_KX_ADMIN_CommandResult>({{"result 3", "00 01 00 00 03 00 00 00"}});
}

TEST(Decoding, RefusesCollectionsThatDoNotFit) {
    Sample<QEL_KX_ADMIN_State> state;
    EXPECT_FALSE(decode(*state, bytes(head + "05 00 20 00" + std::string(64, '0') + list_end)))
        << "four pairs instead of five";
    const std::string pair = "00 00 00 00 01 00 00 00 ";
    const std::string six = pair + pair + pair + pair + pair + pair;
    const struct {
        const char* what;
        std::string written;
        DDS_Long room = 5;
        DDS_Long taken = 0;
    } inputs[] = {
        {"six elements", "02 00 34 00  06 00 00 00 " + six},
        {"a count of nearly everything", "02 00 34 00  FF FF FF FF " + six},
        {"a count of more than there are", "02 00 0C 00  02 00 00 00 " + six},
        {"no count", "02 00 00 00 " + list_end},
        {"two elements", "02 00 14 00  02 00 00 00 " + pair + pair, 2, 2},
        {"more than the record has room for", "02 00 14 00  02 00 00 00 " + pair + pair, 1},
    };
    for (const auto& input : inputs) {
        Sample<QEL_KX_ADMIN_Command> sample;
        auto* pairs = &sample->_u.categoryAndVerbosity;
        ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(pairs, input.room));
        EXPECT_EQ(decode(*sample, bytes(head + input.written)), input.taken > 0) << input.what;
        EXPECT_LE(pairs->length, input.room) << input.what;
    }
}

TEST(Decoding, OfACommandInsideARequestEndsWithItsHeader) {
    const std::string before = head + "02 00 04 00  05 00 00 00 ";
    const std::string discriminator = "00 00 04 00  02 00 00 00 ";
    const std::string format = "03 00 04 00  06 00 00 00 ";
    const struct {
        const char* what;
        std::string command;
        int format;
        bool accepted = true;
    } inputs[] = {
        {"whole", "03 00 14 00 " + discriminator + format + list_end, 6},
        {"without an end, which is not borrowed from the request",
         "03 00 10 00 " + discriminator + format, 6},
        {"without its branch", "03 00 08 00 " + discriminator, 0},
        {"empty", "03 00 00 00 ", 0},
        {"behind another one, of which nothing stays",
         "03 00 24 00 00 00 04 00  01 00 00 00 02 00 0C 00  01 00 00 00  02 00 00 00  03 00 00 00 "
         "03 00 04 00  06 00 00 00 02 7F 00 00 03 00 0C 00 00 00 04 00  00 00 00 00 02 7F 00 00 ",
         0},
        {"with more behind its end",
         "03 00 18 00 " + discriminator + format + list_end + "FF FF FF FF ", 6},
        {"with a member that reaches behind it",
         "03 00 0C 00 " + discriminator + "03 00 04 00 " + list_end, 0, false},
        {"with half a header", "03 00 0A 00 " + discriminator + "03 00 00 00 ", 0, false},
    };
    for (const auto& input : inputs) {
        Sample<QEL_KX_ADMIN_CommandRequest> sample;
        QELCdrStream after;
        const Bytes whole = bytes(std::string(before).append(input.command).append(list_end));
        EXPECT_EQ(decode(*sample, whole, &after), input.accepted) << input.what;
        EXPECT_EQ(sample->command._u.printFormat, input.format) << input.what;
        EXPECT_EQ(sample->command._u.categoryAndVerbosity.length, 0) << input.what;
        EXPECT_EQ(after.size, whole.size()) << input.what;
        EXPECT_TRUE(!input.accepted || after.position == whole.size()) << input.what;
    }
}

TEST(Decoding, NeedsTheBuffersOfAnInitialisedSample) {
    QEL_KX_LogMessage bare{};
    ASSERT_TRUE(QEL_KX_LogMessage_initialize_ex(&bare, 0, 0));
    EXPECT_FALSE(decode(bare, bytes(head + category)));
    EXPECT_TRUE(decode(bare, bytes(head + level)));
    EXPECT_EQ(bare.level, 300);
}

TEST(Skipping, PassesOverMembersWithoutLookingAtThem) {
    const auto skipped = [](const auto& skip, const std::string& written) {
        Bytes input = bytes(written);
        QELCdrStream stream = stream_over(input);
        return skip(nullptr, &stream, 1, 1, nullptr) != 0 ? stream.position : 0;
    };
    const std::string members = head + "02 00 06 00  FF FF FF FF 01 02 00 00 09 40 00 00 ";
    EXPECT_EQ(skipped(QEL_KX_LogMessagePlugin_skip, members + list_end + "AA BB CC DD"), 24U);
    EXPECT_EQ(skipped(QEL_KX_LogMessagePlugin_skip, head + "02 00 06 00  FF FF FF FF"), 0U);
    EXPECT_EQ(skipped(QEL_KX_HostAndAppIdPlugin_skip, "00 01 00 00 01 02 03 04 05 06 07"), 0U);
}

}  // namespace
}  // namespace orvane::types
