// The encodings, compared with bytes that were worked out by hand.
#include <string>

#include <gtest/gtest.h>

#include "tests/types/sample.hpp"

namespace {

/// Checks both directions in one byte order: encoding gives the bytes, and what decoding the bytes
/// gives is encoded to them again.
template <typename T>
void expect_encoding(T& sample, DDS_UnsignedShort id, const std::string& expected) {
    using Plugin = orvane::types::PluginOperations<T>;
    SCOPED_TRACE(expected);
    const Bytes vector = bytes(expected);
    EXPECT_EQ(written(encoded(sample, id)), written(vector));
    EXPECT_EQ(Plugin::get_serialized_sample_size(nullptr, 1, id, 0, &sample), vector.size());

    Sample<T> decoded;
    EXPECT_TRUE(decode(*decoded, vector));
    EXPECT_EQ(written(encoded(*decoded, id)), written(vector));

    QELCdrStream stream;
    Bytes followed = vector;
    followed.push_back('\x7A');
    QELCdrStream_init(&stream, followed.data(), followed.size());
    EXPECT_TRUE(Plugin::skip(nullptr, &stream, 1, 1, nullptr));
    EXPECT_EQ(stream.position, vector.size());
    EXPECT_EQ(stream.origin, 0U);
}

TEST(Encoding, OfALogMessageHasAHeaderPerMemberInBothByteOrders) {
    Sample<QEL_KX_LogMessage> sample;
    fill(*sample);
    expect_encoding(*sample, 1,
                    "00 03 00 00"
                    "00 00 08 00  04 03 02 01  0D 0C 0B 0A"
                    "01 00 04 00  2C 01 00 00"
                    "02 00 08 00  04 00 00 00  'net' 00"
                    "03 00 07 00  03 00 00 00  'hi' 00  00"
                    "02 7F 00 00");
    expect_encoding(*sample, 0,
                    "00 02 00 00"
                    "00 00 00 08  01 02 03 04  0A 0B 0C 0D"
                    "00 01 00 04  00 00 01 2C"
                    "00 02 00 08  00 00 00 04  'net' 00"
                    "00 03 00 07  00 00 00 03  'hi' 00  00"
                    "7F 02 00 00");
}

TEST(Encoding, OfAStateHasTheFiveVerbositiesBackToBack) {
    Sample<QEL_KX_ADMIN_State> sample;
    fill(*sample);
    expect_encoding(*sample, 1,
                    "00 03 00 00"
                    "00 00 08 00  01 00 00 00  FE FF FF FF"
                    "01 00 04 00  07 00 00 00"
                    "02 00 04 00  01 00 00 00"
                    "03 00 09 00  05 00 00 00  'demo' 00  00 00 00"
                    "04 00 04 00  90 01 00 00"
                    "05 00 28 00  00 00 00 00  01 00 00 00  01 00 00 00  02 00 00 00"
                    "             02 00 00 00  03 00 00 00  03 00 00 00  04 00 00 00"
                    "             04 00 00 00  05 00 00 00"
                    "06 00 04 00  03 00 00 00"
                    "02 7F 00 00");
}

TEST(Encoding, OfACommandRequestHoldsTheCommandsOwnListInAHeader) {
    Sample<QEL_KX_ADMIN_CommandRequest> sample;
    fill(*sample);
    expect_encoding(*sample, 1,
                    "00 03 00 00"
                    "00 00 08 00  01 00 00 00  02 00 00 00"
                    "01 00 08 00  03 00 00 00  04 00 00 00"
                    "02 00 04 00  05 00 00 00"
                    "03 00 24 00"
                    "    00 00 04 00  01 00 00 00"
                    "    02 00 14 00  02 00 00 00"
                    "                 00 00 00 00  01 00 00 00  01 00 00 00  02 00 00 00"
                    "    02 7F 00 00"
                    "02 7F 00 00");
}

TEST(Encoding, OfACommandResponseEndsWithItsMessage) {
    Sample<QEL_KX_ADMIN_CommandResponse> sample;
    fill(*sample);
    expect_encoding(*sample, 1,
                    "00 03 00 00"
                    "00 00 08 00  01 00 00 00  02 00 00 00"
                    "01 00 08 00  03 00 00 00  04 00 00 00"
                    "02 00 04 00  05 00 00 00"
                    "03 00 04 00  01 00 00 00"
                    "04 00 07 00  03 00 00 00  'no' 00  00"
                    "02 7F 00 00");
}

TEST(Encoding, OfACommandHasTheDiscriminatorAndTheSelectedBranchOnly) {
    Sample<QEL_KX_ADMIN_Command> sample;
    set_pairs(*sample, 1);
    sample->_u.filterLevel = 100;
    sample->_u.printFormat = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL;

    expect_encoding(*sample, 1,
                    "00 03 00 00  00 00 04 00  01 00 00 00"
                    "02 00 0C 00  01 00 00 00  00 00 00 00  01 00 00 00"
                    "02 7F 00 00");
    sample->_d = QEL_KX_SET_LOG_LEVEL;
    expect_encoding(*sample, 1,
                    "00 03 00 00  00 00 04 00  00 00 00 00  01 00 04 00  64 00 00 00  02 7F 00 00");
    sample->_d = QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT;
    expect_encoding(*sample, 0,
                    "00 02 00 00  00 00 00 04  00 00 00 02  00 03 00 04  00 00 00 06  7F 02 00 00");
}

TEST(Encoding, OfFinalTypesAndEnumerationsHasNoMemberHeaders) {
    Sample<QEL_KX_HostAndAppId> identity;
    *identity = {0x01020304, -1};
    expect_encoding(*identity, 1, "00 01 00 00  04 03 02 01  FF FF FF FF");
    expect_encoding(*identity, 0, "00 00 00 00  01 02 03 04  FF FF FF FF");
    expect_encoding(*identity, 3, "00 03 00 00  04 03 02 01  FF FF FF FF");

    Sample<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity> pair;
    set_pair(*pair, 4, 5);
    expect_encoding(*pair, 1, "00 01 00 00  04 00 00 00  05 00 00 00");

    Sample<QEL_KX_ADMIN_StateKind> kind;
    *kind = QEL_KX_STATE_SHUTTING_DOWN;
    expect_encoding(*kind, 0, "00 00 00 00  00 00 00 03");
}

TEST(Encoding, OfADiscontiguousSequenceIsThatOfAContiguousOne) {
    using Pair = QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity;
    Sample<QEL_KX_ADMIN_Command> own;
    set_pairs(*own, 2);
    Sample<QEL_KX_ADMIN_Command> lent;
    lent->_d = QEL_KX_SET_QEL_LOGGER_LEVEL;
    auto* sequence = &lent->_u.categoryAndVerbosity;
    Pair first;
    Pair second;
    set_pair(first, 0, 1);
    set_pair(second, 1, 2);
    Pair* pairs[] = {&first, &second, nullptr};
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(sequence, 0));
    ASSERT_TRUE(
        QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_loan_discontiguous(sequence, pairs, 2, 3));

