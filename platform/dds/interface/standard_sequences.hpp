/// @file standard_sequences.hpp
/// @brief Reading sequences without changing them.
///
/// The sequences' own operations need a mutable record, because they initialise it at its first
/// use. Here a record before its first use counts as empty.
#pragma once

#include "pexa/sequence.h"

namespace pexa::dds {

template <typename Sequence>
DDS_Long length_of(const Sequence& sequence) {
    return sequence.sequenceInit == DDS_SEQUENCE_MAGIC ? sequence.length : 0;
}

/// @param index below length_of()
template <typename Sequence>
const auto& element_of(const Sequence& sequence, DDS_Long index) {
    return sequence.discontiguousBuffer != nullptr ? *sequence.discontiguousBuffer[index]
                                                   : sequence.contiguousBuffer[index];
}

/// @param equal says whether two elements are equal
template <typename Sequence, typename Equal>
bool equal_sequences(const Sequence& left, const Sequence& right, Equal equal) {
    if (length_of(left) != length_of(right)) {
        return false;
    }
    for (DDS_Long i = 0; i < length_of(left); ++i) {
        if (!equal(element_of(left, i), element_of(right, i))) {
            return false;
        }
    }
    return true;
}

}  // namespace pexa::dds
