#pragma once

#include "pexa/sequence.h"
#include "platform/base/sequence/operation.hpp"

namespace pexa::base {

/// @return the record of an empty, owned sequence with default parameters.
[[nodiscard]] PEXASequence empty_sequence();
/// Tells whether @p self is there (if not, reports it) and initialises a record that has never
/// been initialised.
[[nodiscard]] bool is_usable(PEXASequence* self, const SequenceOperation& operation);
/// @return where element @p index lives, which the buffer must have room for.
[[nodiscard]] void* element_at(const PEXASequence& self, const PEXASequenceElement& type,
                               DDS_Long index);

}  // namespace pexa::base
