// Decodes arbitrary bytes as a sample of each of FUZZED_TYPES. What is accepted must survive a
// round trip.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <tuple>
#include <vector>

#include "fuzz/demand.hpp"
#include "types/plugin.hpp"

namespace {

using Bytes = std::vector<char>;

QELCdrStream stream_over(Bytes& bytes) {
    QELCdrStream stream;
    QELCdrStream_init(&stream, bytes.data(), bytes.size());
    return stream;
}

/// Samples to decode into, which live as long as the program.
template <typename Type>
class Decoder {
public:
    Decoder() {
        for (Type* sample : {&sample_, &again_, &copy_}) {
            demand(Values::initialize(sample));
        }
        const TULVEndpointInfo info{TULV_ENDPOINT_READER, 0, 1};
        endpoint_ = Plugin::on_endpoint_attached(nullptr, &info);
        demand(endpoint_ != nullptr);
    }

    void take(Bytes& bytes) {
        const std::optional<std::size_t> end = decode(&sample_, bytes);
        if (end) {
            expect_round_trip();
        }
        QELCdrStream stream = stream_over(bytes);
        const bool skipped = Plugin::skip(nullptr, &stream, 1, 1, nullptr);
        demand(stream.position <= bytes.size());
        demand(!end || (skipped && stream.position == *end));
        if (Plugin::table.is_keyed) {
            expect_key_hash(bytes, end.has_value());
        }
    }

private:
    using Plugin = orvane::types::Plugin<Type>;
    using Values = orvane::types::ValueOperations<Type>;

    static Bytes encode(const Type& sample, DDS_UnsignedShort id) {
        const DDS_UnsignedLong size =
            Plugin::get_serialized_sample_size(nullptr, 1, id, 0, &sample);
        demand(size <= Plugin::get_serialized_sample_max_size(nullptr, 1, id, 0));
        Bytes bytes(size);
        QELCdrStream stream = stream_over(bytes);
        demand(Plugin::serialize(nullptr, &sample, &stream, 1, id, 1, nullptr));
        demand(stream.position == size);
        return bytes;
    }

    /// @return where the sample ends, if there is one.
    static std::optional<std::size_t> decode(Type* sample, Bytes& bytes) {
        QELCdrStream stream = stream_over(bytes);
        void* target = sample;
        const bool decoded = Plugin::deserialize(nullptr, &target, nullptr, &stream, 1, 1, nullptr);
        demand(stream.position <= bytes.size() && stream.size == bytes.size());
        demand(!decoded || stream.rejected == 0);
        return decoded ? std::optional(stream.position) : std::nullopt;
    }

    void expect_round_trip() {
        for (const DDS_UnsignedShort id : {DDS_UnsignedShort{0}, DDS_UnsignedShort{1}}) {
            Bytes bytes = encode(sample_, id);
            demand(decode(&again_, bytes) == bytes.size() && encode(again_, id) == bytes);
            demand(Values::copy(&copy_, &sample_) && encode(copy_, id) == bytes);
        }
    }

    /// The hash of the bytes is that of the sample in them, and is found whenever they can be
    /// decoded.
    void expect_key_hash(Bytes& bytes, bool decoded) {
        QELCdrStream stream = stream_over(bytes);
        QELKeyHash of_bytes{};
        QELKeyHash of_sample{};
        const bool hashed =
            Plugin::serialized_sample_to_keyhash(endpoint_, &stream, &of_bytes, 1, nullptr);
        demand(!decoded ||
               (hashed && Plugin::instance_to_keyhash(endpoint_, &of_sample, &sample_) &&
                std::memcmp(&of_bytes, &of_sample, sizeof of_bytes) == 0));
    }

    Type sample_;
    Type again_;
    Type copy_;
    TULVEndpointData endpoint_;
};

template <typename... Types>
void take(Bytes bytes) {
    static std::tuple<Decoder<Types>...> decoders;
    (std::get<Decoder<Types>>(decoders).take(bytes), ...);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    take<FUZZED_TYPES>(Bytes(data, data + size));
    return 0;
}
