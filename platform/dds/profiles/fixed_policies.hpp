/// @file fixed_policies.hpp
/// @brief Policies that the DDS standards know and the port has no choice in. A profile may say
/// what is so anyway.
#pragma once

#include <type_traits>

#include "platform/dds/profiles/elements.hpp"
#include "platform/dds/profiles/kinds.hpp"

namespace pexa::dds {

/// A member with the values that change nothing.
struct FixedMember {
    std::string_view name;
    std::span<const std::string_view> accepted;
    bool is_list = false;
};

struct FixedPolicy {
    std::string_view name;
    std::span<const FixedMember> members;
    const char* reason;  ///< why there is no choice
};

std::span<const FixedPolicy> fixed_policies_of(bool is_of_topics, bool is_of_readers);

/// @return the fixed policies of a kind of entity.
template <typename Record>
std::span<const FixedPolicy> fixed_policies() {
    return fixed_policies_of(is_of_topics<Record>, std::is_same_v<Record, DDS_DataReaderQos>);
}

/// Adds a fault for each value that would change something.
void check_fixed_policy(xml::Parser& faults, const Element& element, const FixedPolicy& policy);

}  // namespace pexa::dds
