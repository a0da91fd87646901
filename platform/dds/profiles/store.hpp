/// @file profile_store.hpp
/// @brief Named QoS profiles and what they inherit.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/dds/profiles/fields.hpp"
#include "platform/dds/qos/conversion.hpp"

namespace pexa::dds {

/// A value that a profile sets.
struct ProfileSetting {
    const PolicyRow* policy;
    const FieldRow* field;
    const void* value;  ///< the policy that holds it
};

/// What one element of a profile says of one kind of entity.
template <typename Record>
struct ProfileEntry {
    std::optional<std::string> topic_filter;
    OwnedQos<Record> values;
    std::vector<ProfileSetting> settings;  ///< which of the values count, in @ref values
};

struct ProfileName {
    std::string qos_library;
    std::string profile;
    bool operator==(const ProfileName&) const = default;
};

/// The QoS of every kind of entity under one name.
struct QosProfile {
    template <typename Record>
    using Entries = std::vector<std::unique_ptr<ProfileEntry<Record>>>;

    template <typename Record>
    [[nodiscard]] Entries<Record>& entries() {
        return std::get<Entries<Record>>(all);
    }
    template <typename Record>
    [[nodiscard]] const Entries<Record>& entries() const {
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
    /// Enters a profile, in place of one of the same name.
    void put(const ProfileName& name, std::shared_ptr<const QosProfile> profile);
    /// @return NULL for an unknown profile.
    [[nodiscard]] const QosProfile* find(const ProfileName& name) const;
    [[nodiscard]] std::size_t size() const;
    [[nodiscard]] std::vector<std::string> libraries() const;
    /// @return the names in a library, none for one that is not loaded.
    [[nodiscard]] std::vector<std::string> profiles(const std::string& library) const;

    /// The profile that stands for what nobody sets, if any.
    [[nodiscard]] const std::optional<ProfileName>& default_profile() const { return default_; }
    void set_default_profile(std::optional<ProfileName> name) { default_ = std::move(name); }

    /// @return nothing, or what is wrong with a profile's bases
    [[nodiscard]] std::optional<std::string> fault_of_bases(const QosProfile& profile) const;

    /// Gives the QoS of a profile for entities of a topic: the DDS standard's defaults, then what
    /// the bases set, the farthest first, then what the profile sets. Of each, entries without
    /// filter come before those whose filter the topic's name matches.
    ///
    /// @param profile its bases have no fault
    /// @param topic_name NULL matches no filter
    /// @return OUT_OF_RESOURCES without memory
    template <typename Record>
    [[nodiscard]] DDS_ReturnCode_t fill(const QosProfile& profile, const char* topic_name,
                                        Record& qos) const;

private:
    std::map<std::string, std::map<std::string, std::shared_ptr<const QosProfile>>> libraries_;
    std::optional<ProfileName> default_;
};

}  // namespace pexa::dds
