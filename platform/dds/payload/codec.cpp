#include "platform/dds/payload/codec.hpp"

#include <algorithm>
#include <new>

namespace pexa::dds {

namespace {

constexpr DDS_UnsignedShort native = QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE;

/// @param truth of a plugin's operation
Status status_of(DDS_Boolean truth) {
    return truth != 0 ? Status::ok : Status::error;
}

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

    void* get() const { return key_; }

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
    // The pool has no bound: the reader's QoS limits the samples that it holds.
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

Status Codec::encode(const void* sample, std::span<std::byte> buffer) const {
    QELCdrStream stream = stream_over(buffer);
    const bool complete = plugin_.serialize(data_, sample, &stream, 1, native, 1, nullptr) != 0 &&
                          stream.position == buffer.size();
    return complete ? Status::ok : Status::error;
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
        // Without memory the buffer is empty, and so is the result.
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

Status Codec::key_hash(const void* sample, engine::KeyHash& hash) const {
    if (!keyed_) {
        hash = {};
        return Status::ok;
    }
    QELKeyHash computed{};
    if (plugin_.instance_to_keyhash(data_, &computed, sample) == 0) {
        return Status::error;
    }
    std::copy_n(reinterpret_cast<const std::byte*>(computed.value), hash.size(), hash.begin());
    return Status::ok;
}

Status Codec::decode(std::span<const std::byte> payload, void* sample) const {
    QELCdrStream stream = stream_over(payload);
    return status_of(plugin_.deserialize(data_, &sample, nullptr, &stream, 1, 1, nullptr));
}

Status Codec::decode_key(std::span<const std::byte> payload, void* sample) const {
    if (!keyed_) {
        return Status::error;
    }
    QELCdrStream stream = stream_over(payload);
    const KeyHolder key(*this);
    if (key.get() == nullptr ||
        plugin_.deserialize_key_sample(data_, key.get(), &stream, 1, 1, nullptr) == 0) {
        return Status::error;
    }
    return status_of(plugin_.key_to_instance(data_, sample, key.get()));
}

void* Codec::lend() const {
    return plugin_.get_sample(data_, nullptr);
}

void Codec::give_back(void* sample) const {
    plugin_.return_sample(data_, sample, nullptr);
}

}  // namespace pexa::dds
