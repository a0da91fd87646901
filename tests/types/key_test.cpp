// Keys and key hashes. The digests were made by md5sum from the bytes beside them.
#include <gtest/gtest.h>

#include "tests/types/sample.hpp"

namespace {

/// Endpoint data of a reader of `T`.
template <typename T>
class Endpoint {
public:
    explicit Endpoint(TULVEndpointKind kind = TULV_ENDPOINT_READER) {
        const TULVEndpointInfo info{kind, 1, 2};
        data_ = orvane::types::PluginOperations<T>::on_endpoint_attached(nullptr, &info);
        EXPECT_NE(data_, nullptr);
    }
    ~Endpoint() { orvane::types::PluginOperations<T>::on_endpoint_detached(data_); }
    Endpoint(const Endpoint&) = delete;
    Endpoint& operator=(const Endpoint&) = delete;

    [[nodiscard]] TULVEndpointData get() const { return data_; }

private:
    TULVEndpointData data_;
};

/// The hash that the plugin computes, in digits; "failed" when it does not.
template <typename T>
std::string hash_of(TULVEndpointData endpoint, const T& sample) {
    QELKeyHash hash{};
    std::memset(hash.value, 0x55, sizeof hash.value);
    if (!orvane::types::PluginOperations<T>::instance_to_keyhash(endpoint, &hash, &sample) ||
        hash.length != 16) {
        return "failed";
    }
    return written(Bytes(hash.value, hash.value + sizeof hash.value));
}

TEST(KeyHash, OfAShortKeyIsTheKeyItself) {
    const Endpoint<QEL_KX_HostAndAppId> endpoint;
    const QEL_KX_HostAndAppId sample{0x01020304, 0x0A0B0C0D};
    EXPECT_EQ(hash_of(endpoint.get(), sample),
              written(bytes("01020304 0A0B0C0D 00000000 00000000")));
}

TEST(KeyHash, OfALongKeyIsTheDigestOfItsBigEndianEncoding) {
    const Endpoint<QEL_KX_LogMessage> endpoint(TULV_ENDPOINT_WRITER);
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    // 00000008 01020304 0A0B0C0D 00010004 0000012C 7F020000
    const std::string digest = written(bytes("25debdae8f9f3d85bc90521c58754447"));
    EXPECT_EQ(hash_of(endpoint.get(), *message), digest);
    EXPECT_EQ(hash_of(endpoint.get(), *message), digest) << "the second time";
    EXPECT_EQ(hash_of(nullptr, *message), digest) << "without endpoint data";
    // Another instance in between, which nothing remembered of the first may be taken for.
    message->level += 1;
    EXPECT_NE(hash_of(nullptr, *message), digest);
    EXPECT_EQ(hash_of(endpoint.get(), *message), hash_of(nullptr, *message));
    message->level -= 1;
    EXPECT_EQ(hash_of(endpoint.get(), *message), digest);

    const Endpoint<QEL_KX_ADMIN_State> other;
    Sample<QEL_KX_ADMIN_State> state;
    fill(*state);
    // 00000008 00000001 FFFFFFFE 7F020000
    EXPECT_EQ(hash_of(other.get(), *state), written(bytes("5a0b5b4fb90956939d80638ba1c1d50e")));

    Sample<QEL_KX_ADMIN_CommandResponse> response;
    fill(*response);
    // 00000008 00000001 00000002 7F020000
    EXPECT_EQ(hash_of(nullptr, *response), written(bytes("bea7382d901e315e022b1d88998aaa36")));
}

TEST(KeyHash, TellsKeysApartThatConsistOfTheSameBytes) {
    const Endpoint<QEL_KX_LogMessage> endpoint(TULV_ENDPOINT_WRITER);
    Sample<QEL_KX_LogMessage> message;
    message->level = 300;
    for (int round = 0; round < 2; ++round) {
        // 00000008 00000001 00000002 00010004 0000012C 7F020000
        message->hostAndAppId = {1, 2};
        EXPECT_EQ(hash_of(endpoint.get(), *message),
                  written(bytes("2343cbd3a06535383fa42c7ad40ad273")));
        // 00000008 00000002 00000001 00010004 0000012C 7F020000
        message->hostAndAppId = {2, 1};
        EXPECT_EQ(hash_of(endpoint.get(), *message),
                  written(bytes("d10a9cfb768a020cdf14fdafc6124036")));
    }
}

TEST(KeyHash, NeedsNoRoomInTheEndpointsStream) {
    const Endpoint<QEL_KX_LogMessage> endpoint;
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    const std::string digest = hash_of(endpoint.get(), *message);
    ASSERT_TRUE(TULVTypePluginDefaultEndpointData_createMD5Stream(endpoint.get(), 8));
    const char* buffer = TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint.get())->buffer;
    EXPECT_EQ(hash_of(endpoint.get(), *message), digest);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint.get())->buffer, buffer);
}

