/// @file codec.hpp
/// @brief Encoding and decoding of samples through a type plugin.
#pragma once

#include <memory>
#include <span>

#include "pexa/type_plugin.h"
#include "platform/engine/values.hpp"

namespace pexa::dds {

/// A plugin with the endpoint data of one endpoint. One thread at a time. ERROR
/// says that the plugin refused.
class Codec {
public:
    /// @param plugin must outlive the codec
    /// @return NULL when the plugin refuses
    static std::unique_ptr<Codec> create(const TULVTypePlugin& plugin,
                                         TULVParticipantData participant_data,
                                         TULVEndpointKind kind);
    Codec(const Codec&) = delete;
    Codec& operator=(const Codec&) = delete;
    ~Codec();

    /// @return the exact size of a sample with its encapsulation header, 0 on failure.
    std::size_t encoded_size(const void* sample) const;
    /// Encodes a sample with its header into a buffer of exactly its size.
    Status encode(const void* sample, std::span<std::byte> buffer) const;
    /// @return the encoded key members with their header, valid until the next call; only the
    /// header for a keyless type; empty on failure.
    std::span<const std::byte> encode_key(const void* sample);
    /// Gives the key hash of a sample, all zero for a keyless type.
    Status key_hash(const void* sample, engine::KeyHash& hash) const;

    /// Decodes a payload with its header into an initialised sample.
    Status decode(std::span<const std::byte> payload, void* sample) const;
    /// Decodes a key payload; members outside the key are not touched. A keyless type has none.
    Status decode_key(std::span<const std::byte> payload, void* sample) const;

    /// @return a sample of the endpoint's pool, to be given back, or NULL.
    void* lend() const;
    void give_back(void* sample) const;

private:
    class KeyHolder;

    Codec(const TULVTypePlugin& plugin, TULVEndpointData data);
    /// @return the buffer for encoded keys, as large as any key; empty without memory.
    std::span<std::byte> key_buffer();

    const TULVTypePlugin& plugin_;
    TULVEndpointData data_;
    bool keyed_;
    std::unique_ptr<std::byte[]> key_buffer_;
    std::size_t key_buffer_size_ = 0;
};

}  // namespace pexa::dds
