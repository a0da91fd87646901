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

/// The name of a base as it is written, in parts: profile, library and profile, or these and the
/// name of an entry. An entry may also name an entry of its own profile or library.
using BaseName = std::vector<std::string>;

/// @return the name as it is written, with :: between its parts.
std::string text_of(const BaseName& name);

/// An element of a profile, which concerns one kind of entity.
template <typename Record>
struct ProfileEntry {
    std::string name;  ///< empty for none
    std::optional<std::string> topic_filter;
    std::vector<BaseName> bases;
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

    ProfileName name;
    std::vector<BaseName> bases;
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
/// those of the bases in their order, then the profile's own. Of each profile, entries without
/// filter come before those whose filter the topic's name matches. An entry comes after its bases.
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
    using Entry = ProfileEntry<Record>;
    /// A base: an entry of a profile, or all of the profile for NULL.
    struct Base {
        const QosProfile* profile = nullptr;
        const Entry* entry = nullptr;
        const void* identity() const {
            return entry != nullptr ? static_cast<const void*>(entry) : profile;
        }
    };

    void add(const QosProfile& profile, const Entry& entry);
    /// @param entry of the profile, whose base it is; NULL for a base of the profile
    void add_base(const QosProfile& profile, const Entry* entry, const BaseName& name);
    /// @return a base without profile for an unknown name.
    Base find(const QosProfile& profile, const Entry* entry, const BaseName& name) const;

    const ProfileStore& store_;
    TopicChoice topic_;
    std::string fault_;
    /// The bases that are being added, each one of the base before.
    std::vector<const void*> open_;
    std::vector<const ProfileEntry<Record>*> entries_;
    std::vector<const QosProfile*> bases_;
};

/// Profiles by library and name. A profile finds its bases by name when it is used.
class ProfileStore {
public:
    /// Enters a profile. It replaces a profile of the same name.
    void put(std::shared_ptr<const QosProfile> profile);
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
