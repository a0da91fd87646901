#include "platform/dds/profiles/document.hpp"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "pexa/domain.h"
#include "platform/dds/profiles/consistency.hpp"
#include "platform/dds/profiles/values.hpp"
#include "platform/dds/xml/truth_value.hpp"

namespace pexa::dds {
namespace {

using Names = std::vector<std::string_view>;

constexpr std::string_view library_element = "qos_library";
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
    Names names;
    for (const PolicyMember& member : row.policy->members) {
        names.emplace_back(member.name);
    }
    check_attributes(faults, element);
    void* policy = row.locate(record);
    for_each_child(faults, element, names, Repetition::refused,
                   [&](const Element& child, std::size_t place) {
                       const PolicyMember& member = row.policy->members[place];
                       read_value(faults, child, *member.type, member.locate(policy));
                       settings.push_back({&row, &member, policy, element.line});
                   });
}

template <typename Record>
void read_entry(xml::Parser& faults, const Element& element, QosProfile& profile) {
    static constexpr std::array<std::string_view, 1> topic_attributes{"topic_filter"};
    check_attributes(
        faults, element,
        std::span(topic_attributes).first(is_of_topics<Record> ? topic_attributes.size() : 0));
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

template <typename Record>
constexpr EntryElement entry_element{element_of_kind<Record>, read_entry<Record>};

constexpr std::array<EntryElement, 7> entry_elements{{
    entry_element<DDS_DomainParticipantQos>,
    {"participant_qos", read_entry<DDS_DomainParticipantQos>},
    entry_element<DDS_TopicQos>,
    entry_element<DDS_PublisherQos>,
    entry_element<DDS_SubscriberQos>,
    entry_element<DDS_DataWriterQos>,
    entry_element<DDS_DataReaderQos>,
}};

constexpr auto entry_names = [] {
    std::array<std::string_view, entry_elements.size()> names;
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i] = entry_elements[i].name;
    }
    return names;
}();

bool is_profile(const Element& element) {
    return std::string_view(element.tagName) == "qos_profile" ||
           std::find(entry_names.begin(), entry_names.end(), element.tagName) != entry_names.end();
}

bool contains_profile(const Element& element) {
    for (const Element* child = first_child(element); child != nullptr;
         child = next_sibling(*child)) {
        if (is_profile(*child)) {
            return true;
        }
    }
    return false;
}

/// @return how many characters must be added, removed or replaced to make one text of the other.
std::size_t distance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

/// @return whether the name is a likely misspelling of the library's.
bool resembles_library(std::string_view name) {
    constexpr std::size_t most_slips = 3;
    return name.size() <= library_element.size() + most_slips &&
           distance(name, library_element) <= most_slips;
}

/// Reads the profiles of one document.
class DocumentReader {
public:
    DocumentReader(xml::Parser& faults, ProfileStore& store) : faults_(faults), store_(store) {}

    /// @return false after too many profiles
    bool read(const Element& root) {
        for (const Element* child = first_child(root); child != nullptr;
             child = next_sibling(*child)) {
            if (std::string_view(child->tagName) == library_element) {
                read_library(*child);
            } else {
                check_foreign(*child);
            }
        }
        for (const auto& [name, profile] : profiles_) {
            judge(profile.get());
        }
        if (default_) {
            store_.set_default_profile(default_);
        }
        return !has_too_many_;
    }

private:
    struct ReadProfile {
        const Element* element;
        std::shared_ptr<QosProfile> profile;
    };

    /// Other elements beside the libraries are for others, unless they are likely to be mistakes.
    void check_foreign(const Element& element) {
        if (is_profile(element)) {
            add_fault(faults_, element,
                      "expected inside qos_library, without which no entity can ask for it");
        } else if (resembles_library(element.tagName) || contains_profile(element)) {
            add_fault(faults_, element,
                      "unknown element, its profiles are not read: expected "
                      "qos_library");
        }
    }

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
        const DDS_Long faults_before = faults_.fault_count();
        check_attributes(faults_, element, attributes);
        const ProfileName name{library, name_of(element)};
        auto profile = std::make_shared<QosProfile>();
        read_base(element, library, *profile);
        for_each_child(faults_, element, entry_names, Repetition::allowed,
                       [&](const Element& child, std::size_t place) {
                           entry_elements[place].read(faults_, child, *profile);
                       });
        if (name.profile.empty() || library.empty()) {
            return;
        }
        enter(element, name, profile);
        refuse_after(faults_before, *profile);
    }

    void enter(const Element& element, const ProfileName& name,
               const std::shared_ptr<QosProfile>& profile) {
        const auto [place, is_new] =
            profiles_.try_emplace({name.qos_library, name.profile}, profile);
        if (!is_new) {
            const DDS_Long faults_before = faults_.fault_count();
            add_fault(faults_, element, "expected a profile of this name once only");
            return refuse_after(faults_before, *place->second);
        }
        if (store_.find(name) == nullptr && store_.size() == DDS_QOS_PROFILE_MAX_COUNT) {
            if (!std::exchange(has_too_many_, true)) {
                add_fault(faults_, element,
                          "expected at most " + std::to_string(DDS_QOS_PROFILE_MAX_COUNT) +
                              " profiles altogether");
            }
            return;
        }
        store_.put(name, profile);
        unjudged_.emplace(profile.get(), ReadProfile{&element, profile});
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

    /// Refuses a profile if a fault has been added.
    void refuse_after(DDS_Long faults_before, QosProfile& profile) {
        if (faults_.fault_count() == faults_before || !profile.refusal.empty()) {
            return;
        }
        DDS_XMLError fault{};
        profile.refusal = "its file has too many faults";
        if (faults_.get_fault(faults_before, fault) == Status::ok) {
            profile.refusal = text_of(fault);
        }
    }

    /// Refuses a profile of this document that cannot be used with its bases. A base comes before
    /// those who inherit from it, so that each fault is found where it begins.
    void judge(const QosProfile* read) {
        const auto node = unjudged_.extract(read);
        if (node.empty()) {
            return;
        }
        const auto& [element, profile] = node.mapped();
        for_each_kind([&]<typename Record>() {
            const Inheritance<Record> inherited(store_, *read, {.any = true});
            for (const QosProfile* base : inherited.bases()) {
                judge(base);
            }
        });
        const DDS_Long faults_before = faults_.fault_count();
        const std::string fault = store_.fault_of_bases(*profile);
        if (!fault.empty()) {
            add_fault(faults_, *element, fault);
        } else if (profile->refusal.empty()) {
            check_consistency(faults_, *element, store_, *profile);
        }
        refuse_after(faults_before, *profile);
    }

    xml::Parser& faults_;
    ProfileStore& store_;
    std::map<std::pair<std::string, std::string>, std::shared_ptr<QosProfile>> profiles_;
    std::map<const QosProfile*, ReadProfile> unjudged_;
    std::optional<ProfileName> default_;
    bool has_too_many_ = false;
};

}  // namespace

bool add_profiles(xml::Parser& document, ProfileStore& store) {
    const Element* root = xml::as_plain(document.root());
    return !document.has_failed() && root != nullptr && DocumentReader(document, store).read(*root);
}

}  // namespace pexa::dds
