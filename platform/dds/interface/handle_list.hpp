/// @file handle_list.hpp
/// @brief Peers of an endpoint in a sequence of handles.
#pragma once

#include <vector>

#include "platform/dds/listeners/status_conversion.hpp"

namespace pexa::dds {

/// Replaces the content of a sequence by the handles of @p peers.
/// @return OK, or OUT_OF_RESOURCES: no memory, or a lent buffer that is too small
[[nodiscard]] DDS_ReturnCode_t store_handles(const std::vector<engine::LocalHandle>& peers,
                                             DDS_InstanceHandleSeq& handles,
                                             const PeerLookup& lookup);

}  // namespace pexa::dds
