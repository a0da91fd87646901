#include "platform/dds/endpoints/peer_directory.hpp"

#include <algorithm>
#include <new>

#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

namespace {

/// Bounds the memory where endpoints come and go without end. All are forgotten at once: the engine
/// is then asked again for each that still exists.
constexpr std::size_t most_known = 1024;

}  // namespace

DDS_InstanceHandle_t PeerDirectory::handle_of(engine::EntityId endpoint,
                                              engine::LocalHandle peer) noexcept {
    DDS_InstanceHandle_t handle = DDS_HANDLE_NIL;
    if (peer == 0 || find(peer, handle)) {
        return handle;
    }
    engine::EndpointData data;
    const Status status = kind_ == PeerKind::subscriptions
                              ? engine::get_matched_subscription(endpoint, peer, data)
                              : engine::get_matched_publication(endpoint, peer, data);
    if (status == Status::ok) {
        handle = to_handle(data.guid);
    }
    // Without memory the engine could not say.
    if (status != Status::out_of_resources) {
        remember({peer, handle});
    }
    return handle;
}

DDS_InstanceHandle_t PeerDirectory::note(engine::LocalHandle peer,
                                         const engine::Guid& guid) noexcept {
    const DDS_InstanceHandle_t handle = to_handle(guid);
    DDS_InstanceHandle_t known;
    if (!find(peer, known)) {
        remember({peer, handle});
    }
    return handle;
}

Status PeerDirectory::store_matched(engine::EntityId endpoint, DDS_InstanceHandleSeq& handles) {
    if (endpoint == engine::no_entity) {
        return Status::not_enabled;
    }
    std::vector<engine::LocalHandle> peers;
    const Status status = kind_ == PeerKind::subscriptions
                              ? engine::get_matched_subscriptions(endpoint, peers)
                              : engine::get_matched_publications(endpoint, peers);
    if (status != Status::ok) {
        return status;
    }
    return store_handles(
        peers, [&](engine::LocalHandle peer) { return handle_of(endpoint, peer); }, handles);
}

bool PeerDirectory::find(engine::LocalHandle peer, DDS_InstanceHandle_t& handle) noexcept {
    const std::lock_guard guard(mutex_);
    const auto found = std::find_if(known_.begin(), known_.end(),
                                    [&](const Known& known) { return known.local == peer; });
    if (found == known_.end()) {
        return false;
    }
    handle = found->handle;
    // Samples of one writer come in runs.
    std::swap(*found, known_.front());
    return true;
}

void PeerDirectory::remember(const Known& known) noexcept {
    const std::lock_guard guard(mutex_);
    if (known_.size() >= most_known) {
        known_.clear();
    }
    try {
        known_.push_back(known);
    } catch (const std::bad_alloc&) {
        // It is asked for again.
    }
}

}  // namespace pexa::dds
