/// @file policies.hpp
/// @brief One table per QoS record: a row per policy, from which every operation on whole records
/// is made.
#pragma once

#include "platform/dds/qos/policy.hpp"

namespace pexa::dds {

struct PolicyRow {
    const char* name;  ///< of the member, and of its element in XML profiles
    const Policy* policy;
    void* (*locate)(void* record);
};

struct PolicyTable {
    std::span<const PolicyRow> rows;
    /// Sets the defaults of this record that differ from the policies' own.
    void (*adjust_defaults)(void* record);
    /// Finds policies that contradict each other.
    QosFault (*contradiction)(const void* record);
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
