/// @file document.hpp
/// @brief Profiles out of a document.
#pragma once

#include "platform/dds/profiles/store.hpp"
#include "platform/dds/xml/parser.hpp"

namespace pexa::dds {

/// Adds the profiles of a parsed document to a store. They replace profiles of the same name. After
/// a fault the store is incomplete and of no use.
///
/// @param document gets the faults of the contents
void add_profiles(xml::Parser& document, ProfileStore& store);

}  // namespace pexa::dds
