#include "types/key_hash.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

#include "pexa/osapi.h"
#include "types/sample_coding.hpp"
#include "types/sizes.hpp"

namespace orvane::types {

namespace {

struct FreeBuffer {
    void operator()(char* buffer) const { QELOsapiHeap_freeBufferAligned(buffer); }
};
using Buffer = std::unique_ptr<char[], FreeBuffer>;

/** The digest of a larger key is computed each time. */
constexpr std::size_t remembered_key_size = 48;

struct RememberedDigest {
    std::size_t key_size;
    std::array<char, remembered_key_size> key;
    std::array<DDS_Octet, 16> digest;
};

/**
 * A thread publishes few instances many times, and a digest takes longer than the encoding of a
 * message. Each thread remembers its own digests, so that no lock is needed.
 */
thread_local constinit std::array<RememberedDigest, 16> remembered_digests{};

void compute_digest(const char* key, std::size_t size, DDS_Octet* digest) {
    if (size == 0 || size > remembered_key_size) {
        QELMd5_compute(key, size, digest);
        return;
    }
    // Keys of one application differ only in the level. The usual levels have different sums.
    unsigned sum = 0;
    for (std::size_t i = 0; i < size; ++i) {
        sum += static_cast<unsigned char>(key[i]);
    }
    RememberedDigest& place = remembered_digests[sum % remembered_digests.size()];
    if (place.key_size != size || std::memcmp(place.key.data(), key, size) != 0) {
        QELMd5_compute(key, size, place.digest.data());
        std::memcpy(place.key.data(), key, size);
        place.key_size = size;
    }
    std::memcpy(digest, place.digest.data(), place.digest.size());
}

Success encode_key(const TypeTable& table, TULVEndpointData endpoint, const void* instance,
                   QELCdrStream& stream) {
    stream.littleEndian = 0;
    return serialize(table, endpoint, instance, &stream, QEL_CDR_ENCAPSULATION_ID_CDR_BE,
                     {.encapsulation = false, .body = true, .selection = Selection::Key});
}

void fill_hash(const TypeTable& table, const QELCdrStream& key, QELKeyHash& hash) {
    if (table.longest_key > sizeof hash.value) {
        compute_digest(key.buffer, key.position, hash.value);
    } else {
        std::memset(hash.value, 0, sizeof hash.value);
        std::memcpy(hash.value, key.buffer, std::min(key.position, sizeof hash.value));
    }
    hash.length = sizeof hash.value;
}

}  // namespace

Success hash_of_instance(const TypeTable& table, TULVEndpointData endpoint, const void* instance,
                         QELKeyHash* hash) {
    if (instance == nullptr || hash == nullptr) {
        return false;
    }
    QELCdrStream* md5_stream =
        endpoint == nullptr ? nullptr : TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint);
    if (md5_stream != nullptr) {
        QELCdrStream_reset(md5_stream);
        if (encode_key(table, endpoint, instance, *md5_stream)) {
            fill_hash(table, *md5_stream, *hash);
            return true;
        }
    }
    // A sample is never smaller than its key.
    const std::size_t size = exact_size(table, instance, has_extended_headers(endpoint), {});
    const Buffer buffer(
        static_cast<char*>(QELOsapiHeap_allocateBufferAligned(size, alignof(std::max_align_t))));
    if (buffer == nullptr) {
        return false;
    }
    std::memset(buffer.get(), 0, size);
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.get(), size);
    if (!encode_key(table, endpoint, instance, stream)) {
        return false;
    }
    fill_hash(table, stream, *hash);
    return true;
}

Success hash_of_serialized_sample(const TypeTable& table, TULVEndpointData endpoint,
                                  QELCdrStream* stream, bool with_encapsulation, QELKeyHash* hash) {
    if (endpoint == nullptr) {
        return false;
    }
    void* sample = TULVTypePluginDefaultEndpointData_getTempSample(endpoint);
    return sample != nullptr &&
           deserialize_unless_rejected(
               table, sample, stream,
               {.encapsulation = with_encapsulation, .body = true, .selection = Selection::Key}) &&
           hash_of_instance(table, endpoint, sample, hash);
}

}  // namespace orvane::types
