// The encodings, compared with bytes that were worked out by hand.
#include <algorithm>

#include "tests/types/sample.hpp"

namespace orvane::types {
namespace {

/// Checks both directions in one byte order: encoding gives the bytes, and what decoding the bytes
/// gives is encoded to them again.
template <typename T>
void expect_encoding(T& sample, DDS_UnsignedShort id, const std::string& expected,
                     TULVEndpointData endpoint = nullptr) {
    SCOPED_TRACE(expected);
    const Bytes vector = bytes(expected);
    EXPECT_EQ(hexadecimal(encoded(sample, id, endpoint)), hexadecimal(vector));
    EXPECT_EQ(Plugin<T>::get_serialized_sample_size(endpoint, 1, id, 0, &sample), vector.size());
    Sample<T> decoded;
    EXPECT_TRUE(decode(*decoded, vector));
    EXPECT_EQ(hexadecimal(encoded(*decoded, id, endpoint)), hexadecimal(vector));

    Bytes followed = vector;
    followed.push_back('\x7A');
    QELCdrStream stream = stream_over(followed);
    EXPECT_TRUE(Plugin<T>::skip(nullptr, &stream, 1, 1, nullptr));
    EXPECT_EQ(stream.position, vector.size());
    EXPECT_EQ(stream.origin, 0U);
}

TEST(Encoding, OfTopicTypesHasTheBytesWorkedOutByHand) {
    expect_encoding(*Filled<QEL_KX_LogMessage>(), 1,
                    "00 03 00 00"
                    "00 00 08 00  04 03 02 01  0D 0C 0B 0A  01 00 04 00  2C 01 00 00"
                    "02 00 08 00  04 00 00 00  'net' 00  03 00 07 00  03 00 00 00  'hi' 00  00"
                    "02 7F 00 00");
    expect_encoding(*Filled<QEL_KX_LogMessage>(), 0,
                    "00 02 00 00"
                    "00 00 00 08  01 02 03 04  0A 0B 0C 0D  00 01 00 04  00 00 01 2C"
                    "00 02 00 08  00 00 00 04  'net' 00  00 03 00 07  00 00 00 03  'hi' 00  00"
                    "7F 02 00 00");
    expect_encoding(*Filled<QEL_KX_ADMIN_State>(), 1,
                    "00 03 00 00"
                    "00 00 08 00  01 00 00 00  FE FF FF FF  01 00 04 00  07 00 00 00"
                    "02 00 04 00  01 00 00 00  03 00 09 00  05 00 00 00  'demo' 00  00 00 00"
                    "04 00 04 00  90 01 00 00"
                    "05 00 28 00  00 00 00 00  01 00 00 00  01 00 00 00  02 00 00 00"
                    "             02 00 00 00  03 00 00 00  03 00 00 00  04 00 00 00"
                    "             04 00 00 00  05 00 00 00"
                    "06 00 04 00  03 00 00 00  02 7F 00 00");
    expect_encoding(*Filled<QEL_KX_ADMIN_CommandRequest>(), 1,
                    "00 03 00 00  00 00 08 00  01 00 00 00  02 00 00 00"
                    "01 00 08 00  03 00 00 00  04 00 00 00  02 00 04 00  05 00 00 00"
                    "03 00 24 00  00 00 04 00  01 00 00 00"
                    "             02 00 14 00  02 00 00 00"
                    "             00 00 00 00  01 00 00 00  01 00 00 00  02 00 00 00"
                    "             02 7F 00 00"
                    "02 7F 00 00");
    expect_encoding(*Filled<QEL_KX_ADMIN_CommandResponse>(), 1,
                    "00 03 00 00  00 00 08 00  01 00 00 00  02 00 00 00"
                    "01 00 08 00  03 00 00 00  04 00 00 00  02 00 04 00  05 00 00 00"
                    "03 00 04 00  01 00 00 00  04 00 07 00  03 00 00 00  'no' 00  00"
                    "02 7F 00 00");
}

TEST(Encoding, OfNestedTypesHasTheBytesWorkedOutByHand) {
    Sample<QEL_KX_ADMIN_Command> command;
    set_pairs(*command, 1);
    command->_u.filterLevel = 100;
    command->_u.printFormat = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL;
    expect_encoding(*command, 1,
                    "00 03 00 00  00 00 04 00  01 00 00 00"
                    "02 00 0C 00  01 00 00 00  00 00 00 00  01 00 00 00  02 7F 00 00");
    command->_d = QEL_KX_SET_LOG_LEVEL;
    expect_encoding(*command, 1,
                    "00 03 00 00  00 00 04 00  00 00 00 00  01 00 04 00  64 00 00 00  02 7F 00 00");
    command->_d = QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT;
    expect_encoding(*command, 0,
                    "00 02 00 00  00 00 00 04  00 00 00 02  00 03 00 04  00 00 00 06  7F 02 00 00");

    QEL_KX_HostAndAppId identity{0x01020304, -1};
    expect_encoding(identity, 1, "00 01 00 00  04 03 02 01  FF FF FF FF");
    expect_encoding(identity, 0, "00 00 00 00  01 02 03 04  FF FF FF FF");
    expect_encoding(identity, 3, "00 03 00 00  04 03 02 01  FF FF FF FF");
    Sample<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity> pair;
    set_pair(*pair, 4, 5);
    expect_encoding(*pair, 1, "00 01 00 00  04 00 00 00  05 00 00 00");
    QEL_KX_ADMIN_StateKind kind = QEL_KX_STATE_SHUTTING_DOWN;
    expect_encoding(kind, 0, "00 00 00 00  00 00 00 03");
}

TEST(Encoding, OfADiscontiguousSequenceIsThatOfAContiguousOne) {
    using Pair = QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity;
    Sample<QEL_KX_ADMIN_Command> own;
    Sample<QEL_KX_ADMIN_Command> lent;
    set_pairs(*own, 2);
    lent->_d = QEL_KX_SET_QEL_LOGGER_LEVEL;
    auto* sequence = &lent->_u.categoryAndVerbosity;
    Pair elements[2];
    set_pair(elements[0], 0, 1);
    set_pair(elements[1], 1, 2);
    Pair* pairs[] = {&elements[0], &elements[1], nullptr};
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(sequence, 0));
    ASSERT_TRUE(
        QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_loan_discontiguous(sequence, pairs, 2, 3));
    EXPECT_EQ(hexadecimal(encoded(*lent)), hexadecimal(encoded(*own)));
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_length(sequence, 3));
    EXPECT_EQ(hexadecimal(encoded(*lent)), "") << "an element is missing";
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_unloan(sequence));
}

