#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pexa/cdr_stream.h"

namespace {

using namespace std::string_literals;

struct HeaderCase {
    bool extended;
    DDS_UnsignedLong id;
    bool must_understand;
    std::string big;
    std::string little;
};

// Around a value of three bytes.
const HeaderCase header_cases[] = {
    {false, 0, false, "\0\0\0\3abc"s, "\0\0\3\0abc"s},
    {false, 0x3F00, true, "\x7f\0\0\3abc"s, "\0\x7f\3\0abc"s},
    {true, 1, false, "\x7f\1\0\x8\0\0\0\1\0\0\0\3abc"s, "\1\x7f\x8\0\1\0\0\0\3\0\0\0abc"s},
    {true, 0x0FFFFFFF, true, "\x7f\1\0\x8\x4f\xff\xff\xff\0\0\0\3abc"s,
     "\1\x7f\x8\0\xff\xff\xff\x4f\3\0\0\0abc"s},
};

TEST(CdrParameter, HeadersHaveTheirBytesInBothFormsAndByteOrders) {
    for (const HeaderCase& item : header_cases) {
        for (const QELBool little : {0, 1}) {
            const std::string& bytes = little != 0 ? item.little : item.big;
            std::vector<char> buffer(bytes.size());
            QELCdrStream stream;
            QELCdrStream_init(&stream, buffer.data(), buffer.size());
            stream.littleEndian = little;
            QELCdrOpenParameter open{};
            ASSERT_EQ(QELCdrStream_serializeParameterHeader(&stream, &open, item.extended, item.id,
                                                            item.must_understand),
                      1);
            for (const char* letter = "abc"; *letter != '\0'; ++letter) {
                buffer[stream.position++] = *letter;
            }
            ASSERT_EQ(QELCdrStream_serializeParameterLength(&stream, &open), 1);
            EXPECT_EQ(std::string(buffer.data(), stream.position), bytes);

            QELCdrStream_reset(&stream);
            QELCdrParameterHeader header{};
            ASSERT_EQ(QELCdrStream_deserializeParameterHeader(&stream, &header), 1);
            EXPECT_EQ(header.id, item.id);
            EXPECT_EQ(header.length, 3U);
            EXPECT_EQ(header.mustUnderstand != 0, item.must_understand);
            EXPECT_EQ(header.isListEnd + header.isIgnored, 0);
            EXPECT_EQ(header.valuePosition, bytes.size() - 3);
            EXPECT_EQ(QELCdrStream_moveToNextParameterHeader(&stream, &header), 1);
            EXPECT_EQ(QELCdrStream_remaining(&stream), 0U);
        }
    }
}

TEST(CdrParameter, HeadersBeginAtAMultipleOfFour) {
    char buffer[16] = "###############";
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer, sizeof buffer);
    stream.position = 1;
    ASSERT_EQ(QELCdrStream_serializeListEnd(&stream), 1);
    EXPECT_EQ(std::string(buffer, stream.position), "#\0\0\0\2\x7f\0\0"s);

    stream.position = 1;
    QELCdrParameterHeader header{};
    ASSERT_EQ(QELCdrStream_deserializeParameterHeader(&stream, &header), 1);
    EXPECT_EQ(header.isListEnd, 1);
    EXPECT_EQ(header.valuePosition, 8U);
}

TEST(CdrParameter, RefusesIdsAndLengthsThatAFormCannotHold) {
    std::vector<char> buffer(0x10000 + 4);
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    QELCdrOpenParameter open{};
    EXPECT_EQ(QELCdrStream_serializeParameterHeader(&stream, &open, 0, 0x3F01, 0), 0);
    EXPECT_EQ(QELCdrStream_serializeParameterHeader(&stream, &open, 1, 0x10000000, 0), 0);
    EXPECT_EQ(stream.position, 0U);
    ASSERT_EQ(QELCdrStream_serializeParameterHeader(&stream, &open, 0, 1, 0), 1);
    ASSERT_EQ(QELCdrStream_skipBytes(&stream, 0x10000), 1);
    EXPECT_EQ(QELCdrStream_serializeParameterLength(&stream, &open), 0);
    stream.position -= 1;
    EXPECT_EQ(QELCdrStream_serializeParameterLength(&stream, &open), 1);
    EXPECT_EQ(std::string(buffer.data(), 4), "\1\0\xff\xff"s);
}

struct ReadCase {
    const char* what;
    std::string big;
    bool accepted;
    DDS_UnsignedLong id;
    size_t value_position;
};

TEST(CdrParameter, ReadsEitherFormAndRefusesIncompleteOnes) {
    const ReadCase cases[] = {
        {"implementation bit is no part of the id", "\x80\5\0\0"s, true, 5, 4},
        {"to be ignored", "\x3f\3\0\1#"s, true, 0x3F03, 4},
        {"extended with flags above the id", "\x7f\1\0\x8\xb0\0\0\7\0\0\0\0"s, true, 7, 12},
        {"extended header longer than needed", "\x7f\1\0\xc\0\0\0\7\0\0\0\1####v"s, true, 7, 16},
        {"three bytes", "\0\5\0"s, false, 0, 0},
        {"value beyond the buffer", "\0\5\0\2#"s, false, 0, 0},
        {"extended header shorter than needed", "\x7f\1\0\7\0\0\0\7\0\0\0\0"s, false, 0, 0},
        {"extended header cut", "\x7f\1\0\x8\0\0\0\7\0\0\0"s, false, 0, 0},
        {"longer extended header cut", "\x7f\1\0\xc\0\0\0\7\0\0\0\0##"s, false, 0, 0},
        {"extended value beyond the buffer", "\x7f\1\0\x8\0\0\0\7\0\0\0\2#"s, false, 0, 0},
        {"greatest extended length", "\x7f\1\0\x8\0\0\0\7\xff\xff\xff\xff"s, false, 0, 0},
    };
    for (const ReadCase& item : cases) {
        std::vector<char> bytes(item.big.begin(), item.big.end());
        QELCdrStream stream;
        QELCdrStream_init(&stream, bytes.data(), bytes.size());
        stream.littleEndian = 0;
        QELCdrParameterHeader header{};
        ASSERT_EQ(QELCdrStream_deserializeParameterHeader(&stream, &header), item.accepted)
            << item.what;
        EXPECT_EQ(stream.position, item.value_position) << item.what;
        if (item.accepted) {
            EXPECT_EQ(header.id, item.id) << item.what;
            EXPECT_EQ(header.isIgnored != 0, item.id == QEL_CDR_PARAMETER_ID_IGNORE) << item.what;
        }
    }
}

}  // namespace
