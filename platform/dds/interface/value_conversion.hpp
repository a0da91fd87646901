/// @file value_conversion.hpp
/// @brief Times, handles, masks and sample infos between the C interface and the engine.
#pragma once

#include <optional>

#include "pexa/subscription.h"
#include "platform/engine/type.hpp"

namespace pexa::dds {

/// @return the handle made of a key hash or a GUID.
DDS_InstanceHandle_t to_handle(const engine::KeyHash& identity);
/// @return the key hash in a handle, nothing for the handle of nothing and for a malformed handle.
std::optional<engine::KeyHash> to_key_hash(const DDS_InstanceHandle_t& handle);

/// @return the present as a source timestamp.
engine::Nanoseconds now();
/// @return nanoseconds since the epoch, the present for DDS_TIME_INVALID, nothing for a time out of
/// range.
std::optional<engine::Nanoseconds> to_timestamp(const DDS_Time_t& time);
DDS_Time_t to_time(engine::Nanoseconds timestamp);

/// @param instance, publication handles to put into the result
DDS_SampleInfo to_sample_info(const engine::SampleInfo& info, const DDS_InstanceHandle_t& instance,
                              const DDS_InstanceHandle_t& publication);

}  // namespace pexa::dds
