/// @file profile_store.hpp
/// @brief Named QoS profiles.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "dds/qos_conversion.hpp"

namespace pexa::dds {

/// The QoS of every kind of entity under one name.
struct QosProfile {
    OwnedQos<DDS_DomainParticipantQos> participant;
    OwnedQos<DDS_TopicQos> topic;
    OwnedQos<DDS_PublisherQos> publisher;
    OwnedQos<DDS_SubscriberQos> subscriber;
    OwnedQos<DDS_DataWriterQos> writer;
    OwnedQos<DDS_DataReaderQos> reader;
};

/// The profiles that were loaded, by library and name. Not thread-safe.
class ProfileStore {
public:
    /// @return the profile of that name, made with the DDS standard's defaults if there is none.
    QosProfile& add(const std::string& library, const std::string& profile);
    /// @return NULL for an unknown profile.
    [[nodiscard]] const QosProfile* find(const std::string& library,
                                         const std::string& profile) const;
    [[nodiscard]] std::vector<std::string> libraries() const;
    /// @return the names in a library, none for one that is not loaded.
    [[nodiscard]] std::vector<std::string> profiles(const std::string& library) const;

private:
    std::map<std::string, std::map<std::string, QosProfile>> libraries_;
};

}  // namespace pexa::dds
