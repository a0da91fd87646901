/// @file step.hpp
/// @brief One step of a cursor as an operation on a stream.
#pragma once

#include "platform/internal/cdr_parameter_cursor.hpp"

namespace pexa::base {

/// Takes a step with a cursor of the stream, and moves the stream if the step succeeds.
/// @return 1, or 0 with the stream where it was.
template <class Step>
QELBool take_step(QELCdrStream* stream, Step step) {
    CdrParameterCursor cursor(*stream);
    return step(cursor) && cursor.commit() ? 1 : 0;
}

}  // namespace pexa::base
