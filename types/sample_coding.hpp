/**
 * @file sample_coding.hpp
 * @brief Samples on a stream: encapsulation header, form of member headers, alignment origin.
 */
#pragma once

#include "types/encoding.hpp"
#include "types/table.hpp"

namespace orvane::types {

/** The parts of a payload that an operation writes, reads or passes over. */
struct PayloadParts {
    bool encapsulation;
    bool body;
    Selection selection;
};

/** @return whether the endpoint's samples have member headers of the extended form. */
bool has_extended_headers(TULVEndpointData endpoint);

Success serialize(const TypeTable& table, TULVEndpointData endpoint, const void* sample,
                  QELCdrStream* stream, DDS_UnsignedShort encapsulation_id, PayloadParts parts);

Success deserialize(const TypeTable& table, void* sample, QELCdrStream* stream, PayloadParts parts);

/** Clears the stream's rejection mark first, and fails when decoding sets it. */
Success deserialize_unless_rejected(const TypeTable& table, void* sample, QELCdrStream* stream,
                                    PayloadParts parts);

Success skip_sample(const TypeTable& table, QELCdrStream* stream, PayloadParts parts);

/** @param buffer NULL: only the length is told. @param length in: room, out: bytes of the sample.
 */
Success serialize_to_buffer(const TypeTable& table, const void* sample, char* buffer,
                            DDS_UnsignedLong* length);

Success deserialize_from_buffer(const TypeTable& table, void* sample, const char* buffer,
                                DDS_UnsignedLong length);

}  // namespace orvane::types
