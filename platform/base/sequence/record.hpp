/// @file record.hpp
/// @brief The record that all sequences share.
#pragma once

#include "pexa/sequence.h"
#include "platform/base/sequence/operation.hpp"

namespace pexa::base {

/// @return the record of an empty, owned sequence with default parameters.
PEXASequence empty_sequence();
/// Initialises a record that has never been initialised.
/// @return ok, or bad_parameter after a report when @p self is NULL.
Status prepare(PEXASequence* self, const SequenceOperation& operation);
/// @return the address of element @p index, which must be below the maximum.
void* element_at(const PEXASequence& self, const PEXASequenceElement& type, DDS_Long index);

}  // namespace pexa::base
