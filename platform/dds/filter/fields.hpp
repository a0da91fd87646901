/// @file content_filter_fields.hpp
/// @brief Finding the fields of a filter in an encoded sample.
#pragma once

#include <cstddef>
#include <span>

#include "platform/dds/filter/program.hpp"

namespace pexa::dds {

/// Walks an encoded sample through its type code and picks out the values of a program's fields;
/// fields that the sample lacks keep what they are.
///
/// @param payload encapsulation header and members, plain or with member headers as the type's
/// extensibility has it, in either byte order; texts in @p fields point into it
/// @return false when it is not an encoding of the type
[[nodiscard]] bool read_fields(const FilterProgram& program, std::span<const std::byte> payload,
                               FilterFields& fields) noexcept;

}  // namespace pexa::dds