    EXPECT_EQ(written(encoded(*lent, 1)), written(encoded(*own, 1)));

    // A missing element cannot be encoded.
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_length(sequence, 3));
    EXPECT_EQ(written(encoded(*lent, 1)), "");
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_unloan(sequence));
}

TEST(Encoding, HasExtendedHeadersFromAnEndpointWithVeryLargeSamples) {
    const TULVEndpointInfo info{TULV_ENDPOINT_WRITER, 0, 1};
    TULVEndpointData endpoint =
        QEL_KX_ADMIN_CommandRequestPlugin_on_endpoint_attached(nullptr, &info);
    ASSERT_NE(endpoint, nullptr);
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    Sample<QEL_KX_ADMIN_CommandRequest> request;
    fill(*request);

    TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(endpoint, 65535);
    EXPECT_EQ(encoded(*message, 1, endpoint).size(), 52U);

    TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(endpoint, 65536);
    const Bytes extended = bytes(
        "00 03 00 00"
        "01 7F 08 00  00 00 00 00  08 00 00 00  04 03 02 01  0D 0C 0B 0A"
        "01 00 04 00  2C 01 00 00"
        "01 7F 08 00  02 00 00 00  08 00 00 00  04 00 00 00  'net' 00"
        "01 7F 08 00  03 00 00 00  07 00 00 00  03 00 00 00  'hi' 00  00"
        "02 7F 00 00");
    EXPECT_EQ(written(encoded(*message, 1, endpoint)), written(extended));
    EXPECT_EQ(QEL_KX_LogMessagePlugin_get_serialized_sample_size(endpoint, 1, 1, 0, message.get()),
              extended.size());
    Sample<QEL_KX_LogMessage> decoded;
    ASSERT_TRUE(decode(*decoded, extended));
    EXPECT_EQ(encoded(*decoded, 1), encoded(*message, 1));

    // Each sample on a stream decides anew.
    Bytes buffer(256);
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    for (TULVEndpointData data : {TULVEndpointData{nullptr}, endpoint, TULVEndpointData{nullptr}}) {
        const std::size_t start = stream.position;
        ASSERT_TRUE(
            QEL_KX_LogMessagePlugin_serialize(data, message.get(), &stream, 1, 1, 1, nullptr));
        EXPECT_EQ(stream.position - start, data == nullptr ? 52U : extended.size());
    }

    // The headers inside the command stay short.
    EXPECT_EQ(written(encoded(*request, 1, endpoint)),
              written(bytes("00 03 00 00"
                            "01 7F 08 00  00 00 00 00  08 00 00 00  01 00 00 00  02 00 00 00"
                            "01 7F 08 00  01 00 00 00  08 00 00 00  03 00 00 00  04 00 00 00"
                            "02 00 04 00  05 00 00 00"
                            "01 7F 08 00  03 00 00 00  24 00 00 00"
                            "    00 00 04 00  01 00 00 00"
                            "    02 00 14 00  02 00 00 00"
                            "                 00 00 00 00  01 00 00 00  01 00 00 00  02 00 00 00"
                            "    02 7F 00 00"
                            "02 7F 00 00")));
    QEL_KX_ADMIN_CommandRequestPlugin_on_endpoint_detached(endpoint);
}

