/// @file type.hpp
/// @brief What the engine needs to know of a data type, and the encoded samples it hands around.
#pragma once

#include <optional>
#include <span>

#include "platform/engine/values.hpp"

namespace pexa::engine {

/// What an encoded sample consists of.
enum class PayloadKind {
    data,  ///< all members
    key,   ///< key members only: a dispose or unregister
};

/// A data type, implemented by the port and shared with the engine for as long as topics, endpoints
/// or instances of it exist; an engine thread may be the last to let go of it.
///
/// Endpoints of one process whose topics were made with the same Type object share samples without
/// a copy; between different objects of the same type name every sample is copied and accepted
/// anew.
///
/// Every operation may be called by several threads at the same time, engine threads among them,
/// partly while the engine holds locks: none may call the engine, and none may throw.
class Type {
public:
    Type() = default;
    Type(const Type&) = delete;
    Type& operator=(const Type&) = delete;
    virtual ~Type() = default;

    /// @return the type name that discovery announces; stable for the object's life.
    [[nodiscard]] virtual const char* name() const = 0;

    /// @return whether the type has key members. Without, every sample belongs to one instance and
    /// write_key() is never called.
    [[nodiscard]] virtual bool keyed() const = 0;

    /// Judges a payload that arrived from the network or from an endpoint of another Type object.
    ///
    /// @param kind what the payload claims to contain
    /// @param payload what the wire brought, of any length; a proper one starts with a 4-byte
    /// encapsulation header
    /// @return the key hash of its instance, or nothing for a corrupt payload, which the engine
    /// drops with a warning; later payloads are not affected.
    [[nodiscard]] virtual std::optional<KeyHash> accept(
        PayloadKind kind, std::span<const std::byte> payload) const = 0;

    /// Encodes the key members of a payload, called once for each instance that becomes known.
    ///
    /// @param data a data payload that was written here or accepted
    /// @param allocate gives a buffer of exactly the requested size for the key payload, its
    /// encapsulation header included, or NULL; to be called once
    /// @return false when the key cannot be encoded: the instance then has an empty key payload
    [[nodiscard]] virtual bool write_key(std::span<const std::byte> data,
                                         FunctionRef<std::byte*(std::size_t)> allocate) const = 0;
};

/// A shared, immutable encoded sample in the engine's memory. Copying it counts a reference; the
/// bytes live as long as any copy, entities may be gone. Distinct copies may be used by different
/// threads.
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

    /// @return whether there is a sample at all.
    explicit operator bool() const { return buffer_ != nullptr; }

    /// @return the encoded sample with its encapsulation header, aligned to 8 bytes; empty when the
    /// writer sent a key hash only. The network rounds the length up to a multiple of 4 with bytes
    /// that mean nothing.
    [[nodiscard]] std::span<const std::byte> bytes() const;

    /// @return the instance that the sample belongs to.
    [[nodiscard]] const KeyHash& key_hash() const;

    [[nodiscard]] PayloadKind kind() const;

private:
    friend struct PayloadAccess;
    void* buffer_ = nullptr;
};

/// What a reader knows of a sample besides its payload.
struct SampleInfo {
    std::uint32_t sample_state = 0;    ///< one of the sample bits
    std::uint32_t view_state = 0;      ///< one of the view bits
    std::uint32_t instance_state = 0;  ///< one of the instance bits
    /// False for a mere change of the instance's state; the payload is then its key.
    bool valid_data = false;
    Nanoseconds source_timestamp = 0;
    KeyHash instance{};
    LocalHandle publication = 0;
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
