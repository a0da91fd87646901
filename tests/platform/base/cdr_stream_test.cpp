#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "pexa/cdr_stream.h"

namespace {

using namespace std::string_literals;

// A stream over a heap block of exactly that size, so that the sanitizers see every byte beyond it.
class StreamOf {
public:
    explicit StreamOf(const std::string& bytes) : bytes_(bytes.begin(), bytes.end()) {
        QELCdrStream_init(&stream_, bytes_.data(), bytes_.size());
    }
    explicit StreamOf(size_t size) : StreamOf(std::string(size, '#')) {}

    QELCdrStream* operator->() { return &stream_; }
    QELCdrStream* get() { return &stream_; }
    std::string written() const { return {bytes_.data(), stream_.position}; }

private:
    std::vector<char> bytes_;
    QELCdrStream stream_{};
};

struct NumberCase {
    DDS_Long value;
    std::string big;
    std::string little;
};

const NumberCase long_cases[] = {
    {0, "\0\0\0\0"s, "\0\0\0\0"s},
    {0x01020304, "\1\2\3\4"s, "\4\3\2\1"s},
    {-1, "\xff\xff\xff\xff"s, "\xff\xff\xff\xff"s},
    {INT_MIN, "\x80\0\0\0"s, "\0\0\0\x80"s},
    {INT_MAX, "\x7f\xff\xff\xff"s, "\xff\xff\xff\x7f"s},
};

TEST(CdrStream, EncodesAndDecodesNumbersInBothByteOrders) {
    for (const NumberCase& item : long_cases) {
        for (const QELBool little : {0, 1}) {
            const std::string& bytes = little != 0 ? item.little : item.big;
            StreamOf out(4);
            out->littleEndian = little;
            EXPECT_EQ(QELCdrStream_serializeLong(out.get(), item.value), 1);
            EXPECT_EQ(out.written(), bytes);

            StreamOf in(bytes);
            in->littleEndian = little;
            DDS_Long value = 42;
            EXPECT_EQ(QELCdrStream_deserializeLong(in.get(), &value), 1);
            EXPECT_EQ(value, item.value);
        }
    }
    StreamOf out(4);
    EXPECT_EQ(QELCdrStream_serializeUnsignedShort(out.get(), 0x0102), 1);
    out->littleEndian = 0;
    EXPECT_EQ(QELCdrStream_serializeUnsignedShort(out.get(), 0x0304), 1);
    EXPECT_EQ(out.written(), "\2\1\3\4"s);
    QELCdrStream_reset(out.get());
    DDS_UnsignedShort value = 0;
    EXPECT_EQ(QELCdrStream_deserializeUnsignedShort(out.get(), &value), 1);
    EXPECT_EQ(value, 0x0201);
}

TEST(CdrStream, PadsWithZerosFromTheOriginOn) {
    StreamOf out(16);
    out->position = 3;
    out->origin = 3;
    EXPECT_EQ(QELCdrStream_serializeUnsignedShort(out.get(), 0x1111), 1);
    EXPECT_EQ(QELCdrStream_serializeLong(out.get(), 0x22222222), 1);
    EXPECT_EQ(QELCdrStream_alignForWrite(out.get(), 4), 1);
    EXPECT_EQ(out.written(), "###\x11\x11\0\0\x22\x22\x22\x22"s);

    out->position = 5;
    EXPECT_EQ(QELCdrStream_alignForRead(out.get(), 4), 1);
    EXPECT_EQ(out->position, 7U);
    EXPECT_EQ(QELCdrStream_remaining(out.get()), 9U);
}

struct StringCase {
    const char* text;
    DDS_UnsignedLong bound;
    std::string big;
};

TEST(CdrStream, EncodesAndDecodesStringsUpToTheirBound) {
    const StringCase cases[] = {
        {"", 0, "\0\0\0\1\0"s},
        {"a", 1, "\0\0\0\2a\0"s},
        {"a", UINT_MAX, "\0\0\0\2a\0"s},
        {"log\xc3\xa9", 5, "\0\0\0\6log\xc3\xa9\0"s},
    };
    for (const StringCase& item : cases) {
        StreamOf out(item.big.size());
        out->littleEndian = 0;
        EXPECT_EQ(QELCdrStream_serializeString(out.get(), item.text, item.bound), 1);
        EXPECT_EQ(out.written(), item.big);

        QELCdrStream_reset(out.get());
        char text[8] = "#######";
        EXPECT_EQ(QELCdrStream_deserializeString(out.get(), text, item.bound), 1);
        EXPECT_STREQ(text, item.text);
        EXPECT_EQ(QELCdrStream_remaining(out.get()), 0U);

        QELCdrStream_reset(out.get());
        EXPECT_EQ(QELCdrStream_skipString(out.get(), item.bound), 1);
        EXPECT_EQ(QELCdrStream_remaining(out.get()), 0U);
    }
}

TEST(CdrStream, RefusesMalformedStringsAndStaysWhereItWas) {
    const std::pair<const char*, std::string> cases[] = {
        {"no length", "\0\0\0"s},
        {"length zero", "\0\0\0\0\0"s},
        {"length beyond the buffer", "\0\0\0\3a\0"s},
        {"greatest length", "\xff\xff\xff\xff\0"s},
        {"length above the bound", "\0\0\0\6abcde\0"s},
        {"no terminator", "\0\0\0\3abc"s},
        {"terminator too early", "\0\0\0\4a\0b\0"s},
    };
    for (const auto& [what, bytes] : cases) {
        StreamOf in(bytes);
        in->littleEndian = 0;
        char text[5] = "####";
        EXPECT_EQ(QELCdrStream_deserializeString(in.get(), text, 4), 0) << what;
        EXPECT_EQ(QELCdrStream_skipString(in.get(), 4), 0) << what;
        EXPECT_STREQ(text, "####") << what;
        EXPECT_EQ(in->position, 0U) << what;
    }
}

TEST(CdrStream, RefusesToGoBeyondItsBufferAndStaysWhereItWas) {
    using Operation = QELBool (*)(QELCdrStream*);
    const Operation operations[] = {
        [](QELCdrStream* stream) { return QELCdrStream_serializeLong(stream, 1); },
        [](QELCdrStream* stream) { return QELCdrStream_serializeString(stream, "", 4); },
        [](QELCdrStream* stream) { return QELCdrStream_serializeString(stream, nullptr, 4); },
        [](QELCdrStream* stream) { return QELCdrStream_serializeEncapsulation(stream, 0); },
        [](QELCdrStream* stream) { return QELCdrStream_deserializeEncapsulation(stream); },
        [](QELCdrStream* stream) { return QELCdrStream_skipBytes(stream, 7); },
        [](QELCdrStream* stream) { return QELCdrStream_skipBytes(stream, SIZE_MAX); },
        [](QELCdrStream* stream) {
            DDS_Long value = 0;
            return QELCdrStream_deserializeLong(stream, &value);
        },
    };
    for (const Operation operation : operations) {
        StreamOf stream(7);
        stream->position = 1;
        stream->origin = 1;
        stream->position = 4;
        EXPECT_EQ(operation(stream.get()), 0);
        EXPECT_EQ(stream->position, 4U);
    }
    StreamOf stream(1);
    stream->position = 1;
    EXPECT_EQ(QELCdrStream_alignForWrite(stream.get(), 4), 0);
    EXPECT_EQ(QELCdrStream_alignForRead(stream.get(), 2), 0);
    EXPECT_EQ(QELCdrStream_serializeString(stream.get(), "longer", 5), 0);
    EXPECT_EQ(stream->position, 1U);
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
            EXPECT_EQ(stream->position, 4U);
        }
    }
    StreamOf out(4);
    EXPECT_EQ(QELCdrStream_serializeEncapsulation(out.get(), 4), 0);
    for (const std::string& bytes : {"\0\4\0\0"s, "\1\0\0\0"s, "\0\1\0"s}) {
        StreamOf in(bytes);
        EXPECT_EQ(QELCdrStream_deserializeEncapsulation(in.get()), 0);
        EXPECT_EQ(in->origin, 0U);
        EXPECT_EQ(in->position, 0U);
    }
}

TEST(CdrParameter, HeadersBeginAtAMultipleOfFour) {
    StreamOf stream(16);
    stream->position = 1;
    ASSERT_EQ(QELCdrStream_serializeListEnd(stream.get()), 1);
    EXPECT_EQ(stream.written(), "#\0\0\0\2\x7f\0\0"s);

    stream->position = 1;
    QELCdrParameterHeader header{};
    ASSERT_EQ(QELCdrStream_deserializeParameterHeader(stream.get(), &header), 1);
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

}  // namespace
