#include "platform/engine/cyclone/security/mended_crypto.hpp"

#include <dds/security/dds_security_api_defs.h>
#include <dlfcn.h>

#include <string_view>

#include "platform/engine/cyclone/security/crypto_plug_in.h"

namespace pexa::engine::cyclone {

void use_mended_crypto(dds_qos_t& properties) {
    char* path = nullptr;
    if (!dds_qget_prop(&properties, DDS_SEC_PROP_CRYPTO_LIBRARY_PATH, &path)) {
        return;
    }
    const bool is_engines = std::string_view(path) == ENGINE_CRYPTO_PLUG_IN;
    dds_free(path);
    Dl_info here{};
    if (!is_engines || dladdr(reinterpret_cast<void*>(pexa_init_crypto), &here) == 0) {
        return;
    }
    // A program that has this code in it is no library, and keeps the engine's plug-in.
    void* const library = dlopen(here.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) {
        return;
    }
    dlclose(library);
    dds_qset_prop(&properties, DDS_SEC_PROP_CRYPTO_LIBRARY_PATH, here.dli_fname);
    dds_qset_prop(&properties, DDS_SEC_PROP_CRYPTO_LIBRARY_INIT, "pexa_init_crypto");
    dds_qset_prop(&properties, DDS_SEC_PROP_CRYPTO_LIBRARY_FINALIZE, "pexa_finalize_crypto");
}

}  // namespace pexa::engine::cyclone
