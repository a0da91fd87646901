/// @file peer_directory.hpp
/// @brief Handles of the endpoints that match one of ours.
#pragma once

#include <mutex>
#include <utility>
#include <vector>

#include "pexa/base.h"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// Which side the peers are on.
enum class PeerKind { subscriptions, publications };

/// Finds the GUID behind the engine's local handle of a matched endpoint, and remembers it: asking
/// the engine is slow, and it forgets an endpoint as soon as that is unmatched, while samples of it
/// still wait and its leaving is still to be announced.
class PeerDirectory {
public:
    explicit PeerDirectory(PeerKind kind) : kind_(kind) {}

    /// @param endpoint ours, that the peer matches or matched
    /// @return the peer's handle, NIL for one that was never asked for while it was matched
    [[nodiscard]] DDS_InstanceHandle_t handle_of(engine::EntityId endpoint,
                                                 engine::LocalHandle peer) noexcept;

private:
    struct Known {
        engine::LocalHandle local;
        DDS_InstanceHandle_t handle;
    };

    [[nodiscard]] bool find(engine::LocalHandle peer, DDS_InstanceHandle_t& handle) noexcept;
    void remember(const Known& known) noexcept;

    PeerKind kind_;
    std::mutex mutex_;
    std::vector<Known> known_;
};

}  // namespace pexa::dds