TEST(Encoding, HasExtendedHeadersFromAnEndpointWithVeryLargeSamples) {
    const Endpoint<QEL_KX_ADMIN_CommandRequest> endpoint(TULV_ENDPOINT_WRITER);
    Filled<QEL_KX_LogMessage> message;
    TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(endpoint.data, 65535);
    EXPECT_EQ(encoded(*message, 1, endpoint.data), encoded(*message));

    TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(endpoint.data, 65536);
    expect_encoding(*message, 1,
                    "00 03 00 00"
                    "01 7F 08 00  00 00 00 00  08 00 00 00  04 03 02 01  0D 0C 0B 0A"
                    "01 00 04 00  2C 01 00 00"
                    "01 7F 08 00  02 00 00 00  08 00 00 00  04 00 00 00  'net' 00"
                    "01 7F 08 00  03 00 00 00  07 00 00 00  03 00 00 00  'hi' 00  00"
                    "02 7F 00 00",
                    endpoint.data);
    // The headers inside the command stay short.
    expect_encoding(*Filled<QEL_KX_ADMIN_CommandRequest>(), 1,
                    "00 03 00 00"
                    "01 7F 08 00  00 00 00 00  08 00 00 00  01 00 00 00  02 00 00 00"
                    "01 7F 08 00  01 00 00 00  08 00 00 00  03 00 00 00  04 00 00 00"
                    "02 00 04 00  05 00 00 00"
                    "01 7F 08 00  03 00 00 00  24 00 00 00"
                    "    00 00 04 00  01 00 00 00  02 00 14 00  02 00 00 00"
                    "    00 00 00 00  01 00 00 00  01 00 00 00  02 00 00 00"
                    "    02 7F 00 00"
                    "02 7F 00 00",
                    endpoint.data);
    // Each sample on a stream decides anew.
    Bytes buffer(256);
    QELCdrStream stream = stream_over(buffer);
    for (TULVEndpointData data : {TULVEndpointData{nullptr}, endpoint.data, TULVEndpointData{}}) {
        const std::size_t start = stream.position;
        ASSERT_TRUE(
            QEL_KX_LogMessagePlugin_serialize(data, message.get(), &stream, 1, 1, 1, nullptr));
        EXPECT_EQ(stream.position - start, data == nullptr ? 52U : 76U);
    }
}

