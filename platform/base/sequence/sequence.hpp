/// @file sequence.hpp
/// @brief The operations that other operations are made of. The contracts stand in pexa/sequence.h.
#pragma once

#include "pexa/sequence.h"
#include "platform/internal/status.hpp"

namespace pexa::base {

Status set_maximum(PEXASequence* self, const PEXASequenceElement* type, DDS_Long maximum);
Status set_length(PEXASequence* self, const PEXASequenceElement* type, DDS_Long length);
Status loan_contiguous(PEXASequence* self, const PEXASequenceElement* type, void* buffer,
                       DDS_Long length, DDS_Long maximum);
Status unloan(PEXASequence* self, const PEXASequenceElement* type);

}  // namespace pexa::base
