#include "platform/dds/payload/codec.hpp"

#include <algorithm>
#include <new>

namespace pexa::dds {

namespace {

constexpr DDS_UnsignedShort native = QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE;

QELCdrStream stream_over(std::span<std::byte> buffer) {
    QELCdrStream stream;
    QELCdrStream_init(&stream, reinterpret_cast<char*>(buffer.data()), buffer.size());
    return stream;
}

/// For reading only: a stream has no constant form.
QELCdrStream stream_over(std::span<const std::byte> payload) {
    return stream_over(std::span(const_cast<std::byte*>(payload.data()), payload.size()));
}

}  // namespace

/// A key holder borrowed from the endpoint's pool.
class Codec::KeyHolder {
public:
    explicit KeyHolder(const Codec& codec)
        : codec_(codec), key_(codec.plugin_.get_key(codec.data_, nullptr)) {}
    KeyHolder(const KeyHolder&) = delete;
    KeyHolder& operator=(const KeyHolder&) = delete;
    ~KeyHolder() {
        if (key_ != nullptr) {
            codec_.plugin_.return_key(codec_.data_, key_, nullptr);
        }
    }

    [[nodiscard]] void* get() const { return key_; }

private:
    const Codec& codec_;
    void* key_;
};

Codec::Codec(const TULVTypePlugin& plugin, TULVEndpointData data)
    : plugin_(plugin), data_(data), keyed_(plugin.get_key_kind() != TULV_NO_KEY) {}

Codec::~Codec() {
    plugin_.on_endpoint_detached(data_);
}

std::unique_ptr<Codec> Codec::create(const TULVTypePlugin& plugin,
                                     TULVParticipantData participant_data, TULVEndpointKind kind) {
    // Memory is not bounded by the number of samples lent: what a reader holds is up to its QoS.
    const TULVEndpointInfo info = {kind, kind == TULV_ENDPOINT_READER ? 4 : 0,
                                   DDS_LENGTH_UNLIMITED};
    TULVEndpointData data = plugin.on_endpoint_attached(participant_data, &info);
    if (data == nullptr) {
        return nullptr;
    }
    std::unique_ptr<Codec> codec(new (std::nothrow) Codec(plugin, data));
    if (codec == nullptr) {
        plugin.on_endpoint_detached(data);
    }
    return codec;
}

std::size_t Codec::encoded_size(const void* sample) const {
    return plugin_.get_serialized_sample_size(data_, 1, native, 0, sample);
}

bool Codec::encode(const void* sample, std::span<std::byte> buffer) const {
    QELCdrStream stream = stream_over(buffer);
    return plugin_.serialize(data_, sample, &stream, 1, native, 1, nullptr) != 0 &&
           stream.position == buffer.size();
}

std::span<std::byte> Codec::key_buffer() {
    if (key_buffer_ == nullptr) {
        key_buffer_size_ = keyed_ ? plugin_.get_serialized_key_max_size(data_, 1, native, 0)
                                  : std::size_t{QEL_CDR_ENCAPSULATION_HEADER_SIZE};
        key_buffer_.reset(new (std::nothrow) std::byte[key_buffer_size_]);
    }
    return key_buffer_ == nullptr ? std::span<std::byte>()
                                  : std::span(key_buffer_.get(), key_buffer_size_);
}

std::span<const std::byte> Codec::encode_key(const void* sample) {
    const std::span<std::byte> buffer = key_buffer();
    QELCdrStream stream = stream_over(buffer);
    if (!keyed_) {
        static_cast<void>(QELCdrStream_serializeEncapsulation(&stream, native));
        return buffer.first(stream.position);
    }
    const KeyHolder key(*this);
    if (buffer.empty() || key.get() == nullptr ||
        plugin_.instance_to_key(data_, key.get(), sample) == 0 ||
        plugin_.serialize_key(data_, key.get(), &stream, 1, native, 1, nullptr) == 0) {
        return {};
    }
    return buffer.first(stream.position);
}

bool Codec::key_hash(const void* sample, engine::KeyHash& hash) const {
    if (!keyed_) {
        hash = {};
        return true;
    }
    QELKeyHash computed{};
    if (plugin_.instance_to_keyhash(data_, &computed, sample) == 0) {
        return false;
    }
    std::copy_n(reinterpret_cast<const std::byte*>(computed.value), hash.size(), hash.begin());
    return true;
}

bool Codec::decode(std::span<const std::byte> payload, void* sample) const {
    QELCdrStream stream = stream_over(payload);
    return plugin_.deserialize(data_, &sample, nullptr, &stream, 1, 1, nullptr) != 0;
}

bool Codec::decode_key(std::span<const std::byte> payload, void* sample) const {
    if (!keyed_) {
        return false;
    }
    QELCdrStream stream = stream_over(payload);
    const KeyHolder key(*this);
    return key.get() != nullptr &&
           plugin_.deserialize_key_sample(data_, key.get(), &stream, 1, 1, nullptr) != 0 &&
           plugin_.key_to_instance(data_, sample, key.get()) != 0;
}

void* Codec::lend() const {
    return plugin_.get_sample(data_, nullptr);
}

void Codec::give_back(void* sample) const {
    plugin_.return_sample(data_, sample, nullptr);
}

}  // namespace pexa::dds
