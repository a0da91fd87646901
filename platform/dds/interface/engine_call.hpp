/// @file engine_call.hpp
/// @brief What the engine calls.
#pragma once

#include "pexa/osapi.h"

namespace pexa::dds {

/// Lasts as long as a call that the engine makes. The thread may be one of the engine's, or hold
/// its locks, and so must not wait for standard output.
class EngineCall {
public:
    EngineCall() { QELOsapi_enterEngineCall(); }
    EngineCall(const EngineCall&) = delete;
    EngineCall& operator=(const EngineCall&) = delete;
    ~EngineCall() { QELOsapi_leaveEngineCall(); }
};

}  // namespace pexa::dds
