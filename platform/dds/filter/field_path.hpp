/// @file field_path.hpp
/// @brief From a dotted name to a member of a type.
#pragma once

#include "platform/dds/filter/fault.hpp"
#include "platform/dds/filter/program.hpp"

namespace pexa::dds {

/// @param path names of members with dots between them; "_d" is the discriminator of a union
/// @param known is set to the number of characters of @p path that lead somewhere
/// @return the type of the member, or NULL when there is none
const DDS_TypeCode* find_field(const DDS_TypeCode& type, std::string_view path, std::size_t& known);

/// Adds a field to the program, once however often it is asked for.
///
/// @param path a field that find_field() finds in the program's type
/// @param place where the fault is when the program is full
Success add_field(FilterProgram& program, std::string_view path, const FilterPlace& place,
                  OperandIndex& field, FilterFault& fault);

}  // namespace pexa::dds
