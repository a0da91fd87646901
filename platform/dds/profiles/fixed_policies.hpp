/// @file fixed_policies.hpp
/// @brief Policies that the DDS standards know and the port has no choice in. A profile may say
/// what is so anyway.
#pragma once

#include "platform/dds/profiles/elements.hpp"

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

/// @return the fixed policies of a kind of entity.
template <typename Record>
std::span<const FixedPolicy> fixed_policies();

/// Adds a fault for each value that would change something.
void check_fixed_policy(xml::Parser& faults, const Element& element, const FixedPolicy& policy);

}  // namespace pexa::dds
