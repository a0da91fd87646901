// What decoding makes of input that this version of the types would not write.
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/types/sample.hpp"

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

/// A log message with other content than the one that is decoded into it.
void fill_with_other_values(QEL_KX_LogMessage& sample) {
    sample.hostAndAppId = {77, 78};
    sample.level = 79;
    std::strcpy(sample.category, "old category");
    std::strcpy(sample.message, "old message");
}

std::string value_of(const QEL_KX_LogMessage& sample) {
    return std::to_string(sample.hostAndAppId.rtps_host_id) + " " +
           std::to_string(sample.hostAndAppId.rtps_app_id) + " " + std::to_string(sample.level) +
           " '" + sample.category + "' '" + sample.message + "'";
}

TEST(Decoding, OfOtherVersionsOfATypeKeepsWhatIsKnown) {
    const std::string whole = "16909060 168496141 300 'net' 'hi'";
    const struct {
        const char* what;
        std::string written;
        std::string value;
    } inputs[] = {
        {"nothing but the end", head + list_end, "0 0 0 '' ''"},
        {"nothing at all", head, "0 0 0 '' ''"},
        {"no message", head + identity + level + category + list_end,
         "16909060 168496141 300 'net' ''"},
        {"no end of the list", head + identity + level + category + message, whole},
        {"neither end nor padding",
         head + identity + level + category + "03 00 07 00  03 00 00 00  'hi' 00", whole},
        {"two of three padding bytes", head + "03 00 05 00  01 00 00 00  00  00 00", "0 0 0 '' ''"},
        {"members in another order", head + message + category + level + identity + list_end,
         whole},
        {"an unknown member",
         head + identity + "09 00 05 00 01 02 03 04 05 00 00 00 " + level + category + message +
             list_end,
         whole},
        {"an unknown member in the extended form",
         head + identity + "01 7F 08 00 00 00 01 00 04 00 00 00 01 02 03 04 " + level + category +
             message + list_end,
         whole},
        {"an ignored member that must be understood",
         head + identity + "03 7F 04 00 01 02 03 04 " + level + category + message + list_end,
         whole},
        {"known members that must be understood",
         head + "00 40 08 00  04 03 02 01  0D 0C 0B 0A " + "01 40 04 00  2C 01 00 00 " + category +
             message + list_end,
         whole},
        {"extended headers",
         head + "01 7F 08 00 00 00 00 00 08 00 00 00  04 03 02 01  0D 0C 0B 0A " + level +
             "01 7F 08 00 02 00 00 00 08 00 00 00  04 00 00 00  'net' 00 " + message + list_end,
         whole},
        {"members longer than expected",
         head + "00 00 0C 00  04 03 02 01  0D 0C 0B 0A  FF FF FF FF " +
             "01 00 08 00  2C 01 00 00  FF FF FF FF " + category +
             "03 00 0A 00  03 00 00 00  'hi' 00  FF FF FF  00 00 " + list_end,
         whole},
        {"a member twice",
         head + identity + level + category + message + "02 00 06 00  02 00 00 00  'x' 00  00 00 " +
             list_end,
         "16909060 168496141 300 'x' 'hi'"},
        {"something behind the end",
         head + identity + level + category + message + list_end + "01 00 04 00 01 00 00 00",
         whole},
        {"the identifier of plain encoding",
         "00 01 00 00 " + identity + level + category + message + list_end, whole},
    };
    for (const auto& input : inputs) {
        Sample<QEL_KX_LogMessage> sample;
        fill_with_other_values(*sample);
        EXPECT_TRUE(decode(*sample, bytes(input.written))) << input.what;
        EXPECT_EQ(value_of(*sample), input.value) << input.what;
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

TEST(Decoding, AcceptsTextsUpToTheirBoundOnly) {
    for (const std::size_t length : {512U, 513U}) {
        Bytes input = bytes(
            head + (length == 512 ? "02 00 05 02  01 02 00 00 " : "02 00 06 02  02 02 00 00 "));
        input.insert(input.end(), length, 'c');
        input.push_back('\0');
        Sample<QEL_KX_LogMessage> sample;
        EXPECT_EQ(decode(*sample, input), length == 512);
        EXPECT_EQ(sample->category, length == 512 ? repeated('c', 512) : "");
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

TEST(Decoding, RejectsNumbersThatAreNoEnumerator) {
    const Input states[] = {
        {"state 4", head + "02 00 04 00 04 00 00 00"},
        {"state -1", head + "02 00 04 00 FF FF FF FF"},
        {"format 7", head + "06 00 04 00 07 00 00 00"},
        {"the last pair's verbosity 6",
         head + "05 00 28 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                "00 00 00 00 00 00 00 00 00 04 00 00 00 06 00 00 00"},
    };
    for (const auto& input : states) {
        Sample<QEL_KX_ADMIN_State> sample;
        QELCdrStream after;
        EXPECT_FALSE(decode(*sample, bytes(input.written), &after)) << input.what;
        EXPECT_EQ(after.rejected, 1) << input.what;
    }
    const Input commands[] = {
        {"discriminator 3", head + "00 00 04 00 03 00 00 00"},
        {"format 7", head + "00 00 04 00 02 00 00 00 03 00 04 00 07 00 00 00"},
        {"category 5", head + "02 00 0C 00 01 00 00 00 05 00 00 00 00 00 00 00"},
    };
    for (const auto& input : commands) {
        Sample<QEL_KX_ADMIN_Command> sample;
        QELCdrStream after;
        EXPECT_FALSE(decode(*sample, bytes(input.written), &after)) << input.what;
        EXPECT_EQ(after.rejected, 1) << input.what;
    }
    Sample<QEL_KX_ADMIN_CommandResult> result;
    *result = QEL_KX_COMMAND_RESULT_ERROR;
    EXPECT_FALSE(decode(*result, bytes("00 01 00 00 03 00 00 00")));
    EXPECT_EQ(*result, QEL_KX_COMMAND_RESULT_OK);
}

TEST(Decoding, ForgetsARejectionBeforeTheNextSample) {
    Bytes input = bytes(head + level + list_end);
    QELCdrStream stream;
    QELCdrStream_init(&stream, input.data(), input.size());
    stream.rejected = 1;
    Sample<QEL_KX_LogMessage> sample;
    void* target = sample.get();
    EXPECT_TRUE(
        QEL_KX_LogMessagePlugin_deserialize(nullptr, &target, nullptr, &stream, 1, 1, nullptr));
    EXPECT_EQ(stream.rejected, 0);
}

TEST(Decoding, RefusesAStateWithFewerThanFivePairs) {
    Sample<QEL_KX_ADMIN_State> sample;
    EXPECT_FALSE(decode(*sample, bytes(head + "05 00 20 00" + std::string(64, '0') + list_end)));
}

TEST(Decoding, RefusesSequencesThatDoNotFit) {
    const std::string pair = "00 00 00 00 01 00 00 00 ";
    const std::string six = pair + pair + pair + pair + pair + pair;
    const Input inputs[] = {
        {"six elements", head + "02 00 34 00  06 00 00 00 " + six},
        {"a count of nearly everything", head + "02 00 34 00  FF FF FF FF " + six},
        {"a count of more than there are", head + "02 00 0C 00  02 00 00 00 " + six},
        {"no count", head + "02 00 00 00 " + list_end},
    };
    for (const auto& input : inputs) {
        Sample<QEL_KX_ADMIN_Command> sample;
        EXPECT_FALSE(decode(*sample, bytes(input.written))) << input.what;
        EXPECT_LE(sample->_u.categoryAndVerbosity.length, 5) << input.what;
    }
    Sample<QEL_KX_ADMIN_Command> sample;
    EXPECT_TRUE(decode(*sample, bytes(head + "02 00 0C 00  01 00 00 00 " + pair)));
    EXPECT_EQ(sample->_u.categoryAndVerbosity.length, 1);
    // Fewer elements than the type allows, yet more than the record has room for.
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(
        &sample->_u.categoryAndVerbosity, 1));
    EXPECT_FALSE(decode(*sample, bytes(head + "02 00 14 00  02 00 00 00 " + pair + pair)));
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(
        &sample->_u.categoryAndVerbosity, 0));
    EXPECT_FALSE(decode(*sample, bytes(head + "02 00 0C 00  01 00 00 00 " + pair)));
}

TEST(Decoding, OfACommandInsideARequestEndsWithItsHeader) {
    const std::string before = head + "02 00 04 00  05 00 00 00 ";
    const std::string discriminator = "00 00 04 00  02 00 00 00 ";
    const std::string format = "03 00 04 00  06 00 00 00 ";
    const struct {
        const char* what;
        std::string command;
        bool accepted;
        int format;
    } inputs[] = {
        {"whole", "03 00 14 00 " + discriminator + format + list_end, true, 6},
        {"without an end, which is not borrowed from the request",
         "03 00 10 00 " + discriminator + format, true, 6},
        {"without its branch", "03 00 08 00 " + discriminator, true, 0},
        {"empty", "03 00 00 00 ", true, 0},
        {"with more behind its end",
         "03 00 18 00 " + discriminator + format + list_end + "FF FF FF FF ", true, 6},
        {"with a member that reaches behind it",
         "03 00 0C 00 " + discriminator + "03 00 04 00 " + list_end, false, 0},
        {"with half a header", "03 00 0A 00 " + discriminator + "03 00 00 00 ", false, 0},
    };
    for (const auto& input : inputs) {
        Sample<QEL_KX_ADMIN_CommandRequest> sample;
        QELCdrStream after;
        std::string request = before;
        request.append(input.command).append(list_end);
        const Bytes whole = bytes(request);
        EXPECT_EQ(decode(*sample, whole, &after), input.accepted) << input.what;
        EXPECT_EQ(sample->command._u.printFormat, input.format) << input.what;
        EXPECT_EQ(after.size, whole.size()) << input.what;
        if (input.accepted) {
            EXPECT_EQ(after.position, whole.size()) << input.what;
        }
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
    Bytes input = bytes(head + "02 00 06 00  FF FF FF FF 01 02 00 00 09 40 00 00 " + list_end +
                        "AA BB CC DD");
    QELCdrStream stream;
    QELCdrStream_init(&stream, input.data(), input.size());
    EXPECT_TRUE(QEL_KX_LogMessagePlugin_skip(nullptr, &stream, 1, 1, nullptr));
    EXPECT_EQ(stream.position, input.size() - 4);

    Bytes lie = bytes(head + "02 00 06 00  FF FF FF FF");
    QELCdrStream_init(&stream, lie.data(), lie.size());
    EXPECT_FALSE(QEL_KX_LogMessagePlugin_skip(nullptr, &stream, 1, 1, nullptr));
    Bytes half = bytes("00 01 00 00 01 02 03 04 05 06 07");
    QELCdrStream_init(&stream, half.data(), half.size());
    EXPECT_FALSE(QEL_KX_HostAndAppIdPlugin_skip(nullptr, &stream, 1, 1, nullptr));
}

}  // namespace
