#include "platform/dds/interface/value_conversion.hpp"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <tuple>

namespace pexa::dds {

namespace {

constexpr engine::Nanoseconds second = 1'000'000'000;

// 0 means unknown.
DDS_SequenceNumber_t to_sequence_number(std::int64_t number) {
    return number == 0 ? DDS_SEQUENCE_NUMBER_UNKNOWN
                       : DDS_SequenceNumber_t{static_cast<DDS_Long>(number >> 32),
                                              static_cast<DDS_UnsignedLong>(number)};
}

}  // namespace

DDS_InstanceHandle_t to_handle(const engine::KeyHash& identity) {
    DDS_InstanceHandle_t handle{};
    static_assert(sizeof handle.keyHash.value == std::tuple_size_v<engine::KeyHash>);
    std::memcpy(handle.keyHash.value, identity.data(), identity.size());
    handle.keyHash.length = static_cast<DDS_UnsignedLong>(identity.size());
    handle.isValid = DDS_BOOLEAN_TRUE;
    return handle;
}

std::optional<engine::KeyHash> to_key_hash(const DDS_InstanceHandle_t& handle) {
    engine::KeyHash hash;
    if (handle.isValid == DDS_BOOLEAN_FALSE || handle.keyHash.length != hash.size()) {
        return std::nullopt;
    }
    std::memcpy(hash.data(), handle.keyHash.value, hash.size());
    return hash;
}

engine::Nanoseconds now() {
    const auto since_epoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(since_epoch).count();
}

std::optional<engine::Nanoseconds> to_timestamp(const DDS_Time_t& time) {
    if (time.sec == DDS_TIME_INVALID.sec && time.nanosec == DDS_TIME_INVALID.nanosec) {
        return now();
    }
    if (time.sec < 0 || time.nanosec >= second) {
        return std::nullopt;
    }
    return time.sec * second + time.nanosec;
}

DDS_Time_t to_time(engine::Nanoseconds timestamp) {
    const engine::Nanoseconds seconds =
        std::min<engine::Nanoseconds>(timestamp / second, std::numeric_limits<DDS_Long>::max());
    return {static_cast<DDS_Long>(seconds), static_cast<DDS_UnsignedLong>(timestamp % second)};
}

DDS_SampleInfo to_sample_info(const engine::SampleInfo& info, const DDS_InstanceHandle_t& instance,
                              const DDS_InstanceHandle_t& publication) {
    DDS_SampleInfo result{};
    result.sample_state = info.sample_state;
    result.view_state = info.view_state;
    result.instance_state = info.instance_state;
    result.source_timestamp = to_time(info.source_timestamp);
    result.instance_handle = instance;
    result.publication_handle = publication;
    result.publication_sequence_number = to_sequence_number(info.origin.sequence_number);
    result.disposed_generation_count = info.disposed_generation_count;
    result.no_writers_generation_count = info.no_writers_generation_count;
    result.sample_rank = info.sample_rank;
    result.generation_rank = info.generation_rank;
    result.absolute_generation_rank = info.absolute_generation_rank;
    result.valid_data = info.valid_data ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    return result;
}

}  // namespace pexa::dds

const DDS_SequenceNumber_t DDS_SEQUENCE_NUMBER_UNKNOWN = {-1, 0xffffffffU};