TEST(Encoding, RefusesWhatNoReaderWouldAccept) {
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    EXPECT_TRUE(encoded(*message, 4).empty()) << "identifier";
    Sample<QEL_KX_HostAndAppId> identity;
    EXPECT_TRUE(encoded(*identity, 4).empty()) << "identifier";

    std::string too_long(4097, 'x');
    char* own = message->message;
    message->message = too_long.data();
    EXPECT_TRUE(encoded(*message, 1).empty()) << "string too long";
    message->message = nullptr;
    EXPECT_TRUE(encoded(*message, 1).empty()) << "no string";
    message->message = own;
    too_long.pop_back();
    std::strcpy(message->message, too_long.c_str());
    EXPECT_EQ(encoded(*message, 1).size(), 4U + 12 + 8 + 12 + 8 + 4097 + 3 + 4);

    Sample<QEL_KX_ADMIN_Command> command;
    set_pairs(*command, 5);
    EXPECT_EQ(encoded(*command, 1).size(), 4U + 8 + 8 + 40 + 4);
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(
        &command->_u.categoryAndVerbosity, 6));
    set_pairs(*command, 6);
    EXPECT_TRUE(encoded(*command, 1).empty()) << "six elements";
}

TEST(Encoding, FailsForEveryBufferThatIsTooSmallAndNeverWritesBehindIt) {
    Sample<QEL_KX_ADMIN_CommandRequest> sample;
    fill(*sample);
    const std::size_t needed = encoded(*sample, 1).size();
    for (std::size_t size = 0; size < needed; ++size) {
        Bytes buffer(needed, '\x55');
        auto length = static_cast<DDS_UnsignedLong>(size);
        EXPECT_FALSE(QEL_KX_ADMIN_CommandRequestPlugin_serialize_to_cdr_buffer(
            buffer.data(), &length, sample.get()));
        EXPECT_EQ(length, size);
        EXPECT_EQ(Bytes(buffer.begin() + static_cast<std::ptrdiff_t>(size), buffer.end()),
                  Bytes(needed - size, '\x55'));
    }
}

