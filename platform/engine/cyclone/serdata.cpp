#include "platform/engine/cyclone/serdata.hpp"

#include <dds/ddsrt/md5.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "platform/engine/cyclone/hand_over.hpp"
#include "platform/engine/cyclone/rtps_origin.hpp"

namespace pexa::engine::cyclone {

namespace {

static_assert(sizeof(Serdata) % 8 == 0 && sizeof(InstanceSerdata) % 8 == 0,
              "payloads must be aligned to 8 bytes");

// The wire rounds payloads up to a multiple of this.
constexpr std::size_t payload_unit = 4;

// A sample as one of Cyclone's threads reads it.
class Reading {
public:
    explicit Reading(const ddsi_serdata* data) : serdata_(*static_cast<const Serdata*>(data)) {
        acquire(&serdata_);
    }
    ~Reading() { release(&serdata_); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    const Serdata* operator->() const { return &serdata_; }
    const Serdata& operator*() const { return serdata_; }

private:
    const Serdata& serdata_;
};

PayloadKind payload_kind(ddsi_serdata_kind kind) {
    return kind == SDK_DATA ? PayloadKind::data : PayloadKind::key;
}

template <typename Header>
SerdataPtr make(const ddsi_sertype* type, ddsi_serdata_kind kind, std::size_t size) {
    if (size > std::numeric_limits<std::uint32_t>::max() - payload_unit) {
        return nullptr;
    }
    const std::size_t rounded = (size + payload_unit - 1) / payload_unit * payload_unit;
    void* const memory = std::malloc(sizeof(Header) + rounded);
    if (memory == nullptr) {
        return nullptr;
    }
    SerdataPtr data(new (memory) Header{});
    ddsi_serdata_init(data.get(), type, kind);
    data->type_number = shared_of(type).number();
    data->size = static_cast<std::uint32_t>(size);
    data->header_size = sizeof(Header);
    std::memset(data->data() + size, 0, rounded - size);
    return data;
}

template <typename Header>
SerdataPtr make_key(const Serdata& data) {
    const SharedType& shared = shared_of(data.type);
    SerdataPtr key;
    const auto allocate = [&](std::size_t size) -> std::byte* {
        key = make<Header>(data.type, SDK_KEY, size);
        return key ? key->data() : nullptr;
    };
    if (shared.keyed() && data.kind == SDK_KEY && allocate(data.size) != nullptr) {
        std::memcpy(key->data(), data.data(), data.size);
    }
    if (shared.keyed() && data.kind == SDK_DATA &&
        !shared.type().write_key(data.bytes(), allocate)) {
        key.reset();
    }
    if (!key) {
        key = make<Header>(data.type, SDK_KEY, 0);
    }
    if (key) {
        key->set_key(data.key);
    }
    return key;
}

// Gives a received sample its key, or drops it.
ddsi_serdata* accepted(SerdataPtr data, const SharedType& shared) {
    const std::optional<KeyHash> key =
        shared.type().accept(payload_kind(data->kind), data->bytes());
    if (!key) {
        return nullptr;
    }
    data->set_key(shared.keyed() ? *key : KeyHash{});
    return data.release();
}

extern "C" {

bool equal_keys(const ddsi_serdata* a, const ddsi_serdata* b) {
    const Reading left(a);
    const Reading right(b);
    return left->type_number == right->type_number && left->key == right->key;
}

uint32_t get_size(const ddsi_serdata* data) {
    return Reading(data)->size;
}

ddsi_serdata* from_fragments(const ddsi_sertype* type, ddsi_serdata_kind kind,
                             const nn_rdata* fragment, size_t size) {
    SerdataPtr data = make_serdata(type, kind, size);
    if (!data) {
        return nullptr;
    }
    data->origin = origin_of(*fragment);
    // Fragments are ordered but may overlap.
    std::uint32_t offset = 0;
    for (; fragment != nullptr; fragment = fragment->nextfrag) {
        if (fragment->maxp1 <= offset) {
            continue;
        }
        if (fragment->min > offset || fragment->maxp1 > size) {
            return nullptr;
        }
        const unsigned char* const payload =
            NN_RMSG_PAYLOADOFF(fragment->rmsg, NN_RDATA_PAYLOAD_OFF(fragment));
        std::memcpy(data->data() + offset, payload + (offset - fragment->min),
                    fragment->maxp1 - offset);
        offset = fragment->maxp1;
    }
    if (offset != size) {
        return nullptr;
    }
    return accepted(std::move(data), shared_of(type));
}

ddsi_serdata* from_vectors(const ddsi_sertype* type, ddsi_serdata_kind kind,
                           ddsrt_msg_iovlen_t count, const ddsrt_iovec_t* vectors, size_t size) {
    SerdataPtr data = make_serdata(type, kind, size);
    if (!data) {
        return nullptr;
    }
    // What other types give may be rounded up to the unit of the wire.
    size_t offset = 0;
    for (ddsrt_msg_iovlen_t i = 0; i < count && offset < size; ++i) {
        const size_t length = std::min<size_t>(vectors[i].iov_len, size - offset);
        std::memcpy(data->data() + offset, vectors[i].iov_base, length);
        offset += length;
    }
    if (offset != size) {
        return nullptr;
    }
    return accepted(std::move(data), shared_of(type));
}

// A dispose or unregister may come with nothing but the hash.
ddsi_serdata* from_key_hash(const ddsi_sertype* type, const ddsi_keyhash* hash) {
    SerdataPtr data = make_serdata(type, SDK_KEY, 0);
    if (!data) {
        return nullptr;
    }
    KeyHash key{};
    if (shared_of(type).keyed()) {
        std::memcpy(key.data(), hash->value, key.size());
    }
    data->set_key(key);
    return data.release();
}

ddsi_serdata* from_sample(const ddsi_sertype* type, ddsi_serdata_kind kind, const void* sample) {
    if (kind != SDK_KEY) {
        return nullptr;
    }
    SerdataPtr data = make_serdata(type, SDK_KEY, 0);
    if (!data) {
        return nullptr;
    }
    data->set_key(static_cast<const SampleView*>(sample)->key);
    return data.release();
}

void to_bytes(const ddsi_serdata* data, size_t offset, size_t size, void* buffer) {
    std::memcpy(buffer, Reading(data)->data() + offset, size);
}

ddsi_serdata* to_vector(const ddsi_serdata* data, size_t offset, size_t size, ddsrt_iovec_t* out) {
    out->iov_base = const_cast<std::byte*>(Reading(data)->data() + offset);
    out->iov_len = static_cast<ddsrt_iov_len_t>(size);
    return ddsi_serdata_ref(data);
}

void release_vector(ddsi_serdata* data, const ddsrt_iovec_t*) {
    release(data);
    ddsi_serdata_unref(data);
}

bool to_sample(const ddsi_serdata* data, void* sample, void**, void*) {
    static_cast<SampleView*>(sample)->data = &*Reading(data);
    return true;
}

ddsi_serdata* to_untyped(const ddsi_serdata* data) noexcept {
    SerdataPtr key = make_key<InstanceSerdata>(*Reading(data));
    if (!key) {
        // Cyclone cannot be refused. The sample itself stands for the instance, and no index has
        // it.
        return ddsi_serdata_ref(data);
    }
    auto& instance = static_cast<InstanceSerdata&>(*key);
    instance.place.key = key->key;
    instance.index = shared_of(data->type).instances();
    instance.index->add(instance.place);
    release(key.get());
    return key.release();
}

bool untyped_to_sample(const ddsi_sertype*, const ddsi_serdata* data, void* sample, void**, void*) {
    static_cast<SampleView*>(sample)->data = static_cast<Serdata*>(ddsi_serdata_ref(data));
    return true;
}

void free_serdata(ddsi_serdata* data) {
    auto* const serdata = static_cast<Serdata*>(data);
    acquire(&data->refc.v);
    acquire(data);
    if (serdata->header_size == sizeof(InstanceSerdata)) {
        auto& instance = static_cast<InstanceSerdata&>(*serdata);
        if (instance.index) {
            instance.index->remove(instance.place);
        }
        instance.~InstanceSerdata();
    }
    std::free(serdata);
}

size_t print(const ddsi_sertype* type, const ddsi_serdata* data, char* buffer, size_t size) {
    const int length = std::snprintf(buffer, size, "%s(%u bytes)", type->type_name,
                                     static_cast<unsigned>(Reading(data)->size));
    return length < 0 ? 0 : static_cast<size_t>(length);
}

void get_key_hash(const ddsi_serdata* data, ddsi_keyhash* out, bool force_md5) {
    const KeyHash key = Reading(data)->key;
    if (!force_md5) {
        std::memcpy(out->value, key.data(), key.size());
        return;
    }
    // Asked for when payloads are encrypted: a hash of few bytes may be the key itself.
    ddsrt_md5_state_t state;
    ddsrt_md5_init(&state);
    ddsrt_md5_append(&state, reinterpret_cast<const ddsrt_md5_byte_t*>(key.data()),
                     static_cast<unsigned>(key.size()));
    ddsrt_md5_finish(&state, out->value);
}

}  // extern "C"

}  // namespace

const ddsi_serdata_ops serdata_ops = {
    .eqkey = equal_keys,
    .get_size = get_size,
    .from_ser = from_fragments,
    .from_ser_iov = from_vectors,
    .from_keyhash = from_key_hash,
    .from_sample = from_sample,
    .to_ser = to_bytes,
    .to_ser_ref = to_vector,
    .to_ser_unref = release_vector,
    .to_sample = to_sample,
    .to_untyped = to_untyped,
    .untyped_to_sample = untyped_to_sample,
    .free = free_serdata,
    .print = print,
    .get_keyhash = get_key_hash,
#ifdef DDS_HAS_SHM
    .get_sample_size = nullptr,
    .from_iox_buffer = nullptr,
#endif
};

void Serdata::set_key(const KeyHash& hash_bytes) {
    key = hash_bytes;
    std::array<std::uint32_t, 4> words;
    static_assert(sizeof words == sizeof key);
    std::memcpy(words.data(), key.data(), sizeof words);
    // Keys of few bytes fill the first words only, and those often with small numbers.
    std::uint32_t mixed = static_cast<std::uint32_t>(type_number);
    for (const std::uint32_t word : words) {
        mixed = (mixed ^ word) * 0x9e3779b1U + (mixed >> 15U);
    }
    hash = mixed ^ type->serdata_basehash;
    release(this);
}

SerdataPtr make_serdata(const ddsi_sertype* type, ddsi_serdata_kind kind, std::size_t size) {
    return make<Serdata>(type, kind, size);
}

SerdataPtr make_key_serdata(const Serdata& data) {
    return make_key<Serdata>(data);
}

}  // namespace pexa::engine::cyclone
