/// @file peer_directory.hpp
/// @brief Handles of the endpoints that match an endpoint of ours.
#pragma once

#include <mutex>
#include <vector>

#include "pexa/sequence.h"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// Which side the peers are on.
enum class PeerKind { subscriptions, publications };

/// Finds the GUID behind the engine's local handle of a matched endpoint, and remembers it. Asking
/// the engine is slow. It also forgets an endpoint as soon as the match ends, when samples of that
/// endpoint may still wait and the end of the match has still to be announced.
class PeerDirectory {
public:
    explicit PeerDirectory(PeerKind kind) : kind_(kind) {}

    /// @param endpoint ours, that the peer matches or matched
    /// @return the peer's handle, NIL if it was not asked for while the peer was matched, or
    /// without memory
    DDS_InstanceHandle_t handle_of(engine::EntityId endpoint, engine::LocalHandle peer) noexcept;

    /// Remembers a peer of which a sample has brought the GUID.
    /// @return its handle
    DDS_InstanceHandle_t note(engine::LocalHandle peer, const engine::Guid& guid) noexcept;

    /// Replaces the content of a sequence by the handles of all peers that match now.
    /// @param endpoint ours, no_entity while it is disabled
    /// @return NOT_ENABLED, or OUT_OF_RESOURCES: no memory, or a lent buffer that is too small
    Status store_matched(engine::EntityId endpoint, DDS_InstanceHandleSeq& handles);

private:
    struct Known {
        engine::LocalHandle local;
        DDS_InstanceHandle_t handle;
    };

    bool find(engine::LocalHandle peer, DDS_InstanceHandle_t& handle) noexcept;
    void remember(const Known& known) noexcept;

    PeerKind kind_;
    std::mutex mutex_;
    std::vector<Known> known_;
};

}  // namespace pexa::dds
