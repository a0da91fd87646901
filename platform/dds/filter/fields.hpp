/// @file fields.hpp
/// @brief Finding the fields of a filter in an encoded sample.
#pragma once

#include <cstddef>
#include <span>

#include "platform/dds/filter/program.hpp"
#include "platform/internal/status.hpp"

namespace pexa::dds {

/// Walks an encoded sample along its type code and stores the values of a program's fields. Fields
/// that the sample lacks keep their values.
///
/// @param payload encapsulation header and members, in either byte order. Members of a mutable type
/// have headers. Texts in @p fields point into the payload.
/// @return error when it is not an encoding of the type
Status read_fields(const FilterProgram& program, std::span<const std::byte> payload,
                   FilterFields& fields) noexcept;

}  // namespace pexa::dds
