/// @file qos_policies.hpp
/// @brief One table per QoS record: a row per policy, from which every operation on whole records
/// is made.
#pragma once

#include <span>

#include "pexa/qos.h"
#include "platform/engine/qos.hpp"

namespace pexa::dds {

/// When an entity lets its owner change a policy.
enum class Change {
    always,
    until_enabled,
    never,  ///< the port fills it in; what a caller puts there is ignored
};

/// What can be done with a policy of one type. @p policy points at the policy's record.
struct PolicyOperations {
    void (*initialize)(void* policy);
    /// @return false without memory; the policy is then valid but may be incomplete.
    bool (*copy)(void* policy, const void* from);
    void (*finalize)(void* policy);
    bool (*equal)(const void* left, const void* right);
    /// @return NULL, or what is wrong with the policy taken by itself.
    const char* (*fault)(const void* policy);
    /// Allocates with the engine's containers, so it may throw std::bad_alloc.
    void (*to_engine)(const void* policy, engine::Qos& qos);
    /// Leaves the policy alone when the engine does not carry it. @return false without memory.
    bool (*from_engine)(const engine::Qos& qos, void* policy);
};

struct PolicyRow {
    const char* name;  ///< of the member, which is also the name in XML profiles
    Change change;
    const PolicyOperations* operations;
    void* (*locate)(void* record);
};

struct PolicyTable {
    const char* record;  ///< name of the record, such as "DDS_TopicQos"
    std::span<const PolicyRow> rows;
    /// Sets what differs from the policies' own defaults.
    void (*adjust_defaults)(void* record);
    /// @return NULL, or which two policies of the record contradict each other.
    const char* (*contradiction)(const void* record);
};

/// @return the table of a QoS record of pexa/qos.h.
template <typename Record>
const PolicyTable& policies_of();
template <>
const PolicyTable& policies_of<DDS_DomainParticipantFactoryQos>();
template <>
const PolicyTable& policies_of<DDS_DomainParticipantQos>();
template <>
const PolicyTable& policies_of<DDS_TopicQos>();
template <>
const PolicyTable& policies_of<DDS_PublisherQos>();
template <>
const PolicyTable& policies_of<DDS_SubscriberQos>();
template <>
const PolicyTable& policies_of<DDS_DataWriterQos>();
template <>
const PolicyTable& policies_of<DDS_DataReaderQos>();

}  // namespace pexa::dds
