/// @file domain_trace.hpp
/// @brief The trace categories of running domains.
///
/// Cyclone reads a domain's categories from its configuration when the domain starts and has no
/// operation to change them. They stand in a record that is reached through a registered type, so
/// a domain follows the mask from its first topic on.
#pragma once

#include <dds/ddsi/ddsi_sertype.h>

#include <cstdint>

namespace pexa::engine::cyclone {

/// Notes a type, whose domain follows the mask once the type is registered. May throw
/// std::bad_alloc.
void note_type(const ddsi_sertype* type);

/// Brings the domain of a type that was just registered in line.
void follow_trace_mask(const ddsi_sertype* type);

/// To be called before a type is freed, while its domain still exists.
void forget_domain_of(const ddsi_sertype* type);

/// @param mask Cyclone's bits
void set_trace_mask(std::uint32_t mask);

}  // namespace pexa::engine::cyclone
