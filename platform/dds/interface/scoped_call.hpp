/// @file scoped_call.hpp
/// @brief Pairs of operations that begin and end with a scope.
#pragma once

#include "pexa/osapi.h"

namespace pexa::dds {

template <void (*Begin)(), void (*End)()>
class ScopedCall {
public:
    ScopedCall() { Begin(); }
    ScopedCall(const ScopedCall&) = delete;
    ScopedCall& operator=(const ScopedCall&) = delete;
    ~ScopedCall() { End(); }
};

/// Lasts as long as a call that the engine makes. The thread may be one of the engine's, or hold
/// its locks, and so must not wait for standard output.
using EngineCall = ScopedCall<QELOsapi_enterEngineCall, QELOsapi_leaveEngineCall>;

/// Lasts as long as a call of the logger's device.
using DeviceCall = ScopedCall<QELOsapi_enterDeviceCall, QELOsapi_leaveDeviceCall>;

/// Lasts as long as there may be a participant in the engine.
using EngineUse = ScopedCall<QELOsapi_beginEngineUse, QELOsapi_endEngineUse>;

}  // namespace pexa::dds
