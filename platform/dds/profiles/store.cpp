#include "platform/dds/profiles/store.hpp"

#include <algorithm>

#include "pexa/domain.h"
#include "platform/dds/interface/wildcard.hpp"

namespace pexa::dds {
namespace {

template <typename Record>
bool apply(const ProfileEntry<Record>& entry, Record& qos) {
    for (const ProfileSetting& setting : entry.settings) {
        if (!setting.field->copy(setting.policy->locate(&qos), setting.value)) {
            return false;
        }
    }
    return true;
}

bool matches_filter(const std::string& filter, const char* topic_name) {
    return topic_name != nullptr && matches(topic_name, filter, {'*', '?'});
}

template <typename Record>
bool apply(const QosProfile& profile, const char* topic_name, Record& qos) {
    for (const auto& entry : profile.entries<Record>()) {
        if (!entry->topic_filter && !apply(*entry, qos)) {
            return false;
        }
    }
    for (const auto& entry : profile.entries<Record>()) {
        if (entry->topic_filter && matches_filter(*entry->topic_filter, topic_name) &&
            !apply(*entry, qos)) {
            return false;
        }
    }
    return true;
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
DDS_ReturnCode_t ProfileStore::fill(const QosProfile& profile, const char* topic_name,
                                    Record& qos) const {
    std::vector<const QosProfile*> chain{&profile};
    while (chain.back()->base) {
        chain.push_back(find(*chain.back()->base));
    }
    std::reverse(chain.begin(), chain.end());
    OwnedQos<Record> result;
    for (const QosProfile* member : chain) {
        if (!apply(*member, topic_name, result.get())) {
            return DDS_RETCODE_OUT_OF_RESOURCES;
        }
    }
    return qos_record::copy(policies_of<Record>(), &qos, &result.get());
}

template DDS_ReturnCode_t ProfileStore::fill(const QosProfile&, const char*,
                                             DDS_DomainParticipantQos&) const;
template DDS_ReturnCode_t ProfileStore::fill(const QosProfile&, const char*, DDS_TopicQos&) const;
template DDS_ReturnCode_t ProfileStore::fill(const QosProfile&, const char*,
                                             DDS_PublisherQos&) const;
template DDS_ReturnCode_t ProfileStore::fill(const QosProfile&, const char*,
                                             DDS_SubscriberQos&) const;
template DDS_ReturnCode_t ProfileStore::fill(const QosProfile&, const char*,
                                             DDS_DataWriterQos&) const;
template DDS_ReturnCode_t ProfileStore::fill(const QosProfile&, const char*,
                                             DDS_DataReaderQos&) const;

}  // namespace pexa::dds
