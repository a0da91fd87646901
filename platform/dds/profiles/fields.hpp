/// @file profile_fields.hpp
/// @brief What elements a policy consists of in a profile document: a row for each.
#pragma once

#include <span>
#include <string_view>

#include "platform/dds/profiles/elements.hpp"

namespace pexa::dds {

/// A value of a policy. All records share the rows, because policies of the same name have the same
/// type.
struct FieldRow {
    std::string_view policy;   ///< name of the policy's element and of its member in the records
    std::string_view element;  ///< name of the value's element inside it
    /// Stores the value in a policy, or adds a fault.
    void (*read)(xml::Parser& faults, const Element& element, void* policy);
    /// Puts the value of one policy over that of another. @return false without memory
    bool (*copy)(void* policy, const void* from);
};

/// @return the rows of a policy, none for one that profiles cannot set.
[[nodiscard]] std::span<const FieldRow> fields_of(std::string_view policy);

}  // namespace pexa::dds
