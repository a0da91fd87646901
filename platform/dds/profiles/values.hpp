/// @file values.hpp
/// @brief Policy values as profile documents write them.
#pragma once

#include "platform/dds/profiles/elements.hpp"
#include "platform/dds/qos/policy.hpp"

namespace pexa::dds {

/// What the name of an octets' element may end with.
inline constexpr std::string_view base64_suffix = "B64";

/// Stores the value of an element, or adds a fault. May throw std::bad_alloc.
///
/// Enumerators may lack "DDS_" and the suffix of their enumeration. A duration is
/// DURATION_INFINITY, or consists of `sec` and `nanosec`; a missing element counts as 0. Octets are
/// numbers with commas between, or base64; in an element whose name ends with base64_suffix always
/// base64. Strings and properties stand in an `element` each, a property's `name` and `value`
/// inside it.
///
/// @param value initialised, of that type
void read_value(xml::Parser& faults, const Element& element, const ValueType& type, void* value);

/// Puts a value over another value. Properties are added to the properties that are there, and
/// replace those of the same name; any other value is replaced.
/// @return out_of_resources without memory
Status put_over(const ValueType& type, void* value, const void* from);

}  // namespace pexa::dds
