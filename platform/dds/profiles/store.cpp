#include "platform/dds/profiles/store.hpp"

#include <algorithm>

#include "pexa/domain.h"
#include "platform/dds/interface/wildcard.hpp"
#include "platform/dds/profiles/values.hpp"

namespace pexa::dds {
namespace {

template <typename Record>
Status apply(const ProfileEntry<Record>& entry, Record& qos) {
    for (const ProfileSetting& setting : entry.settings) {
        const PolicyMember& member = *setting.member;
        const Status stored = put_over(*member.type, member.locate(setting.row->locate(&qos)),
                                       member.locate_constant(setting.policy));
        if (stored != Status::ok) {
            return stored;
        }
    }
    return Status::ok;
}

/// @return whether the entry sets something for a topic of that name.
template <typename Record>
bool is_for(const ProfileEntry<Record>& entry, const char* topic_name) {
    return !entry.topic_filter ||
           (topic_name != nullptr && matches(topic_name, *entry.topic_filter, {'*', '?'}));
}

/// Entries without filter come first.
template <typename Record>
Status apply(const QosProfile& profile, const char* topic_name, Record& qos) {
    for (const bool has_filter : {false, true}) {
        for (const auto& entry : profile.entries<Record>()) {
            if (entry->topic_filter.has_value() != has_filter || !is_for(*entry, topic_name)) {
                continue;
            }
            const Status applied = apply(*entry, qos);
            if (applied != Status::ok) {
                return applied;
            }
        }
    }
    return Status::ok;
}

}  // namespace

void ProfileStore::put(const ProfileName& name, std::shared_ptr<const QosProfile> profile) {
    libraries_[name.qos_library][name.profile] = std::move(profile);
    if (default_ == name) {
        default_.reset();
    }
}

const QosProfile* ProfileStore::find(const ProfileName& name) const {
    const auto library = libraries_.find(name.qos_library);
    if (library == libraries_.end()) {
        return nullptr;
    }
    const auto found = library->second.find(name.profile);
    return found != library->second.end() ? found->second.get() : nullptr;
}

std::size_t ProfileStore::size() const {
    std::size_t count = 0;
    for (const auto& [name, profiles] : libraries_) {
        count += profiles.size();
    }
    return count;
}

std::vector<std::string> ProfileStore::libraries() const {
    std::vector<std::string> names;
    for (const auto& [name, profiles] : libraries_) {
        names.push_back(name);
    }
    return names;
}

std::vector<std::string> ProfileStore::profiles(const std::string& library) const {
    std::vector<std::string> names;
    const auto found = libraries_.find(library);
    if (found != libraries_.end()) {
        for (const auto& [name, profile] : found->second) {
            names.push_back(name);
        }
    }
    return names;
}

std::optional<std::string> ProfileStore::fault_of_bases(const QosProfile& profile) const {
    int count = 0;
    for (const QosProfile* derived = &profile; derived->base;) {
        const QosProfile* base = find(*derived->base);
        const std::string name = derived->base->qos_library + "::" + derived->base->profile;
        if (base == nullptr) {
            return "unknown base " + name;
        }
        if (base == &profile) {
            return "inherits from itself through " + name;
        }
        if (++count > DDS_QOS_PROFILE_MAX_BASES) {
            return "inherits through more than " + std::to_string(DDS_QOS_PROFILE_MAX_BASES) +
                   " profiles";
        }
        derived = base;
    }
    return std::nullopt;
}

template <typename Record>
Status ProfileStore::fill(const QosProfile& profile, const char* topic_name, Record& qos) const {
    std::vector<const QosProfile*> chain{&profile};
    while (chain.back()->base) {
        chain.push_back(find(*chain.back()->base));
    }
    std::reverse(chain.begin(), chain.end());
    OwnedQos<Record> result;
    for (const QosProfile* member : chain) {
        const Status applied = apply(*member, topic_name, result.get());
        if (applied != Status::ok) {
            return applied;
        }
    }
    return qos_record::copy(policies_of<Record>(), &qos, &result.get());
}

template Status ProfileStore::fill(const QosProfile&, const char*, DDS_DomainParticipantQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_TopicQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_PublisherQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_SubscriberQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_DataWriterQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_DataReaderQos&) const;

}  // namespace pexa::dds
