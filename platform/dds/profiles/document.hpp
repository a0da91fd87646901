/// @file document.hpp
/// @brief Profiles out of a document.
#pragma once

#include "platform/dds/profiles/store.hpp"
#include "platform/dds/xml/parser.hpp"

namespace pexa::dds {

/// Adds the profiles of a parsed document to a store. They replace profiles of the same name. A
/// profile with a fault is entered as a refused one.
///
/// @param document gets the faults of the contents
/// @return whether the store is of use: false for a document that could not be read, or that has
/// too
///   many profiles
bool add_profiles(xml::Parser& document, ProfileStore& store);

}  // namespace pexa::dds
