/// @file store.hpp
/// @brief Named QoS profiles and their inheritance.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/dds/profiles/kinds.hpp"
#include "platform/dds/qos/conversion.hpp"

namespace pexa::dds {

/// A value that a profile sets.
struct ProfileSetting {
    const PolicyRow* row;
    const PolicyMember* member;
    const void* policy;  ///< the record that holds the value
    DDS_Long line;       ///< of the policy
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

/// @return the name as it is written, library::profile.
std::string text_of(const ProfileName& name);

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
    /// The first fault of a profile that is refused, with its place. Empty for the others.
    std::string refusal;
    std::tuple<Entries<DDS_DomainParticipantQos>, Entries<DDS_TopicQos>, Entries<DDS_PublisherQos>,
               Entries<DDS_SubscriberQos>, Entries<DDS_DataWriterQos>, Entries<DDS_DataReaderQos>>
        all;
};

/// Which entries of a profile count: those without a filter, and those whose filter matches.
struct TopicChoice {
    const char* name = nullptr;  ///< of the topic; NULL matches no filter
    bool any = false;            ///< all filters match
};

class ProfileStore;

/// The entries that make up the QoS of one kind of entity, each before those that override it:
/// those of the bases, the farthest first, then the profile's own. Of each profile, entries without
/// filter come before those whose filter the topic's name matches.
template <typename Record>
class Inheritance {
public:
    /// @param profile and the profiles of @p store outlive this
    Inheritance(const ProfileStore& store, const QosProfile& profile, TopicChoice topic);

    /// @return why the profile cannot be used because of its bases, empty when it can. After a
    /// fault, entries are missing.
    const std::string& fault() const { return fault_; }
    const std::vector<const ProfileEntry<Record>*>& entries() const { return entries_; }
    const std::vector<const QosProfile*>& bases() const { return bases_; }

    /// Puts the values of the entries over those of @p qos.
    /// @return OUT_OF_RESOURCES without memory
    Status apply(Record& qos) const;

private:
    void add(const QosProfile& profile);
    void add_base(const ProfileName& name);

    const ProfileStore& store_;
    const QosProfile& derived_;
    TopicChoice topic_;
    std::string fault_;
    std::vector<const ProfileEntry<Record>*> entries_;
    std::vector<const QosProfile*> bases_;
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
    /// @return the names in a library, also of refused profiles; an unknown library is empty.
    std::vector<std::string> profiles(const std::string& library) const;

    /// The profile for entities that are created without a QoS, if there is one.
    const std::optional<ProfileName>& default_profile() const { return default_; }
    void set_default_profile(std::optional<ProfileName> name) { default_ = std::move(name); }

    /// @return why a profile cannot be used because of its bases, empty when it can
    std::string fault_of_bases(const QosProfile& profile) const;
    /// @return why a profile cannot be used, empty when it can
    std::string refusal(const QosProfile& profile) const;

    /// Gives the QoS of a profile for entities of a topic: the DDS standard's defaults, and over
    /// them what its Inheritance sets.
    ///
    /// @param profile is not refused
    /// @param topic_name NULL matches no filter
    /// @return OUT_OF_RESOURCES without memory
    template <typename Record>
    Status fill(const QosProfile& profile, const char* topic_name, Record& qos) const;

private:
    std::map<std::string, std::map<std::string, std::shared_ptr<const QosProfile>>> libraries_;
    std::optional<ProfileName> default_;
};

}  // namespace pexa::dds
