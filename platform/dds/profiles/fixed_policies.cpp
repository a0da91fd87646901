#include "platform/dds/profiles/fixed_policies.hpp"

#include <algorithm>
#include <array>

#include "pexa/qos.h"
#include "platform/dds/xml/truth_value.hpp"

namespace pexa::dds {
namespace {

constexpr std::array<std::string_view, 1> yes{"true"};
constexpr std::array<std::string_view, 1> no{"false"};
constexpr std::array<std::string_view, 2> yes_or_no{"true", "false"};
constexpr std::array<std::string_view, 1> coercion{"ALLOW_TYPE_COERCION"};
constexpr std::array<std::string_view, 2> encodings{"XCDR_DATA_REPRESENTATION", "XCDR"};

constexpr std::array<FixedMember, 1> representation_members{{{"value", encodings, true}}};
constexpr std::array<FixedMember, 6> type_consistency_members{{
    {"kind", coercion},
    {"ignore_sequence_bounds", yes},
    {"ignore_string_bounds", yes},
    {"ignore_member_names", yes_or_no},
    {"prevent_type_widening", no},
    {"force_type_validation", no},
}};

/// The first is of all kinds with a topic, the others are of readers only.
constexpr std::array<FixedPolicy, 2> policies{{
    {"representation", representation_members, "samples are encoded in XCDR version 1"},
    {"type_consistency", type_consistency_members, "types are not compared, only their names"},
}};

bool is_accepted(const FixedMember& member, std::string_view text) {
    constexpr std::string_view prefix = "DDS_";
    text.remove_prefix(text.starts_with(prefix) ? prefix.size() : 0);
    const auto truth = xml::to_truth_value(text);
    return std::any_of(member.accepted.begin(), member.accepted.end(), [&](std::string_view each) {
        return each == text || (truth && xml::to_truth_value(each) == truth);
    });
}

void check_value(xml::Parser& faults, const Element& element, const FixedPolicy& policy,
                 const FixedMember& member) {
    if (!is_accepted(member, text_of(faults, element))) {
        add_fault(faults, element,
                  "expected " + std::string(member.accepted[0]) + ": " + policy.reason);
    }
}

}  // namespace

std::span<const FixedPolicy> fixed_policies_of(bool is_of_topics, bool is_of_readers) {
    const std::span<const FixedPolicy> all = policies;
    return all.first(is_of_readers ? all.size() : is_of_topics ? 1 : 0);
}

void check_fixed_policy(xml::Parser& faults, const Element& element, const FixedPolicy& policy) {
    static constexpr std::array<std::string_view, 1> list_element{"element"};
    std::vector<std::string_view> names;
    for (const FixedMember& member : policy.members) {
        names.push_back(member.name);
    }
    check_attributes(faults, element);
    for_each_child(faults, element, names, Repetition::refused,
                   [&](const Element& child, std::size_t place) {
                       const FixedMember& member = policy.members[place];
                       if (!member.is_list) {
                           return check_value(faults, child, policy, member);
                       }
                       check_attributes(faults, child);
                       for_each_child(faults, child, list_element, Repetition::allowed,
                                      [&](const Element& each, std::size_t) {
                                          check_value(faults, each, policy, member);
                                      });
                   });
}

}  // namespace pexa::dds
