/// @file stream.hpp
/// @brief Streams of encoded data. The contracts stand in pexa/cdr_stream.h.
#pragma once

#include "pexa/cdr_stream.h"

namespace pexa::base {

void init_stream(QELCdrStream* stream, char* buffer, size_t size);

}  // namespace pexa::base