TEST(Encoding, ToABufferTellsTheLengthFirstAndIsReadBack) {
    Sample<QEL_KX_ADMIN_State> sample;
    fill(*sample);
    DDS_UnsignedLong length = 0;
    ASSERT_TRUE(QEL_KX_ADMIN_StatePlugin_serialize_to_cdr_buffer(nullptr, &length, sample.get()));
    Bytes buffer(length);
    ASSERT_EQ(QEL_KX_ADMIN_StateTypeSupport_serialize_data_to_cdr_buffer(buffer.data(), &length,
                                                                         sample.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(buffer, encoded(*sample, 1));
    EXPECT_EQ(length, buffer.size());

    Sample<QEL_KX_ADMIN_State> decoded;
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_deserialize_data_from_cdr_buffer(decoded.get(),
                                                                             buffer.data(), length),
              DDS_RETCODE_OK);
    EXPECT_EQ(encoded(*decoded, 1), buffer);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_deserialize_data_from_cdr_buffer(decoded.get(),
                                                                             buffer.data(), 3),
              DDS_RETCODE_ERROR);
    EXPECT_FALSE(QEL_KX_ADMIN_StatePlugin_serialize_to_cdr_buffer(nullptr, nullptr, sample.get()));
    EXPECT_FALSE(QEL_KX_ADMIN_StatePlugin_serialize_to_cdr_buffer(nullptr, &length, nullptr));
    EXPECT_FALSE(
        QEL_KX_ADMIN_StatePlugin_deserialize_from_cdr_buffer(decoded.get(), nullptr, length));
    EXPECT_FALSE(
        QEL_KX_ADMIN_StatePlugin_deserialize_from_cdr_buffer(nullptr, buffer.data(), length));
}

TEST(Encoding, CanBeDoneInTwoStepsOfWhichEitherMayBeLeftOut) {
    Sample<QEL_KX_LogMessage> sample;
    fill(*sample);
    Bytes buffer(64);
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    ASSERT_TRUE(
        QEL_KX_LogMessagePlugin_serialize(nullptr, sample.get(), &stream, 1, 1, 0, nullptr));
    EXPECT_EQ(stream.position, 4U);
    ASSERT_TRUE(
        QEL_KX_LogMessagePlugin_serialize(nullptr, sample.get(), &stream, 0, 9, 1, nullptr));
    buffer.resize(stream.position);
    EXPECT_EQ(buffer, encoded(*sample, 1));

    Sample<QEL_KX_LogMessage> decoded;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    EXPECT_TRUE(
        QEL_KX_LogMessagePlugin_deserialize_sample(nullptr, nullptr, &stream, 1, 0, nullptr));
    EXPECT_TRUE(
        QEL_KX_LogMessagePlugin_deserialize_sample(nullptr, decoded.get(), &stream, 0, 1, nullptr));
    EXPECT_EQ(encoded(*decoded, 1), buffer);
    QELCdrStream_reset(&stream);
    EXPECT_TRUE(QEL_KX_LogMessagePlugin_skip(nullptr, &stream, 1, 0, nullptr));
    EXPECT_EQ(stream.position, 4U);
}

}  // namespace
