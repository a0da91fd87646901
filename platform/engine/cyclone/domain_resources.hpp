/// @file domain_resources.hpp
/// @brief What a domain takes of the process's limits.
///
/// Where Cyclone finds too few descriptors or threads while it starts a domain, it ends the
/// process.
#pragma once

#include <dds/dds.h>

namespace pexa::engine::cyclone {

/// Takes for a moment what Cyclone takes when it starts a domain. Does nothing when the domain has
/// participants in this process already.
///
/// @return whether all of it was there; if not, a line on the standard error says what was missing
bool has_resources_for(dds_domainid_t domain);

}  // namespace pexa::engine::cyclone
