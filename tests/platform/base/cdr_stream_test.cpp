#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pexa/cdr_stream.h"

namespace {

using namespace std::string_literals;

TEST(CdrStream, PadsWithZerosAndKeepsToItsByteOrder) {
    std::vector<char> bytes(28, '#');
    QELCdrStream stream;
    QELCdrStream_init(&stream, bytes.data(), bytes.size());
    QELCdrStream* self = &stream;
    EXPECT_TRUE(
        QELCdrStream_serializeEncapsulation(self, 2) &&
        QELCdrStream_serializeUnsignedShort(self, 0x0102) && QELCdrStream_serializeLong(self, -2) &&
        QELCdrStream_serializeString(self, "abcd", 4) && QELCdrStream_serializeListEnd(self));
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
              "\0\2\0\0\1\2\0\0\xff\xff\xff\xfe\0\0\0\5abcd\0\0\0\0\x7f\2\0\0"s);
    QELCdrStream_init(&stream, bytes.data(), bytes.size());
    DDS_UnsignedShort small = 0;
    DDS_Long number = 0;
    char text[5] = "";
    EXPECT_TRUE(QELCdrStream_deserializeEncapsulation(self) &&
                QELCdrStream_deserializeUnsignedShort(self, &small) &&
                QELCdrStream_deserializeLong(self, &number) &&
                QELCdrStream_deserializeString(self, text, 4) &&
                QELCdrStream_alignForRead(self, 4));
    EXPECT_EQ(QELCdrStream_remaining(self), 4U);
    EXPECT_EQ(std::to_string(small) + text + std::to_string(number), "258abcd-2");
}

TEST(CdrStream, RefusesToGoBeyondItsBufferAndStaysWhereItWas) {
    QELBool (*const operations[])(QELCdrStream*) = {
        [](QELCdrStream* stream) { return QELCdrStream_serializeLong(stream, 1); },
        [](QELCdrStream* stream) { return QELCdrStream_serializeString(stream, "", 4); },
        [](QELCdrStream* stream) { return QELCdrStream_serializeString(stream, "longer", 5); },
        [](QELCdrStream* stream) { return QELCdrStream_serializeString(stream, nullptr, 4); },
        [](QELCdrStream* stream) { return QELCdrStream_serializeEncapsulation(stream, 0); },
        [](QELCdrStream* stream) { return QELCdrStream_deserializeEncapsulation(stream); },
        [](QELCdrStream* stream) { return QELCdrStream_alignForWrite(stream, 8); },
        [](QELCdrStream* stream) { return QELCdrStream_alignForRead(stream, 8); },
        [](QELCdrStream* stream) { return QELCdrStream_skipBytes(stream, 7); },
        [](QELCdrStream* stream) { return QELCdrStream_skipBytes(stream, SIZE_MAX); },
        [](QELCdrStream* stream) {
            DDS_Long value = 0;
            return QELCdrStream_deserializeLong(stream, &value);
        },
    };
    for (const auto operation : operations) {
        // A block of exactly that size, so that a sanitizer sees every byte beyond it.
        std::vector<char> bytes(7, '#');
        QELCdrStream stream;
        QELCdrStream_init(&stream, bytes.data(), bytes.size());
        stream.origin = 1;
        stream.position = 4;
        EXPECT_EQ(operation(&stream), 0);
        EXPECT_EQ(stream.position, 4U);
    }
    std::vector<char> buffer(0x10000 + 4);
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    QELCdrOpenParameter open{};
    EXPECT_EQ(QELCdrStream_serializeParameterHeader(&stream, &open, 0, 0x3F01, 0), 0);
    EXPECT_EQ(QELCdrStream_serializeParameterHeader(&stream, &open, 1, 0x10000000, 0), 0);
    EXPECT_EQ(stream.position, 0U);
    ASSERT_EQ(QELCdrStream_serializeParameterHeader(&stream, &open, 0, 1, 0), 1);
    ASSERT_EQ(QELCdrStream_skipBytes(&stream, 0x10000), 1);
    EXPECT_EQ(QELCdrStream_serializeParameterLength(&stream, &open), 0) << "too long for its form";
    stream.position -= 1;
    EXPECT_EQ(QELCdrStream_serializeParameterLength(&stream, &open), 1);
    EXPECT_EQ(std::string(buffer.data(), 4), "\1\0\xff\xff"s);
}

}  // namespace