TEST(KeyHash, OfAnEncodedSampleIsThatOfTheSample) {
    const Endpoint<QEL_KX_LogMessage> endpoint;
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    // The message's category cannot be decoded, which does not matter to the key.
    Bytes input = bytes(
        "00 03 00 00  02 00 04 00  FF FF FF FF  01 00 04 00  2C 01 00 00"
        "00 00 08 00  04 03 02 01  0D 0C 0B 0A  02 7F 00 00");
    QELCdrStream stream;
    QELKeyHash hash{};
    QELCdrStream_init(&stream, input.data(), input.size());
    ASSERT_TRUE(QEL_KX_LogMessagePlugin_serialized_sample_to_keyhash(endpoint.get(), &stream, &hash,
                                                                     1, nullptr));
    EXPECT_EQ(written(Bytes(hash.value, hash.value + 16)), hash_of(endpoint.get(), *message));

    // Half a header follows the level.
    QELCdrStream_init(&stream, input.data(), 22);
    EXPECT_FALSE(QEL_KX_LogMessagePlugin_serialized_sample_to_keyhash(endpoint.get(), &stream,
                                                                      &hash, 1, nullptr));
    EXPECT_FALSE(
        QEL_KX_LogMessagePlugin_serialized_sample_to_keyhash(nullptr, &stream, &hash, 1, nullptr));
    EXPECT_FALSE(
        QEL_KX_LogMessagePlugin_instance_to_keyhash(endpoint.get(), nullptr, message.get()));
    EXPECT_FALSE(QEL_KX_LogMessagePlugin_instance_to_keyhash(endpoint.get(), &hash, nullptr));
}

TEST(Key, IsEncodedAndDecodedByItself) {
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    Bytes buffer(64);
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    ASSERT_TRUE(
        QEL_KX_LogMessagePlugin_serialize_key(nullptr, message.get(), &stream, 1, 0, 1, nullptr));
    buffer.resize(stream.position);
    EXPECT_EQ(written(buffer), written(bytes("00 02 00 00  00 00 00 08  01 02 03 04  0A 0B 0C 0D"
                                             "00 01 00 04  00 00 01 2C  7F 02 00 00")));

    Sample<QEL_KX_LogMessage> key;
    std::strcpy(key->category, "old");
    void* target = key.get();
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    ASSERT_TRUE(
        QEL_KX_LogMessagePlugin_deserialize_key(nullptr, &target, nullptr, &stream, 1, 1, nullptr));
    EXPECT_EQ(key->hostAndAppId.rtps_app_id, 0x0A0B0C0D);
    EXPECT_EQ(key->level, 300);
    EXPECT_STREQ(key->category, "");
    EXPECT_FALSE(
        QEL_KX_LogMessagePlugin_deserialize_key(nullptr, nullptr, nullptr, &stream, 1, 1, nullptr));
}

TEST(Key, IsTakenFromAWholeEncodedSample) {
    Sample<QEL_KX_ADMIN_CommandResponse> response;
    fill(*response);
    Bytes buffer = encoded(*response, 1);
    Sample<QEL_KX_ADMIN_CommandResponse> key;
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    ASSERT_TRUE(QEL_KX_ADMIN_CommandResponsePlugin_serialized_sample_to_key(
        nullptr, key.get(), &stream, 1, 1, nullptr));
    EXPECT_EQ(stream.position, buffer.size());
    EXPECT_EQ(key->hostAndAppId.rtps_app_id, 2);
    EXPECT_EQ(key->originatorHostAndAppId.rtps_host_id, 0);
    EXPECT_EQ(key->commandResult, QEL_KX_COMMAND_RESULT_OK);
    EXPECT_STREQ(key->message, "");

    Bytes strange = bytes("00 03 00 00  09 40 00 00  02 7F 00 00");
    QELCdrStream_init(&stream, strange.data(), strange.size());
    EXPECT_FALSE(QEL_KX_ADMIN_CommandResponsePlugin_deserialize_key_sample(nullptr, key.get(),
                                                                           &stream, 1, 1, nullptr));
}

TEST(Key, IsCopiedWithoutTheOtherMembers) {
    Sample<QEL_KX_LogMessage> message;
    Sample<QEL_KX_LogMessage> key;
    fill(*message);
    std::strcpy(key->message, "of the key holder");
    ASSERT_TRUE(QEL_KX_LogMessagePlugin_instance_to_key(nullptr, key.get(), message.get()));
    EXPECT_EQ(key->hostAndAppId.rtps_host_id, 0x01020304);
    EXPECT_EQ(key->level, 300);
    EXPECT_STREQ(key->message, "of the key holder");

    key->level = 1;
    ASSERT_TRUE(QEL_KX_LogMessagePlugin_key_to_instance(nullptr, message.get(), key.get()));
    EXPECT_EQ(message->level, 1);
    EXPECT_STREQ(message->message, "hi");
    EXPECT_FALSE(QEL_KX_LogMessagePlugin_instance_to_key(nullptr, key.get(), nullptr));
    EXPECT_FALSE(QEL_KX_LogMessagePlugin_key_to_instance(nullptr, nullptr, key.get()));
}

}  // namespace
