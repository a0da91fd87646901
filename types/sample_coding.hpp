/**
 * @file sample_coding.hpp
 * @brief Samples on a stream: encapsulation header, form of member headers, alignment origin.
 */
#pragma once

#include "types/encoding.hpp"
#include "types/table.hpp"

namespace orvane::types {

/** What of an encoded sample an operation writes, reads or passes over. */
struct Portion {
    bool encapsulation;
    bool body;
    Selection selection;
};

/** @return whether the endpoint's samples have member headers of the extended form. */
[[nodiscard]] bool has_extended_headers(TULVEndpointData endpoint);

[[nodiscard]] bool serialize(const TypeTable& table, TULVEndpointData endpoint, const void* sample,
                             QELCdrStream* stream, DDS_UnsignedShort encapsulation_id,
                             Portion portion);

/** The sample is reset first, so that members that are missing have their initial value. */
[[nodiscard]] bool deserialize(const TypeTable& table, void* sample, QELCdrStream* stream,
                               Portion portion);

/** As above, with the stream's rejection mark cleared first. */
[[nodiscard]] bool deserialize_unmarked(const TypeTable& table, void* sample, QELCdrStream* stream,
                                        Portion portion);

[[nodiscard]] bool skip_sample(const TypeTable& table, QELCdrStream* stream, Portion portion);

/** @param buffer NULL: only the length is told. @param length in: room, out: bytes of the sample.
 */
[[nodiscard]] bool serialize_to_buffer(const TypeTable& table, const void* sample, char* buffer,
                                       DDS_UnsignedLong* length);

[[nodiscard]] bool deserialize_from_buffer(const TypeTable& table, void* sample, const char* buffer,
                                           DDS_UnsignedLong length);

}  // namespace orvane::types
