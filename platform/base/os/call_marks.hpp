#pragma once

namespace pexa::base {

/// @name What the calling thread is inside of
/// Numbers of marks, because marks nest.
/// @{
[[gnu::tls_model("initial-exec")]] inline constinit thread_local unsigned device_call_depth = 0;
[[gnu::tls_model("initial-exec")]] inline constinit thread_local unsigned engine_call_depth = 0;
/// @}

}  // namespace pexa::base
