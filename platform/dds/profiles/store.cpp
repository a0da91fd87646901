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

std::string text_of(const BaseName& name) {
    std::string text;
    for (const std::string& part : name) {
        text += text.empty() ? part : "::" + part;
    }
    return text;
}

template <typename Record>
Inheritance<Record>::Inheritance(const ProfileStore& store, const QosProfile& profile,
                                 TopicChoice topic)
    : store_(store), topic_(topic), open_{&profile} {
    add(profile);
}

template <typename Record>
void Inheritance<Record>::add(const QosProfile& profile) {
    for (const BaseName& base : profile.bases) {
        add_base(profile, nullptr, base);
    }
    for (const bool has_filter : {false, true}) {
        for (const auto& entry : profile.entries<Record>()) {
            if (entry->topic_filter.has_value() == has_filter &&
                chooses(topic_, entry->topic_filter)) {
                add(profile, *entry);
            }
        }
    }
}

template <typename Record>
void Inheritance<Record>::add(const QosProfile& profile, const Entry& entry) {
    for (const BaseName& base : entry.bases) {
        add_base(profile, &entry, base);
    }
    entries_.push_back(&entry);
}

template <typename Record>
void Inheritance<Record>::add_base(const QosProfile& profile, const Entry* entry,
                                   const BaseName& name) {
    if (!fault_.empty()) {
        return;
    }
    const Base base = find(profile, entry, name);
    const std::string text =
        name.size() == 1 ? text_of(BaseName{profile.name.qos_library, name[0]}) : text_of(name);
    if (base.profile == nullptr) {
        fault_ = "unknown base " + text;
    } else if (std::find(open_.begin(), open_.end(), base.identity()) != open_.end()) {
        fault_ = "inherits from itself through " + text;
    } else if (base.profile != &profile && !base.profile->refusal.empty()) {
        fault_ = "its base " + text + " is refused: " + base.profile->refusal;
    } else if (bases_.size() == DDS_QOS_PROFILE_MAX_BASES) {
        fault_ = "has more than " + std::to_string(DDS_QOS_PROFILE_MAX_BASES) + " bases";
    } else {
        bases_.push_back(base.profile);
        open_.push_back(base.identity());
        if (base.entry != nullptr) {
            add(*base.profile, *base.entry);
        } else {
            add(*base.profile);
        }
        open_.pop_back();
    }
}

/// The innermost scope comes first, as in C++.
template <typename Record>
typename Inheritance<Record>::Base Inheritance<Record>::find(const QosProfile& profile,
                                                             const Entry* entry,
                                                             const BaseName& name) const {
    const auto entry_of = [&](const QosProfile* owner, const std::string& wanted) -> Base {
        if (entry == nullptr || owner == nullptr) {
            return {};
        }
        const auto& entries = owner->entries<Record>();
        const auto found = std::find_if(entries.begin(), entries.end(), [&](const auto& each) {
            return each->name == wanted && each.get() != entry;
        });
        return found != entries.end() ? Base{owner, found->get()} : Base{};
    };
    const std::string& library = profile.name.qos_library;
    if (name.size() == 3) {
        return entry_of(store_.find({name[0], name[1]}), name[2]);
    }
    if (name.size() == 2) {
        const QosProfile* found = store_.find({name[0], name[1]});
        return found != nullptr ? Base{found} : entry_of(store_.find({library, name[0]}), name[1]);
    }
    const Base sibling = entry_of(&profile, name[0]);
    return sibling.profile != nullptr ? sibling : Base{store_.find({library, name[0]})};
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

void ProfileStore::put(std::shared_ptr<const QosProfile> profile) {
    const ProfileName& name = profile->name;
    if (default_ == name) {
        default_.reset();
    }
    auto& place = libraries_[name.qos_library][name.profile];
    place = std::move(profile);
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
