/// @file status_conversion.hpp
/// @brief Statuses of the engine as records of the C interface.
#pragma once

#include "platform/dds/endpoints/peer_directory.hpp"
#include "platform/dds/interface/operation.hpp"

namespace pexa::dds {

/// Names the engine's counterpart of a status record.
template <typename Record>
struct StatusTraits {};
template <>
struct StatusTraits<DDS_InconsistentTopicStatus> {
    using Engine = engine::InconsistentTopic;
};
template <>
struct StatusTraits<DDS_OfferedDeadlineMissedStatus> {
    using Engine = engine::OfferedDeadlineMissed;
};
template <>
struct StatusTraits<DDS_OfferedIncompatibleQosStatus> {
    using Engine = engine::OfferedIncompatibleQos;
};
template <>
struct StatusTraits<DDS_LivelinessLostStatus> {
    using Engine = engine::LivelinessLost;
};
template <>
struct StatusTraits<DDS_PublicationMatchedStatus> {
    using Engine = engine::PublicationMatched;
};
template <>
struct StatusTraits<DDS_RequestedDeadlineMissedStatus> {
    using Engine = engine::RequestedDeadlineMissed;
};
template <>
struct StatusTraits<DDS_RequestedIncompatibleQosStatus> {
    using Engine = engine::RequestedIncompatibleQos;
};
template <>
struct StatusTraits<DDS_SampleLostStatus> {
    using Engine = engine::SampleLost;
};
template <>
struct StatusTraits<DDS_SampleRejectedStatus> {
    using Engine = engine::SampleRejected;
};
template <>
struct StatusTraits<DDS_LivelinessChangedStatus> {
    using Engine = engine::LivelinessChanged;
};
template <>
struct StatusTraits<DDS_SubscriptionMatchedStatus> {
    using Engine = engine::SubscriptionMatched;
};

/// The engine's form of a status record.
template <typename Record>
using EngineStatus = typename StatusTraits<Record>::Engine;

/// Finds the handle of a peer by the engine's local one.
using PeerLookup = engine::FunctionRef<DDS_InstanceHandle_t(engine::LocalHandle)>;

/// @name Converting a status
/// @p peer is used for statuses that name a peer only.
/// @{
template <typename Record>
void convert(const EngineStatus<Record>& status, Record& record, const PeerLookup&) {
    record.total_count = status.total_count;
    record.total_count_change = status.total_count_change;
    if constexpr (requires { record.last_policy_id; }) {
        record.last_policy_id = status.last_policy_id;
    }
}
void convert(const engine::SampleRejected& status, DDS_SampleRejectedStatus& record,
             const PeerLookup& peer);
void convert(const engine::LivelinessChanged& status, DDS_LivelinessChangedStatus& record,
             const PeerLookup& peer);
void convert(const engine::PublicationMatched& status, DDS_PublicationMatchedStatus& record,
             const PeerLookup& peer);
void convert(const engine::SubscriptionMatched& status, DDS_SubscriptionMatchedStatus& record,
             const PeerLookup& peer);
/// @}

/// Reads a status of an entity, which resets its change counts.
template <typename Record>
[[nodiscard]] DDS_ReturnCode_t read_status(engine::EntityId entity, Record& record,
                                           const PeerLookup& peer) {
    if (entity == engine::no_entity) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    EngineStatus<Record> status;
    const Status result = engine::get_status(entity, status);
    if (result == Status::ok) {
        convert(status, record, peer);
    }
    return to_return_code(result);
}

}  // namespace pexa::dds
