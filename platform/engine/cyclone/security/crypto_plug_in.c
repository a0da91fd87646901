/* In C, because the engine's headers of plug-ins are C only. */
#include "platform/engine/cyclone/security/crypto_plug_in.h"

#include <dds/ddsrt/dynlib.h>
#include <dds/security/dds_security_api.h>
#include <stdatomic.h>
#include <stdbool.h>
#include <stddef.h>

typedef DDS_Security_crypto_transform_decode_rtps_message Decode;
/* Of the engine's plug-in; the same for all participants. */
static _Atomic(Decode) engine_decode;

/* The engine calls it for one participant after the other, with the same buffer. */
static DDS_Security_boolean decode_once(dds_security_crypto_transform* instance,
                                        DDS_Security_OctetSeq* plain,
                                        const DDS_Security_OctetSeq* encoded,
                                        const DDS_Security_ParticipantCryptoHandle receiver,
                                        const DDS_Security_ParticipantCryptoHandle sender,
                                        DDS_Security_SecurityException* exception) {
    return plain->_buffer != NULL ||
           atomic_load(&engine_decode)(instance, plain, encoded, receiver, sender, exception);
}

/* Only the engine finds its plug-ins, wherever they are. Once loaded it stays.
   operation: a pointer to a pointer to a function */
static bool find_in_engine(const char* name, void* operation) {
    static _Atomic(ddsrt_dynlib_t) library;
    ddsrt_dynlib_t loaded = atomic_load(&library);
    if (loaded == NULL) {
        if (ddsrt_dlopen(ENGINE_CRYPTO_PLUG_IN, true, &loaded) != DDS_RETCODE_OK) {
            return false;
        }
        atomic_store(&library, loaded);
    }
    return ddsrt_dlsym(loaded, name, operation) == DDS_RETCODE_OK;
}

int pexa_init_crypto(const char* argument, void** context, struct ddsi_domaingv* domain) {
    plugin_init init = NULL;
    const int result = find_in_engine("init_crypto", &init) ? init(argument, context, domain) : -1;
    if (result == 0) {
        dds_security_crypto_transform* transform =
            ((dds_security_cryptography*)*context)->crypto_transform;
        atomic_store(&engine_decode, transform->decode_rtps_message);
        transform->decode_rtps_message = decode_once;
    }
    return result;
}

int pexa_finalize_crypto(void* context) {
    plugin_finalize finalize = NULL;
    return find_in_engine("finalize_crypto", &finalize) ? finalize(context) : -1;
}
