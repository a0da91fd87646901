/// @file profile_document.hpp
/// @brief From a document to profiles.
#pragma once

#include "platform/dds/profiles/store.hpp"
#include "platform/dds/xml/parser.hpp"

namespace pexa::dds {

/// Adds the profiles of a parsed document to a store, in place of earlier ones of the same name.
/// After a fault the store has some of them and is of no use.
///
/// @param document gets the faults of the contents
void add_profiles(xml::Parser& document, ProfileStore& store);

}  // namespace pexa::dds
