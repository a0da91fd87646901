// Decodes arbitrary bytes as a sample of FUZZED_TYPE. What is accepted must survive a round trip.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "types/plugin.hpp"

namespace {

using Type = FUZZED_TYPE;
using Plugin = orvane::types::PluginOperations<Type>;
using Values = orvane::types::ValueOperations<Type>;
using Bytes = std::vector<char>;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

QELCdrStream stream_over(Bytes& bytes) {
    QELCdrStream stream;
    QELCdrStream_init(&stream, bytes.data(), bytes.size());
    return stream;
}

Type* new_sample() {
    static Type samples[3];
    static std::size_t used = 0;
    require(Values::initialize(&samples[used]));
    return &samples[used++];
}

TULVEndpointData new_endpoint() {
    const TULVEndpointInfo info{TULV_ENDPOINT_READER, 0, 1};
    TULVEndpointData endpoint = Plugin::on_endpoint_attached(nullptr, &info);
    require(endpoint != nullptr);
    return endpoint;
}

Bytes encode(const Type& sample, DDS_UnsignedShort id) {
    const DDS_UnsignedLong size = Plugin::get_serialized_sample_size(nullptr, 1, id, 0, &sample);
    require(size <= Plugin::get_serialized_sample_max_size(nullptr, 1, id, 0));
    Bytes bytes(size);
    QELCdrStream stream = stream_over(bytes);
    require(Plugin::serialize(nullptr, &sample, &stream, 1, id, 1, nullptr));
    require(stream.position == size);
    return bytes;
}

bool decode(Type* sample, Bytes& bytes, std::size_t& end) {
    QELCdrStream stream = stream_over(bytes);
    void* target = sample;
    const bool decoded = Plugin::deserialize(nullptr, &target, nullptr, &stream, 1, 1, nullptr);
    require(stream.position <= bytes.size() && stream.size == bytes.size());
    require(!decoded || stream.rejected == 0);
    end = stream.position;
    return decoded;
}

void expect_round_trip(const Type& sample, Type* again, Type* copy) {
    for (const DDS_UnsignedShort id : {DDS_UnsignedShort{0}, DDS_UnsignedShort{1}}) {
        Bytes bytes = encode(sample, id);
        std::size_t end = 0;
        require(decode(again, bytes, end) && end == bytes.size());
        require(encode(*again, id) == bytes);
        require(Values::copy(copy, &sample));
        require(encode(*copy, id) == bytes);
    }
}

void expect_skipped(Bytes& bytes, bool decoded, std::size_t end) {
    QELCdrStream stream = stream_over(bytes);
    const bool skipped = Plugin::skip(nullptr, &stream, 1, 1, nullptr);
    require(stream.position <= bytes.size());
    require(!decoded || (skipped && stream.position == end));
}

/// The hash of the bytes is that of the sample in them, and is found whenever they can be decoded.
void expect_key_hash(Bytes& bytes, TULVEndpointData endpoint, const Type* decoded) {
    QELCdrStream stream = stream_over(bytes);
    QELKeyHash of_bytes{};
    QELKeyHash of_sample{};
    const bool hashed =
        Plugin::serialized_sample_to_keyhash(endpoint, &stream, &of_bytes, 1, nullptr);
    if (decoded != nullptr) {
        require(hashed && Plugin::instance_to_keyhash(endpoint, &of_sample, decoded));
        require(std::memcmp(&of_bytes, &of_sample, sizeof of_bytes) == 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static Type* const sample = new_sample();
    static Type* const again = new_sample();
    static Type* const copy = new_sample();
    static TULVEndpointData endpoint = new_endpoint();

    Bytes bytes(data, data + size);
    std::size_t end = 0;
    const bool decoded = decode(sample, bytes, end);
    if (decoded) {
        expect_round_trip(*sample, again, copy);
    }
    expect_skipped(bytes, decoded, end);
    if (Plugin::table.is_keyed) {
        expect_key_hash(bytes, endpoint, decoded ? sample : nullptr);
    }
    return 0;
}
