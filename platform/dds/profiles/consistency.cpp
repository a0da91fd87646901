#include "platform/dds/profiles/consistency.hpp"

#include <algorithm>
#include <new>
#include <set>

namespace pexa::dds {
namespace {

/// @return a topic's name that the filter matches.
std::string name_for(std::string filter) {
    std::erase(filter, '*');
    std::replace(filter.begin(), filter.end(), '?', 'x');
    return filter;
}

template <typename Record>
std::set<std::string> filters_of(const ProfileStore& store, const QosProfile& profile) {
    std::set<std::string> filters;
    const Inheritance<Record> all(store, profile, {.any = true});
    for (const ProfileEntry<Record>* entry : all.entries()) {
        if (entry->topic_filter) {
            filters.insert(*entry->topic_filter);
        }
    }
    return filters;
}

/// @return the profile's own setting that came last of those of the policies at fault, or NULL.
template <typename Record>
const ProfileSetting* last_cause(const QosProfile& profile, const Inheritance<Record>& inherited,
                                 const QosFault& fault) {
    const ProfileSetting* cause = nullptr;
    for (const ProfileEntry<Record>* entry : inherited.entries()) {
        const auto& own = profile.entries<Record>();
        const bool is_own = std::any_of(own.begin(), own.end(),
                                        [&](const auto& each) { return each.get() == entry; });
        for (const ProfileSetting& setting : entry->settings) {
            if (is_own && std::find(fault.policies.begin(), fault.policies.end(),
                                    setting.row->name) != fault.policies.end()) {
                cause = &setting;
            }
        }
    }
    return cause;
}

/// @param filter NULL for entities whose topic matches none
/// @return whether there is no fault
template <typename Record>
bool check_kind(xml::Parser& faults, const Element& element, const ProfileStore& store,
                const QosProfile& profile, const std::string* filter) {
    const std::string topic = filter != nullptr ? name_for(*filter) : std::string();
    const Inheritance<Record> inherited(store, profile,
                                        {.name = filter != nullptr ? topic.c_str() : nullptr});
    OwnedQos<Record> qos;
    if (inherited.apply(qos.get()) != Status::ok) {
        throw std::bad_alloc();
    }
    const QosFault fault = fault_of_qos(qos.get());
    if (!fault) {
        return true;
    }
    std::string message(element_of_kind<Record>);
    if (filter != nullptr) {
        message.append(" with topic_filter ").append(*filter);
    }
    message.append(" has inconsistent ").append(fault.text.data());
    if (const ProfileSetting* cause = last_cause(profile, inherited, fault)) {
        faults.add_fault(cause->line, cause->row->name, message);
    } else {
        add_fault(faults, element, message);
    }
    return false;
}

}  // namespace

void check_consistency(xml::Parser& faults, const Element& element, const ProfileStore& store,
                       const QosProfile& profile) {
    for_each_kind([&]<typename Record>() {
        if (!check_kind<Record>(faults, element, store, profile, nullptr)) {
            return;
        }
        for (const std::string& filter : filters_of<Record>(store, profile)) {
            if (!check_kind<Record>(faults, element, store, profile, &filter)) {
                return;
            }
        }
    });
}

}  // namespace pexa::dds
