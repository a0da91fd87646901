#include "platform/dds/profiles/store.hpp"

#include <algorithm>

#include "pexa/domain.h"
#include "platform/dds/interface/wildcard.hpp"
#include "platform/dds/profiles/values.hpp"

namespace pexa::dds {
namespace {

template <typename Record>
Status put_over(const ProfileEntry<Record>& entry, Record& qos) {
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

bool chooses(const TopicChoice& topic, const std::optional<std::string>& filter) {
    return !filter || topic.any ||
           (topic.name != nullptr && matches(topic.name, *filter, {'*', '?'}));
}

}  // namespace

std::string text_of(const ProfileName& name) {
    return name.qos_library + "::" + name.profile;
}

template <typename Record>
Inheritance<Record>::Inheritance(const ProfileStore& store, const QosProfile& profile,
                                 TopicChoice topic)
    : store_(store), derived_(profile), topic_(topic) {
    add(profile);
}

template <typename Record>
void Inheritance<Record>::add(const QosProfile& profile) {
    if (profile.base) {
        add_base(*profile.base);
    }
    for (const bool has_filter : {false, true}) {
        for (const auto& entry : profile.entries<Record>()) {
            if (entry->topic_filter.has_value() == has_filter &&
                chooses(topic_, entry->topic_filter)) {
                entries_.push_back(entry.get());
            }
        }
    }
}

template <typename Record>
void Inheritance<Record>::add_base(const ProfileName& name) {
    const QosProfile* base = store_.find(name);
    if (!fault_.empty()) {
        return;
    }
    if (base == nullptr) {
        fault_ = "unknown base " + text_of(name);
    } else if (base == &derived_) {
        fault_ = "inherits from itself through " + text_of(name);
    } else if (!base->refusal.empty()) {
        fault_ = "its base " + text_of(name) + " is refused: " + base->refusal;
    } else if (bases_.size() == DDS_QOS_PROFILE_MAX_BASES) {
        fault_ =
            "inherits through more than " + std::to_string(DDS_QOS_PROFILE_MAX_BASES) + " profiles";
    } else {
        bases_.push_back(base);
        add(*base);
    }
}

template <typename Record>
Status Inheritance<Record>::apply(Record& qos) const {
    for (const ProfileEntry<Record>* entry : entries_) {
        const Status applied = put_over(*entry, qos);
        if (applied != Status::ok) {
            return applied;
        }
    }
    return Status::ok;
}

template class Inheritance<DDS_DomainParticipantQos>;
template class Inheritance<DDS_TopicQos>;
template class Inheritance<DDS_PublisherQos>;
template class Inheritance<DDS_SubscriberQos>;
template class Inheritance<DDS_DataWriterQos>;
template class Inheritance<DDS_DataReaderQos>;

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

std::string ProfileStore::fault_of_bases(const QosProfile& profile) const {
    std::string fault;
    for_each_kind([&]<typename Record>() {
        if (fault.empty()) {
            fault = Inheritance<Record>(*this, profile, {.any = true}).fault();
        }
    });
    return fault;
}

std::string ProfileStore::refusal(const QosProfile& profile) const {
    return profile.refusal.empty() ? fault_of_bases(profile) : profile.refusal;
}

template <typename Record>
Status ProfileStore::fill(const QosProfile& profile, const char* topic_name, Record& qos) const {
    OwnedQos<Record> result;
    const Status applied =
        Inheritance<Record>(*this, profile, {.name = topic_name}).apply(result.get());
    return applied == Status::ok ? qos_record::copy(policies_of<Record>(), &qos, &result.get())
                                 : applied;
}

template Status ProfileStore::fill(const QosProfile&, const char*, DDS_DomainParticipantQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_TopicQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_PublisherQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_SubscriberQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_DataWriterQos&) const;
template Status ProfileStore::fill(const QosProfile&, const char*, DDS_DataReaderQos&) const;

}  // namespace pexa::dds
