/// @file values.hpp
/// @brief Values of the seam that all its files use: identities, times and state masks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "platform/internal/status.hpp"

namespace pexa::engine {

/// Identifies an entity of the engine within this process. Valid ids are positive. An application
/// that also uses the engine's own interface meets the same number there.
using EntityId = std::int32_t;
inline constexpr EntityId no_entity = 0;

/// The result of a creating operation: there is an entity exactly when the status is ok.
struct [[nodiscard]] Created {
    Status status = Status::error;
    EntityId entity = no_entity;

    explicit operator bool() const { return status == Status::ok; }
};

/// A duration, or a time since the epoch, in nanoseconds.
using Nanoseconds = std::int64_t;
inline constexpr Nanoseconds infinite = std::numeric_limits<Nanoseconds>::max();

/// A length or count without limit in QoS policies and read requests.
inline constexpr std::int32_t unlimited = -1;

/// Identity of an instance: the key hash as it stands in RTPS messages. Keyless types have one
/// instance, the all-zero hash.
using KeyHash = std::array<std::byte, 16>;

/// Identity of a participant or endpoint: bytes 0-11 prefix, 12-15 entity, in RTPS order.
using Guid = std::array<std::byte, 16>;

/// Identity of an endpoint or instance within this process, as statuses and sample infos carry it.
/// 0 means none.
using LocalHandle = std::uint64_t;

/// @name State bits of samples, views and instances
/// @{
inline constexpr std::uint32_t sample_read = 1;
inline constexpr std::uint32_t sample_not_read = 2;
inline constexpr std::uint32_t view_new = 1;
inline constexpr std::uint32_t view_not_new = 2;
inline constexpr std::uint32_t instance_alive = 1;
inline constexpr std::uint32_t instance_disposed = 2;
inline constexpr std::uint32_t instance_no_writers = 4;
inline constexpr std::uint32_t any_state = 0xffff;
/// @}

/// Selects samples by their states. A sample is selected when its state of each kind is in the mask
/// of that kind, so a mask without bits selects nothing.
struct StateMask {
    std::uint32_t sample_states = any_state;
    std::uint32_t view_states = any_state;
    std::uint32_t instance_states = any_state;
};

}  // namespace pexa::engine
