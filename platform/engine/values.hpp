/// @file values.hpp
/// @brief Plain values of the engine seam: identities, state masks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include "platform/internal/status.hpp"

namespace pexa::engine {

/// Handle of any engine entity, the same number that the engine's own interface uses. Valid ones
/// are positive.
using EntityId = std::int32_t;
inline constexpr EntityId no_entity = 0;

/// What a creating operation returns: an entity exactly when the status is ok.
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

/// Which samples a reader operation or read condition is about: one bit set per kind of state.
/// A set without any bit selects nothing.
struct StateMask {
    std::uint32_t sample_states = any_state;
    std::uint32_t view_states = any_state;
    std::uint32_t instance_states = any_state;
};

/// Borrows a callable for the length of a call; never stores or copies it.
template <typename Signature>
class FunctionRef;

template <typename Result, typename... Arguments>
class FunctionRef<Result(Arguments...)> {
public:
    template <typename Callable>
    requires(std::is_invocable_r_v<Result, const Callable&, Arguments...>)
        // NOLINTNEXTLINE(google-explicit-constructor): stands in for the callable at call sites
        FunctionRef(const Callable& callable)
        : object_(std::addressof(callable)), call_([](const void* object, Arguments... arguments) {
              return static_cast<Result>(
                  (*static_cast<const Callable*>(object))(std::forward<Arguments>(arguments)...));
          }) {}

    Result operator()(Arguments... arguments) const {
        return call_(object_, std::forward<Arguments>(arguments)...);
    }

private:
    const void* object_;
    Result (*call_)(const void*, Arguments...);
};

}  // namespace pexa::engine
