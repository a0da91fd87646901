/// @file type.hpp
/// @brief Data types as the engine sees them, and encoded samples.
#pragma once

#include <optional>
#include <span>
#include <utility>

#include "platform/engine/function_ref.hpp"
#include "platform/engine/values.hpp"

namespace pexa::engine {

/// The members that an encoded sample consists of.
enum class PayloadKind {
    data,  ///< all members
    key,   ///< the key members, for a dispose or unregister
};

/// A data type, implemented by the port and shared with the engine for as long as topics or
/// endpoints of it exist. The last reference may be dropped on a thread of the engine, some time
/// after their deletion. Instances that the engine still knows then do not call it any more.
///
/// Endpoints of one process share samples without a copy when their topics were made with the same
/// Type object. Between two objects of the same type name every sample is copied and accepted anew.
///
/// Every operation may be called by several threads at the same time, engine threads among them,
/// partly while the engine holds locks: none may call the engine, and none may throw.
class Type {
public:
    Type() = default;
    Type(const Type&) = delete;
    Type& operator=(const Type&) = delete;
    virtual ~Type() = default;

    /// @return the type name that discovery announces. It stays the same as long as the object
    /// lives.
    virtual const char* name() const = 0;

    /// @return whether the type has key members. If not, all samples belong to one instance, and
    /// write_key() is never called.
    virtual bool keyed() const = 0;

    /// Checks a payload that arrived from the network or from an endpoint of another Type object.
    ///
    /// @param kind what the payload claims to contain
    /// @param payload the bytes as they arrived, of any length; a valid payload starts with a
    /// 4-byte encapsulation header
    /// @return the key hash of its instance, or nothing for a corrupt payload. The engine drops
    /// such a payload with a warning; later payloads are not affected.
    virtual std::optional<KeyHash> accept(PayloadKind kind,
                                          std::span<const std::byte> payload) const = 0;

    /// Encodes the key members of a payload. Called once for each instance that becomes known.
    ///
    /// @param data a data payload that was written in this process or accepted
    /// @param allocate to be called once; returns a buffer of exactly the requested size for the
    /// key payload with its encapsulation header, or NULL
    /// @return false when the key cannot be encoded; the instance then has an empty key payload
    virtual bool write_key(std::span<const std::byte> data,
                           FunctionRef<std::byte*(std::size_t)> allocate) const = 0;
};

/// A reference to an immutable encoded sample in the engine's memory. The sample lives as long as
/// any reference, even when its entities are deleted. Each thread needs a reference of its own.
class Payload {
public:
    Payload() = default;
    Payload(const Payload& other);
    Payload(Payload&& other) noexcept : buffer_(std::exchange(other.buffer_, nullptr)) {}
    Payload& operator=(Payload other) noexcept {
        std::swap(buffer_, other.buffer_);
        return *this;
    }
    ~Payload();

    /// @return whether there is a sample.
    explicit operator bool() const { return buffer_ != nullptr; }

    /// @return the encoded sample with its encapsulation header, aligned to 8 bytes; empty when the
    /// writer sent only a key hash. A sample from the network may have up to 3 more bytes at its
    /// end, which round its length up to a multiple of 4.
    std::span<const std::byte> bytes() const;

    /// @return the instance that the sample belongs to.
    const KeyHash& key_hash() const;

    PayloadKind kind() const;

private:
    friend struct PayloadAccess;
    void* buffer_ = nullptr;
};

/// Where a sample comes from, as RTPS says it.
struct SampleOrigin {
    Guid writer{};
    /// A writer counts its samples, disposes and unregistrations from 1 on. 0: nothing is known,
    /// because the sample did not come by RTPS.
    std::int64_t sequence_number = 0;

    bool operator==(const SampleOrigin&) const = default;
};

/// A reader's information about a sample, without the payload.
struct SampleInfo {
    std::uint32_t sample_state = 0;    ///< one of the sample bits
    std::uint32_t view_state = 0;      ///< one of the view bits
    std::uint32_t instance_state = 0;  ///< one of the instance bits
    /// False when only the state of the instance has changed; the payload is then the key.
    bool valid_data = false;
    Nanoseconds source_timestamp = 0;
    KeyHash instance{};
    LocalHandle publication = 0;
    /// Known of samples with valid data from other processes.
    SampleOrigin origin;
    std::int32_t disposed_generation_count = 0;
    std::int32_t no_writers_generation_count = 0;
    std::int32_t sample_rank = 0;
    std::int32_t generation_rank = 0;
    std::int32_t absolute_generation_rank = 0;
};

struct Sample {
    Payload payload;
    SampleInfo info;
};

}  // namespace pexa::engine
