// Keys and key hashes. The digests were made by md5sum from the bytes beside them.
#include "tests/types/sample.hpp"

namespace orvane::types {
namespace {

std::string digits(const QELKeyHash& hash) {
    return hash.length == 16 ? hexadecimal(hash.value, sizeof hash.value) : "no hash";
}

/// The hash that the plugin computes, in digits; "no hash" when it does not.
template <typename T>
std::string hash_of(TULVEndpointData endpoint, const T& sample) {
    QELKeyHash hash{};
    std::memset(hash.value, 0x55, sizeof hash.value);
    hash.length = 0;
    return Plugin<T>::instance_to_keyhash(endpoint, &hash, &sample) != 0 ? digits(hash) : "no hash";
}

TEST(KeyHash, OfAShortKeyIsTheKeyItselfAndOfALongKeyTheDigestOfItsBigEndianEncoding) {
    const Endpoint<QEL_KX_HostAndAppId> short_key;
    EXPECT_EQ(hash_of(short_key.data, QEL_KX_HostAndAppId{0x01020304, 0x0A0B0C0D}),
              hexadecimal(bytes("01020304 0A0B0C0D 00000000 00000000")));
    const Endpoint<QEL_KX_LogMessage> endpoint;
    const struct {
        QEL_KX_HostAndAppId identity;
        DDS_Long level;
        const char* digest;
    } rows[] = {
        // 00000008 01020304 0A0B0C0D 00010004 0000012C 7F020000
        {{0x01020304, 0x0A0B0C0D}, 300, "25debdae8f9f3d85bc90521c58754447"},
        // 00000008 00000001 00000002 00010004 0000012C 7F020000
        {{1, 2}, 300, "2343cbd3a06535383fa42c7ad40ad273"},
        // 00000008 00000002 00000001 00010004 0000012C 7F020000: the same bytes in another order
        {{2, 1}, 300, "d10a9cfb768a020cdf14fdafc6124036"},
    };
    // Twice, because a thread remembers digests.
    for (int round = 0; round < 2; ++round) {
        for (const auto& row : rows) {
            Sample<QEL_KX_LogMessage> message;
            message->hostAndAppId = row.identity;
            message->level = row.level;
            EXPECT_EQ(hash_of(endpoint.data, *message), hexadecimal(bytes(row.digest)));
            EXPECT_EQ(hash_of(nullptr, *message), hexadecimal(bytes(row.digest)));
        }
    }
    // 00000008 00000001 FFFFFFFE 7F020000
    EXPECT_EQ(hash_of(Endpoint<QEL_KX_ADMIN_State>().data, *Filled<QEL_KX_ADMIN_State>()),
              hexadecimal(bytes("5a0b5b4fb90956939d80638ba1c1d50e")));
    // 00000008 00000001 00000002 7F020000
    EXPECT_EQ(hash_of(nullptr, *Filled<QEL_KX_ADMIN_CommandResponse>()),
              hexadecimal(bytes("bea7382d901e315e022b1d88998aaa36")));
    // An endpoint whose stream has no room for the key.
    Filled<QEL_KX_LogMessage> message;
    ASSERT_TRUE(TULVTypePluginDefaultEndpointData_createMD5Stream(endpoint.data, 8));
    const char* buffer = TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint.data)->buffer;
    EXPECT_EQ(hash_of(endpoint.data, *message), hexadecimal(bytes(rows[0].digest)));
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint.data)->buffer, buffer);
}

TEST(KeyHash, OfAnEncodedSampleIsThatOfTheSample) {
    const Endpoint<QEL_KX_LogMessage> endpoint;
    // The message's category cannot be decoded, which does not matter to the key.
    Bytes input = bytes(
        "00 03 00 00  02 00 04 00  FF FF FF FF  01 00 04 00  2C 01 00 00"
        "00 00 08 00  04 03 02 01  0D 0C 0B 0A  02 7F 00 00");
    const auto hash = [&](TULVEndpointData data, std::size_t size) {
        QELCdrStream stream;
        QELCdrStream_init(&stream, input.data(), size);
        QELKeyHash result{};
        return QEL_KX_LogMessagePlugin_serialized_sample_to_keyhash(data, &stream, &result, 1,
                                                                    nullptr) != 0
                   ? digits(result)
                   : "no hash";
    };
    EXPECT_EQ(hash(endpoint.data, input.size()),
              hexadecimal(bytes("25debdae8f9f3d85bc90521c58754447")));
    EXPECT_EQ(hash(endpoint.data, 22), "no hash") << "half a header";
    EXPECT_EQ(hash(nullptr, input.size()), "no hash");
}

TEST(Key, IsEncodedAndDecodedByItself) {
    using Log = Plugin<QEL_KX_LogMessage>;
    Filled<QEL_KX_LogMessage> message;
    Bytes buffer(64);
    QELCdrStream stream = stream_over(buffer);
    ASSERT_TRUE(Log::serialize_key(nullptr, message.get(), &stream, 1, 0, 1, nullptr));
    buffer.resize(stream.position);
    EXPECT_EQ(hexadecimal(buffer),
              hexadecimal(bytes("00 02 00 00  00 00 00 08  01 02 03 04  0A 0B 0C 0D"
                                "00 01 00 04  00 00 01 2C  7F 02 00 00")));
    Sample<QEL_KX_LogMessage> key;
    std::strcpy(key->category, "old");
    void* target = key.get();
    stream = stream_over(buffer);
    ASSERT_TRUE(Log::deserialize_key(nullptr, &target, nullptr, &stream, 1, 1, nullptr));
    EXPECT_EQ(hash_of(nullptr, *key), hash_of(nullptr, *message));
    EXPECT_STREQ(key->category, "");
}

TEST(Key, IsTakenFromAWholeEncodedSample) {
    using Response = Plugin<QEL_KX_ADMIN_CommandResponse>;
    Bytes buffer = encoded(*Filled<QEL_KX_ADMIN_CommandResponse>());
    Sample<QEL_KX_ADMIN_CommandResponse> key;
    Sample<QEL_KX_ADMIN_CommandResponse> only_the_key;
    only_the_key->hostAndAppId = {1, 2};
    QELCdrStream stream = stream_over(buffer);
    ASSERT_TRUE(Response::serialized_sample_to_key(nullptr, key.get(), &stream, 1, 1, nullptr));
    EXPECT_EQ(stream.position, buffer.size());
    EXPECT_EQ(hexadecimal(encoded(*key)), hexadecimal(encoded(*only_the_key)));
}

TEST(Key, IsCopiedWithoutTheOtherMembers) {
    using Log = Plugin<QEL_KX_LogMessage>;
    Filled<QEL_KX_LogMessage> message;
    Sample<QEL_KX_LogMessage> key;
    std::strcpy(key->message, "of the key holder");
    ASSERT_TRUE(Log::instance_to_key(nullptr, key.get(), message.get()));
    EXPECT_EQ(hash_of(nullptr, *key), hash_of(nullptr, *message));
    EXPECT_STREQ(key->message, "of the key holder");
    key->level = 1;
    ASSERT_TRUE(Log::key_to_instance(nullptr, message.get(), key.get()));
    EXPECT_EQ(message->level, 1);
    EXPECT_STREQ(message->message, "hi");
}

}  // namespace
}  // namespace orvane::types
