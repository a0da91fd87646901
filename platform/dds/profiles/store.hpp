/// @file store.hpp
/// @brief Named QoS profiles and their inheritance.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/dds/qos/conversion.hpp"

namespace pexa::dds {

/// A value that a profile sets.
struct ProfileSetting {
    const PolicyRow* row;
    const PolicyMember* member;
    const void* policy;  ///< the record that holds the value
};

/// An element of a profile, which concerns one kind of entity.
template <typename Record>
struct ProfileEntry {
    std::optional<std::string> topic_filter;
    OwnedQos<Record> values;
    std::vector<ProfileSetting> settings;  ///< the values that the element sets
};

struct ProfileName {
    std::string qos_library;
    std::string profile;
    bool operator==(const ProfileName&) const = default;
};

/// A QoS for every kind of entity.
struct QosProfile {
    template <typename Record>
    using Entries = std::vector<std::unique_ptr<ProfileEntry<Record>>>;

    template <typename Record>
    Entries<Record>& entries() {
        return std::get<Entries<Record>>(all);
    }
    template <typename Record>
    const Entries<Record>& entries() const {
        return std::get<Entries<Record>>(all);
    }

    std::optional<ProfileName> base;
    DDS_Long line = 0;  ///< where it stands in its document
    std::tuple<Entries<DDS_DomainParticipantQos>, Entries<DDS_TopicQos>, Entries<DDS_PublisherQos>,
               Entries<DDS_SubscriberQos>, Entries<DDS_DataWriterQos>, Entries<DDS_DataReaderQos>>
        all;
};

/// Profiles by library and name. A profile finds its base by name when it is used.
class ProfileStore {
public:
    /// Enters a profile. It replaces a profile of the same name.
    void put(const ProfileName& name, std::shared_ptr<const QosProfile> profile);
    /// @return NULL for an unknown profile.
    const QosProfile* find(const ProfileName& name) const;
    std::size_t size() const;
    std::vector<std::string> libraries() const;
    /// @return the names in a library; an unknown library is empty.
    std::vector<std::string> profiles(const std::string& library) const;

    /// The profile for entities that are created without a QoS, if there is one.
    const std::optional<ProfileName>& default_profile() const { return default_; }
    void set_default_profile(std::optional<ProfileName> name) { default_ = std::move(name); }

    /// @return the fault of a profile's bases, if there is one
    std::optional<std::string> fault_of_bases(const QosProfile& profile) const;

    /// Gives the QoS of a profile for entities of a topic: the DDS standard's defaults, then what
    /// the bases set, the farthest first, then what the profile sets. Of each, entries without
    /// filter come before those whose filter the topic's name matches.
    ///
    /// @param profile its bases have no fault
    /// @param topic_name NULL matches no filter
    /// @return OUT_OF_RESOURCES without memory
    template <typename Record>
    Status fill(const QosProfile& profile, const char* topic_name, Record& qos) const;

private:
    std::map<std::string, std::map<std::string, std::shared_ptr<const QosProfile>>> libraries_;
    std::optional<ProfileName> default_;
};

}  // namespace pexa::dds
