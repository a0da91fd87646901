#include "platform/dds/profiles/document.hpp"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "pexa/domain.h"
#include "platform/dds/profiles/consistency.hpp"
#include "platform/dds/profiles/fixed_policies.hpp"
#include "platform/dds/profiles/values.hpp"
#include "platform/dds/xml/truth_value.hpp"

namespace pexa::dds {
namespace {

using Names = std::vector<std::string_view>;

constexpr std::string_view library_element = "qos_library";
constexpr std::string_view profile_element = "qos_profile";
constexpr std::string_view default_attribute = "is_default_qos";
constexpr std::string_view base_element = "base_name";
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

void add_base(xml::Parser& faults, const Element& element, std::string_view text,
              std::vector<BaseName>& bases) {
    constexpr std::size_t most_parts = 3;
    BaseName name;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(name_separator);
        name.emplace_back(text.substr(0, end));
        text.remove_prefix(end != std::string_view::npos ? end + name_separator.size() : 0);
    }
    if (name.size() <= most_parts && std::find(name.begin(), name.end(), "") == name.end()) {
        bases.push_back(std::move(name));
    } else {
        add_fault(faults, element, "base_name: expected names of the form library::profile");
    }
}

/// Reads the attribute base_name, whose names stand between commas or white space.
void read_base_attribute(xml::Parser& faults, const Element& element,
                         std::vector<BaseName>& bases) {
    const std::string* attribute = element.attribute(base_element);
    if (attribute == nullptr) {
        return;
    }
    constexpr std::string_view separators = ", \t\r\n";
    const std::string_view text = *attribute;
    std::size_t begin = text.find_first_not_of(separators);
    if (begin == std::string_view::npos) {
        add_base(faults, element, "", bases);
    }
    while (begin != std::string_view::npos) {
        const std::size_t end = text.find_first_of(separators, begin);
        add_base(faults, element, text.substr(begin, end - begin), bases);
        begin = text.find_first_not_of(separators, end);
    }
}

/// Reads an element base_name, with an element for each name.
void read_base_element(xml::Parser& faults, const Element& element, std::vector<BaseName>& bases) {
    static constexpr std::array<std::string_view, 1> names{"element"};
    check_attributes(faults, element);
    for_each_child(faults, element, names, Repetition::allowed,
                   [&](const Element& child, std::size_t) {
                       add_base(faults, child, text_of(faults, child), bases);
                   });
}

/// Sizes that others allocate in advance. Nothing depends on them here.
constexpr std::array<std::string_view, 2> initial_sizes{"initial_samples", "initial_instances"};
/// Another name of the octets of a policy.
constexpr std::string_view base64_octets = "valueB64";
static_assert(base64_octets.ends_with(base64_suffix));

void read_policy(xml::Parser& faults, const Element& element, const PolicyRow& row, void* record,
                 std::vector<ProfileSetting>& settings) {
    const std::span<const PolicyMember> members = row.policy->members;
    Names names;
    for (const PolicyMember& member : members) {
        names.emplace_back(member.name);
    }
    const bool is_octets = members.front().type->kind == ValueKind::octets;
    if (is_octets) {
        names.push_back(base64_octets);
    } else if (std::string_view(row.name) == "resource_limits") {
        names.insert(names.end(), initial_sizes.begin(), initial_sizes.end());
    }
    check_attributes(faults, element);
    void* policy = row.locate(record);
    for_each_child(faults, element, names, Repetition::refused,
                   [&](const Element& child, std::size_t place) {
                       if (place >= members.size() && !is_octets) {
                           DDS_Long size = 0;
                           return read_value(faults, child, *members.front().type, &size);
                       }
                       const PolicyMember& member = is_octets ? members.front() : members[place];
                       read_value(faults, child, *member.type, member.locate(policy));
                       settings.push_back({&row, &member, policy, element.line});
                   });
}

/// @return the element's name attribute, empty after a fault.
std::string name_of(xml::Parser& faults, const Element& element) {
    const std::string* name = element.attribute("name");
    if (name == nullptr || name->empty() || name->find(name_separator) != std::string::npos) {
        add_fault(faults, element, "expected an attribute name, not empty and without ::");
        return {};
    }
    return *name;
}

template <typename Record>
void read_attributes(xml::Parser& faults, const Element& element, const QosProfile& profile,
                     ProfileEntry<Record>& entry) {
    static constexpr std::array<std::string_view, 3> names{"name", base_element, "topic_filter"};
    check_attributes(faults, element,
                     std::span(names).first(names.size() - (is_of_topics<Record> ? 0 : 1)));
    if (const std::string* filter = element.attribute("topic_filter")) {
        entry.topic_filter = *filter;
    }
    read_base_attribute(faults, element, entry.bases);
    if (element.attribute("name") == nullptr) {
        return;
    }
    entry.name = name_of(faults, element);
    const auto& others = profile.entries<Record>();
    if (std::any_of(others.begin(), others.end(),
                    [&](const auto& other) { return other->name == entry.name; })) {
        add_fault(faults, element, "expected an element of this name once only");
    }
}

template <typename Record>
void read_entry(xml::Parser& faults, const Element& element, QosProfile& profile) {
    auto entry = std::make_unique<ProfileEntry<Record>>();
    read_attributes(faults, element, profile, *entry);
    const std::vector<const PolicyRow*> policies = settable_policies(policies_of<Record>());
    const std::span<const FixedPolicy> fixed = fixed_policies<Record>();
    Names names;
    for (const PolicyRow* row : policies) {
        names.emplace_back(row->name);
    }
    for (const FixedPolicy& policy : fixed) {
        names.push_back(policy.name);
    }
    names.push_back(base_element);
    for_each_child(
        faults, element, names, Repetition::refused, [&](const Element& child, std::size_t place) {
            if (place < policies.size()) {
                read_policy(faults, child, *policies[place], &entry->values.get(), entry->settings);
            } else if (place < policies.size() + fixed.size()) {
                check_fixed_policy(faults, child, fixed[place - policies.size()]);
            } else {
                read_base_element(faults, child, entry->bases);
            }
        });
    profile.entries<Record>().push_back(std::move(entry));
}

struct EntryElement {
    std::string_view name;
    void (*read)(xml::Parser& faults, const Element& element, QosProfile& profile);
};

template <typename Record>
constexpr EntryElement entry_element{element_of_kind<Record>, read_entry<Record>};

constexpr std::array<EntryElement, 8> entry_elements{{
    entry_element<DDS_DomainParticipantQos>,
    {"domainparticipant_qos", read_entry<DDS_DomainParticipantQos>},
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
    return element.tagName == profile_element ||
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

char without_case(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// @return how many characters must be added, removed or replaced to make one text of the other,
/// whatever their case
std::size_t distance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced =
                diagonal + (without_case(left[i]) == without_case(right[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

/// @return whether the name is a likely misspelling of the library's.
bool resembles_library(std::string_view name) {
    constexpr std::size_t most_slips = 2;
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

    void read_library(const Element& element) {
        static constexpr std::array<std::string_view, 1> attributes{"name"};
        check_attributes(faults_, element, attributes);
        const std::string library = name_of(faults_, element);
        Names children{profile_element};
        children.insert(children.end(), entry_names.begin(), entry_names.end());
        for_each_child(
            faults_, element, children, Repetition::allowed,
            [&](const Element& child, std::size_t place) {
                const DDS_Long faults_before = faults_.fault_count();
                auto profile = std::make_shared<QosProfile>();
                // The reader of an entry judges its name; one without a name is judged here.
                const std::string* name = place == 0 ? nullptr : child.attribute("name");
                profile->name = {library, name != nullptr ? *name : name_of(faults_, child)};
                if (place == 0) {
                    read_profile(child, *profile);
                } else {
                    // An entry by itself is a profile of this one entry.
                    entry_elements[place - 1].read(faults_, child, *profile);
                }
                if (!profile->name.profile.empty() && !library.empty()) {
                    enter(child, profile);
                    refuse_after(faults_before, *profile);
                }
            });
    }

    void read_profile(const Element& element, QosProfile& profile) {
        static constexpr std::array<std::string_view, 3> attributes{"name", base_element,
                                                                    default_attribute};
        check_attributes(faults_, element, attributes);
        read_base_attribute(faults_, element, profile.bases);
        Names children(entry_names.begin(), entry_names.end());
        children.push_back(base_element);
        for_each_child(faults_, element, children, Repetition::allowed,
                       [&](const Element& child, std::size_t place) {
                           if (place < entry_elements.size()) {
                               entry_elements[place].read(faults_, child, profile);
                           } else {
                               read_base_element(faults_, child, profile.bases);
                           }
                       });
    }

    void enter(const Element& element, const std::shared_ptr<QosProfile>& profile) {
        const ProfileName& name = profile->name;
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
        store_.put(profile);
        unjudged_.emplace(profile.get(), ReadProfile{&element, profile});
        read_default(element, name);
    }

    void read_default(const Element& element, const ProfileName& name) {
        const std::string* text = element.attribute(default_attribute);
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
            // The farthest ones come first, so that calls do not nest as deep as bases do.
            const auto& bases = inherited.bases();
            for (auto base = bases.rbegin(); base != bases.rend(); ++base) {
                judge(*base);
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
