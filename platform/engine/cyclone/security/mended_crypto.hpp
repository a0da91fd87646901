/// @file mended_crypto.hpp
/// @brief Makes participants use the plug-in of @ref crypto_plug_in.h.
#pragma once

#include <dds/dds.h>

namespace pexa::engine::cyclone {

/// Puts that plug-in in the place of the engine's in the properties of a participant. Any other one
/// stays.
void use_mended_crypto(dds_qos_t& properties);

}  // namespace pexa::engine::cyclone
