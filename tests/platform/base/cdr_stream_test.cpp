#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pexa/cdr_stream.h"

namespace {

using namespace std::string_literals;

// A stream over a heap block of exactly that size, so that the sanitizers see every byte beyond it.
// Its byte order is big-endian.
class StreamOf {
public:
    explicit StreamOf(const std::string& bytes) : bytes_(bytes.begin(), bytes.end()) {
        QELCdrStream_init(&stream_, bytes_.data(), bytes_.size());
        stream_.littleEndian = 0;
    }
    explicit StreamOf(size_t size) : StreamOf(std::string(size, '#')) {}

    QELCdrStream* operator->() { return &stream_; }
    QELCdrStream* get() { return &stream_; }
    std::string written() const { return {bytes_.data(), stream_.position}; }

private:
    std::vector<char> bytes_;
    QELCdrStream stream_{};
};

TEST(CdrStream, PadsWithZerosFromTheOriginOnAndKeepsToItsByteOrder) {
    StreamOf stream(16);
    stream->position = 3;
    stream->origin = 3;
    EXPECT_EQ(QELCdrStream_serializeUnsignedShort(stream.get(), 0x0102), 1);
    EXPECT_EQ(QELCdrStream_serializeLong(stream.get(), -2), 1);
    EXPECT_EQ(QELCdrStream_alignForWrite(stream.get(), 4), 1);
    EXPECT_EQ(stream.written(), "###\1\2\0\0\xff\xff\xff\xfe"s);

    stream->position = 3;
    DDS_UnsignedShort value = 0;
    EXPECT_EQ(QELCdrStream_deserializeUnsignedShort(stream.get(), &value), 1);
    EXPECT_EQ(value, 0x0102);
    stream->littleEndian = 1;
    DDS_Long number = 0;
    EXPECT_EQ(QELCdrStream_deserializeLong(stream.get(), &number), 1);
    EXPECT_EQ(number, static_cast<DDS_Long>(0xfeffffff));
    stream->littleEndian = 0;
    stream->position = 5;
    EXPECT_EQ(QELCdrStream_alignForRead(stream.get(), 4), 1);
    EXPECT_EQ(stream->position, 7U);
    EXPECT_EQ(QELCdrStream_remaining(stream.get()), 9U);

    // The header of a parameter begins at a multiple of four.
    stream->position = 1;
    stream->origin = 0;
    EXPECT_EQ(QELCdrStream_serializeListEnd(stream.get()), 1);
    EXPECT_EQ(stream.written(), "#\0\0\0\x7f\2\0\0"s);
}

TEST(CdrStream, TakesStringsUpToTheirBoundAndStaysInFrontOfMalformedOnes) {
    const std::pair<const char*, std::string> cases[] = {
        {"no length", "\0\0\0"s},
        {"length zero", "\0\0\0\0\0"s},
        {"length beyond the buffer", "\0\0\0\3a\0"s},
        {"greatest length", "\xff\xff\xff\xff\0"s},
        {"length above the bound", "\0\0\0\6abcde\0"s},
        {"no terminator", "\0\0\0\3abc"s},
        {"terminator too early", "\0\0\0\4a\0b\0"s},
    };
    StreamOf at_bound(9);
    EXPECT_EQ(QELCdrStream_serializeString(at_bound.get(), "abcd", 4), 1);
    EXPECT_EQ(at_bound.written(), "\0\0\0\5abcd\0"s);
    QELCdrStream_reset(at_bound.get());
    char text[5] = "####";
    EXPECT_EQ(QELCdrStream_deserializeString(at_bound.get(), text, 4), 1);
    EXPECT_STREQ(text, "abcd");
    for (const auto& [what, bytes] : cases) {
        StreamOf stream(bytes);
        EXPECT_EQ(QELCdrStream_deserializeString(stream.get(), text, 4), 0) << what;
        EXPECT_EQ(QELCdrStream_skipString(stream.get(), 4), 0) << what;
        EXPECT_STREQ(text, "abcd") << what;
        EXPECT_EQ(stream->position, 0U) << what;
    }
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
        StreamOf stream(7);
        stream->origin = 1;
        stream->position = 4;
        EXPECT_EQ(operation(stream.get()), 0);
        EXPECT_EQ(stream->position, 4U);
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

TEST(CdrStream, EncapsulationDecidesOnByteOrderAndOrigin) {
    for (DDS_UnsignedShort id = 0; id <= 3; ++id) {
        StreamOf out(4);
        out->encapsulationOptions = 0x0102;
        EXPECT_EQ(QELCdrStream_serializeEncapsulation(out.get(), id), 1);
        EXPECT_EQ(out.written(), "\0"s + static_cast<char>(id) + "\1\2"s);
        StreamOf in(out.written());
        EXPECT_EQ(QELCdrStream_deserializeEncapsulation(in.get()), 1);
        for (QELCdrStream* stream : {out.get(), in.get()}) {
            EXPECT_EQ(stream->encapsulationId, id);
            EXPECT_EQ(stream->encapsulationOptions, 0x0102);
            EXPECT_EQ(stream->littleEndian, id % 2);
            EXPECT_EQ(stream->origin, 4U);
        }
    }
    EXPECT_EQ(QELCdrStream_serializeEncapsulation(StreamOf(4).get(), 4), 0);
    for (const std::string& bytes : {"\0\4\0\0"s, "\1\0\0\0"s, "\0\1\0"s}) {
        StreamOf in(bytes);
        EXPECT_EQ(QELCdrStream_deserializeEncapsulation(in.get()), 0);
        EXPECT_EQ(in->origin, 0U);
    }
}

}  // namespace