TEST(Encoding, RefusesWhatNoReaderWouldAccept) {
    Filled<QEL_KX_LogMessage> message;
    EXPECT_TRUE(encoded(*message, 4).empty()) << "identifier";
    std::string text(4097, 'x');
    char* own = std::exchange(message->message, text.data());
    EXPECT_TRUE(encoded(*message).empty()) << "string too long";
    text.pop_back();
    EXPECT_EQ(encoded(*message).size(), 4U + 12 + 8 + 12 + 8 + 4097 + 3 + 4);
    message->message = nullptr;
    EXPECT_TRUE(encoded(*message).empty()) << "no string";
    message->message = own;

    Sample<QEL_KX_ADMIN_Command> command;
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(
        &command->_u.categoryAndVerbosity, 6));
    set_pairs(*command, 5);
    EXPECT_EQ(encoded(*command).size(), 4U + 8 + 8 + 40 + 4);
    set_pairs(*command, 6);
    EXPECT_TRUE(encoded(*command).empty()) << "six elements";
}

TEST(Encoding, ToABufferIsReadBackAndNeverWritesBehindItsEnd) {
    using Support = TypeSupport<QEL_KX_ADMIN_CommandRequest>;
    Filled<QEL_KX_ADMIN_CommandRequest> sample;
    const Bytes expected = encoded(*sample);
    const auto needed = static_cast<DDS_UnsignedLong>(expected.size());
    DDS_UnsignedLong length = 0;
    EXPECT_EQ(Support::serialize_data_to_cdr_buffer(nullptr, &length, sample.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(length, needed);
    for (DDS_UnsignedLong size = 0; size <= needed + 1; ++size) {
        Bytes buffer(needed + 4, '\x55');
        length = size;
        EXPECT_EQ(Support::serialize_data_to_cdr_buffer(buffer.data(), &length, sample.get()),
                  size < needed ? DDS_RETCODE_ERROR : DDS_RETCODE_OK);
        EXPECT_EQ(length, std::min(size, needed));
        EXPECT_EQ(Bytes(buffer.begin() + length, buffer.end()),
                  Bytes(buffer.size() - length, '\x55'));
    }
    Sample<QEL_KX_ADMIN_CommandRequest> decoded;
    const auto read = [&](QEL_KX_ADMIN_CommandRequest* to, const char* from, unsigned size) {
        return Support::deserialize_data_from_cdr_buffer(to, from, size);
    };
    EXPECT_EQ(read(decoded.get(), expected.data(), needed), DDS_RETCODE_OK);
    EXPECT_EQ(encoded(*decoded), expected);
    EXPECT_EQ(read(decoded.get(), expected.data(), 3), DDS_RETCODE_ERROR);
    EXPECT_EQ(read(decoded.get(), nullptr, needed), DDS_RETCODE_ERROR);
    EXPECT_EQ(read(nullptr, expected.data(), needed), DDS_RETCODE_ERROR);
    EXPECT_EQ(Support::serialize_data_to_cdr_buffer(nullptr, nullptr, sample.get()),
              DDS_RETCODE_ERROR);
    EXPECT_EQ(Support::serialize_data_to_cdr_buffer(nullptr, &length, nullptr), DDS_RETCODE_ERROR);
}

TEST(Encoding, CanBeDoneInTwoStepsOfWhichEitherMayBeLeftOut) {
    using Log = Plugin<QEL_KX_LogMessage>;
    Filled<QEL_KX_LogMessage> sample;
    Bytes buffer(64);
    QELCdrStream stream = stream_over(buffer);
    ASSERT_TRUE(Log::serialize(nullptr, sample.get(), &stream, 1, 1, 0, nullptr));
    EXPECT_EQ(stream.position, 4U);
    ASSERT_TRUE(Log::serialize(nullptr, sample.get(), &stream, 0, 9, 1, nullptr));
    buffer.resize(stream.position);
    EXPECT_EQ(buffer, encoded(*sample));

    Sample<QEL_KX_LogMessage> decoded;
    stream = stream_over(buffer);
    EXPECT_TRUE(Log::skip(nullptr, &stream, 1, 0, nullptr));
    EXPECT_EQ(stream.origin, 0U) << "as after a whole sample";
    stream = stream_over(buffer);
    EXPECT_TRUE(Log::deserialize_sample(nullptr, nullptr, &stream, 1, 0, nullptr));
    EXPECT_EQ(stream.origin, 0U);
    EXPECT_TRUE(Log::deserialize_sample(nullptr, decoded.get(), &stream, 0, 1, nullptr));
    EXPECT_EQ(encoded(*decoded), buffer);
}

// Sizes, worked out by hand. "H" is an extended header of 12 bytes, "h" a short one of 4.

template <typename T>
void expect_sizes(DDS_UnsignedLong maximum, DDS_UnsignedLong minimum) {
    SCOPED_TRACE(Description<T>::table.name);
    using Sizes = Plugin<T>;
    EXPECT_EQ(Sizes::get_serialized_sample_max_size(nullptr, 0, 4, 0), maximum);
    EXPECT_EQ(Sizes::get_serialized_sample_min_size(nullptr, 0, 4, 0), minimum);
    for (DDS_UnsignedShort id = 0; id <= 4; ++id) {
        const bool known = id <= 3;
        EXPECT_EQ(Sizes::get_serialized_sample_max_size(nullptr, 1, id, 0),
                  known ? maximum + 4 : 1);
        EXPECT_EQ(Sizes::get_serialized_sample_min_size(nullptr, 1, id, 0),
                  known ? minimum + 4 : 1);
    }
    T record{};
    EXPECT_EQ(Sizes::get_serialized_sample_size(nullptr, 1, 4, 0, &record), 1U);
    EXPECT_EQ(Sizes::get_serialized_sample_size(nullptr, 0, 1, 0, nullptr), 0U);
}

TEST(Sizes, AreThoseWorkedOutByHand) {
    expect_sizes<QEL_KX_ADMIN_StateKind>(4, 4);
    expect_sizes<QEL_KX_HostAndAppId>(8, 8);
    expect_sizes<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>(8, 8);
    // max: H+8 20, H+4 36, H+4+513 565 pad 568, H+4+4097 4681 pad 4684, H 4696
    // min: H+8 20, h+4 28, H+4+1 45 pad 48, H+4+1 65 pad 68, h 72
    expect_sizes<QEL_KX_LogMessage>(4696, 72);
    // max: H+8 20, H+4 36, H+4 52, H+4+257 325 pad 328, H+4 344, H+40 396, H+4 412, H 424
    // min: H+8 20, h+4 28, h+4 36, H+4+1 53 pad 56, h+4 64, H+40 116, h+4 124, h 128
    expect_sizes<QEL_KX_ADMIN_State>(424, 128);
    // The headers are always short.
    // max: h+4 8, h+4+40 56, h 60.  min: h+4 8, h+4 16, h 20
    expect_sizes<QEL_KX_ADMIN_Command>(60, 20);
    // max: H+8 20, H+8 40, H+4 56, H+60 128, H 140.  min: H+8 20, H+8 40, h+4 48, H+20 80, h 84
    expect_sizes<QEL_KX_ADMIN_CommandRequest>(140, 84);
    // max: H+8 20, H+8 40, H+4 56, H+4 72, H+4+2049 2137 pad 2140, H 2152
    // min: H+8 20, H+8 40, h+4 48, h+4 56, H+4+1 73 pad 76, h 80
    expect_sizes<QEL_KX_ADMIN_CommandResponse>(2152, 80);
}

TEST(Sizes, OfKeysCountTheKeyMembersOnly) {
    const auto key_size = [](const auto& size) { return size(nullptr, 0, 1, 0); };
    // H+8 20, H+4 36, H 48
    EXPECT_EQ(key_size(QEL_KX_LogMessagePlugin_get_serialized_key_max_size), 48U);
    // H+8 20, H 32
    EXPECT_EQ(key_size(QEL_KX_ADMIN_StatePlugin_get_serialized_key_max_size), 32U);
    EXPECT_EQ(key_size(QEL_KX_ADMIN_CommandResponsePlugin_get_serialized_key_max_size), 32U);
    EXPECT_EQ(key_size(QEL_KX_HostAndAppIdPlugin_get_serialized_key_max_size), 8U);
    EXPECT_EQ(QEL_KX_HostAndAppIdPlugin_get_serialized_key_max_size(nullptr, 1, 3, 0), 12U);
    EXPECT_EQ(QEL_KX_HostAndAppIdPlugin_get_serialized_key_max_size(nullptr, 1, 4, 0), 1U);
}

TEST(Sizes, OfASampleWithATextThatCannotBeEncodedAreThoseOfOneThatCan) {
    std::string too_long(5000, 'x');
    const QEL_KX_LogMessage sample{{}, 0, nullptr, too_long.data()};
    // h+8 12, h+4 20, h+4+1 29 pad 32, h+4+4097 4137 pad 4140, h 4144
    EXPECT_EQ(QEL_KX_LogMessagePlugin_get_serialized_sample_size(nullptr, 0, 1, 0, &sample), 4144U);
}

}  // namespace
}  // namespace orvane::types
