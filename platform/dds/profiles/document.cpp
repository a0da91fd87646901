#include "platform/dds/profiles/document.hpp"

#include <array>

#include "pexa/domain.h"
#include "platform/dds/profiles/values.hpp"
#include "platform/dds/xml/truth_value.hpp"

namespace pexa::dds {
namespace {

using Names = std::vector<std::string_view>;

constexpr std::string_view name_separator = "::";

/// @return the policies that profiles can set.
std::vector<const PolicyRow*> settable_policies(const PolicyTable& table) {
    std::vector<const PolicyRow*> rows;
    for (const PolicyRow& row : table.rows) {
        if (row.policy->change != Change::never) {
            rows.push_back(&row);
        }
    }
    return rows;
}

void read_policy(xml::Parser& faults, const Element& element, const PolicyRow& row, void* record,
                 std::vector<ProfileSetting>& settings) {
    const std::span<const PolicyMember> members = row.policy->members;
    Names names;
    for (const PolicyMember& member : members) {
        names.emplace_back(member.name);
    }
    check_attributes(faults, element);
    const DDS_Long faults_before = faults.fault_count();
    void* policy = row.locate(record);
    for_each_child(faults, element, names, Repetition::refused,
                   [&](const Element& child, std::size_t place) {
                       const PolicyMember& member = members[place];
                       read_value(faults, child, *member.type, member.locate(policy));
                       settings.push_back({&row, &member, policy});
                   });
    if (faults.fault_count() == faults_before) {
        if (const QosFault fault = row.policy->fault(policy)) {
            add_fault(faults, element, std::string("inconsistent policy: ") + fault.text.data());
        }
    }
}

template <typename Record>
void read_entry(xml::Parser& faults, const Element& element, QosProfile& profile) {
    static constexpr std::array<std::string_view, 1> topic_attributes{"topic_filter"};
    constexpr bool has_topic = !std::is_same_v<Record, DDS_DomainParticipantQos> &&
                               !std::is_same_v<Record, DDS_PublisherQos> &&
                               !std::is_same_v<Record, DDS_SubscriberQos>;
    check_attributes(faults, element,
                     std::span(topic_attributes).first(has_topic ? topic_attributes.size() : 0));
    auto entry = std::make_unique<ProfileEntry<Record>>();
    if (const std::string* filter = element.attribute("topic_filter")) {
        entry->topic_filter = *filter;
    }
    const std::vector<const PolicyRow*> policies = settable_policies(policies_of<Record>());
    Names names;
    for (const PolicyRow* row : policies) {
        names.emplace_back(row->name);
    }
    for_each_child(
        faults, element, names, Repetition::refused, [&](const Element& child, std::size_t place) {
            read_policy(faults, child, *policies[place], &entry->values.get(), entry->settings);
        });
    profile.entries<Record>().push_back(std::move(entry));
}

struct EntryElement {
    std::string_view name;
    void (*read)(xml::Parser& faults, const Element& element, QosProfile& profile);
};

constexpr std::array<EntryElement, 7> entry_elements{{
    {"domain_participant_qos", read_entry<DDS_DomainParticipantQos>},
    {"participant_qos", read_entry<DDS_DomainParticipantQos>},
    {"topic_qos", read_entry<DDS_TopicQos>},
    {"publisher_qos", read_entry<DDS_PublisherQos>},
    {"subscriber_qos", read_entry<DDS_SubscriberQos>},
    {"datawriter_qos", read_entry<DDS_DataWriterQos>},
    {"datareader_qos", read_entry<DDS_DataReaderQos>},
}};

constexpr auto entry_names = [] {
    std::array<std::string_view, entry_elements.size()> names;
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i] = entry_elements[i].name;
    }
    return names;
}();

/// Reads the profiles of one document.
class DocumentReader {
public:
    DocumentReader(xml::Parser& faults, ProfileStore& store) : faults_(faults), store_(store) {}

    void read(const Element& root) {
        for (const Element* child = first_child(root); child != nullptr;
             child = next_sibling(*child)) {
            if (std::string_view(child->tagName) == "qos_library") {
                read_library(*child);
            }
        }
        for (const auto& [name, profile] : profiles_) {
            if (const auto fault = store_.fault_of_bases(*profile)) {
                faults_.add_fault(profile->line, "qos_profile", *fault);
            }
        }
        if (default_) {
            store_.set_default_profile(default_);
        }
    }

private:
    /// @return the element's name attribute, empty after a fault.
    std::string name_of(const Element& element) {
        const std::string* name = element.attribute("name");
        if (name == nullptr || name->empty() || name->find(name_separator) != std::string::npos) {
            add_fault(faults_, element, "expected an attribute name, not empty and without ::");
            return {};
        }
        return *name;
    }

    void read_library(const Element& element) {
        static constexpr std::array<std::string_view, 1> attributes{"name"};
        static constexpr std::array<std::string_view, 1> children{"qos_profile"};
        check_attributes(faults_, element, attributes);
        const std::string library = name_of(element);
        for_each_child(faults_, element, children, Repetition::allowed,
                       [&](const Element& child, std::size_t) { read_profile(child, library); });
    }

    void read_profile(const Element& element, const std::string& library) {
        static constexpr std::array<std::string_view, 3> attributes{"name", "base_name",
                                                                    "is_default_qos"};
        check_attributes(faults_, element, attributes);
        const ProfileName name{library, name_of(element)};
        auto profile = std::make_shared<QosProfile>();
        profile->line = element.line;
        read_base(element, library, *profile);
        for_each_child(faults_, element, entry_names, Repetition::allowed,
                       [&](const Element& child, std::size_t place) {
                           entry_elements[place].read(faults_, child, *profile);
                       });
        if (name.profile.empty() || library.empty()) {
            return;
        }
        if (!profiles_.try_emplace({library, name.profile}, profile.get()).second) {
            add_fault(faults_, element, "expected a profile of this name once only");
            return;
        }
        if (store_.find(name) == nullptr && store_.size() == DDS_QOS_PROFILE_MAX_COUNT) {
            profiles_.erase({library, name.profile});
            add_fault(faults_, element,
                      "expected at most " + std::to_string(DDS_QOS_PROFILE_MAX_COUNT) +
                          " profiles altogether");
            return;
        }
        store_.put(name, std::move(profile));
        read_default(element, name);
    }

    void read_base(const Element& element, const std::string& library, QosProfile& profile) {
        const std::string* base = element.attribute("base_name");
        if (base == nullptr) {
            return;
        }
        const std::size_t separator = base->find(name_separator);
        profile.base = separator == std::string::npos
                           ? ProfileName{library, *base}
                           : ProfileName{base->substr(0, separator),
                                         base->substr(separator + name_separator.size())};
    }

    void read_default(const Element& element, const ProfileName& name) {
        const std::string* text = element.attribute("is_default_qos");
        if (text == nullptr) {
            return;
        }
        const auto is_default = xml::to_truth_value(*text);
        if (!is_default) {
            add_fault(faults_, element,
                      std::string("is_default_qos: ") + xml::truth_value_expected);
        } else if (*is_default && default_) {
            add_fault(faults_, element, "expected one default profile only");
        } else if (*is_default) {
            default_ = name;
        }
    }

    xml::Parser& faults_;
    ProfileStore& store_;
    std::map<std::pair<std::string, std::string>, const QosProfile*> profiles_;
    std::optional<ProfileName> default_;
};

}  // namespace

void add_profiles(xml::Parser& document, ProfileStore& store) {
    if (const Element* root = xml::as_plain(document.root())) {
        DocumentReader(document, store).read(*root);
    }
}

}  // namespace pexa::dds
