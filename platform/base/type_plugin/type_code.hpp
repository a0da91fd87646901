/// @file type_code.hpp
/// @brief Members of type codes.
#pragma once

#include "pexa/typecode.h"

namespace pexa::base {

/// @name Finding a member
/// @return NULL when there is none.
/// @{
const DDS_TypeCodeMember* find_member(const DDS_TypeCode* type, const char* name);
const DDS_TypeCodeMember* find_member(const DDS_TypeCode* type, DDS_Long id);
/// @}

}  // namespace pexa::base
