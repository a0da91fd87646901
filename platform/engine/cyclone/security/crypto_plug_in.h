/// @file crypto_plug_in.h
/// @brief The engine's plug-in for cryptography, without a leak of the engine.
///
/// A message that is signed or encrypted as a whole reaches all secured participants of a process.
/// Cyclone has it decoded once for each of them, and keeps only the last result; the others are
/// never freed. So a process with a participant of its own beside the logger's would lose the size
/// of each message that it receives. The plug-in of this library is the engine's, but decodes such
/// a message only once.
#pragma once

#define ENGINE_CRYPTO_PLUG_IN "dds_security_crypto"

struct ddsi_domaingv;

#ifdef __cplusplus
extern "C" {
#endif

/// @name What the engine calls of a plug-in (plugin_init and plugin_finalize of its interface).
/// @{
__attribute__((visibility("default"))) int pexa_init_crypto(const char* argument, void** context,
                                                            struct ddsi_domaingv* domain);
__attribute__((visibility("default"))) int pexa_finalize_crypto(void* context);
/// @}

#ifdef __cplusplus
}
#endif
