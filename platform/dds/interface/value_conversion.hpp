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

/// Replaces the content of a sequence by the handles that @p handle_of makes of the items.
/// @return OK, or OUT_OF_RESOURCES: no memory, or a lent buffer that is too small
template <typename Items, typename HandleOf>
Status store_handles(const Items& items, HandleOf handle_of, DDS_InstanceHandleSeq& handles) {
    const auto count = static_cast<DDS_Long>(items.size());
    if (DDS_InstanceHandleSeq_ensure_length(&handles, count, count) == 0) {
        return Status::out_of_resources;
    }
    for (DDS_Long i = 0; i < count; ++i) {
        *DDS_InstanceHandleSeq_get_reference(&handles, i) =
            handle_of(items[static_cast<std::size_t>(i)]);
    }
    return Status::ok;
}

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
