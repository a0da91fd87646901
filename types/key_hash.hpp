/**
 * @file key_hash.hpp
 * @brief Key hashes of keyed types, over tables.
 */
#pragma once

#include "types/table.hpp"

namespace orvane::types {

/**
 * Encodes the key into the endpoint's MD5 stream. Without a stream, or when the key does not fit,
 * it allocates a buffer.
 * @param endpoint may be NULL.
 */
Success hash_of_instance(const TypeTable& table, TULVEndpointData endpoint, const void* instance,
                         QELKeyHash* hash);

/** Decodes the key into the endpoint's own sample. */
Success hash_of_serialized_sample(const TypeTable& table, TULVEndpointData endpoint,
                                  QELCdrStream* stream, bool with_encapsulation, QELKeyHash* hash);

}  // namespace orvane::types
