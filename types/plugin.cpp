#include "types/plugin.hpp"

#include "pexa/osapi.h"

namespace orvane::types {

namespace {

/** Adds the MD5 stream of keyed types and the buffer pool of writers. */
Success equip(const EndpointType& type, TULVEndpointData endpoint, TULVEndpointKind kind) {
    if (type.table.is_keyed && TULVTypePluginDefaultEndpointData_createMD5Stream(
                                   endpoint, type.table.longest_key) == DDS_BOOLEAN_FALSE) {
        return false;
    }
    if (kind != TULV_ENDPOINT_WRITER) {
        return true;
    }
    TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(
        endpoint,
        type.max_size(endpoint, DDS_BOOLEAN_FALSE, QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE, 0));
    return TULVTypePluginDefaultEndpointData_createWriterPool(endpoint, type.max_size) !=
           DDS_BOOLEAN_FALSE;
}

}  // namespace

TULVEndpointData attach_endpoint(const EndpointType& type, TULVParticipantData participant,
                                 const TULVEndpointInfo* info) {
    if (info == nullptr) {
        return nullptr;
    }
    const bool is_keyed = type.table.is_keyed;
    TULVEndpointData endpoint = TULVTypePluginDefaultEndpointData_new(
        participant, info, type.create, type.destroy, is_keyed ? type.create : nullptr,
        is_keyed ? type.destroy : nullptr);
    if (endpoint != nullptr && !equip(type, endpoint, info->kind)) {
        TULVTypePluginDefaultEndpointData_delete(endpoint);
        return nullptr;
    }
    return endpoint;
}

TULVTypePlugin common_plugin_record() {
    TULVTypePlugin record{};
    record.create_sample = TULVTypePluginDefaultEndpointData_createSample;
    record.destroy_sample = TULVTypePluginDefaultEndpointData_deleteSample;
    record.get_sample = TULVTypePluginDefaultEndpointData_getSample;
    record.get_buffer = TULVTypePluginDefaultEndpointData_getBuffer;
    record.return_buffer = TULVTypePluginDefaultEndpointData_returnBuffer;
    record.pluginKind = TULV_TYPE_PLUGIN_KIND;
    record.version = {.major = 2, .minor = 0, .release = 0, .revision = 0};
    return record;
}

TULVTypePlugin* new_plugin(const TULVTypePlugin& record) {
    TULVTypePlugin* plugin = nullptr;
    QELOsapiHeap_allocateStructure(&plugin, TULVTypePlugin);
    if (plugin != nullptr) {
        *plugin = record;
    }
    return plugin;
}

void delete_plugin(TULVTypePlugin* plugin) {
    QELOsapiHeap_freeStructure(plugin);
}

}  // namespace orvane::types

using orvane::types::Plugin;

#define DEFINE_PLUGIN(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                               \
        return Plugin<T>::operation arguments;                             \
    }
#define DEFINE_ENCODING(T) ORVANE_ENCODING_OPERATIONS(DEFINE_PLUGIN, T)
#define DEFINE_OPERATIONS(T)                        \
    TULVTypePlugin* T##Plugin_new() {               \
        return Plugin<T>::make();                   \
    }                                               \
    void T##Plugin_delete(TULVTypePlugin* plugin) { \
        orvane::types::delete_plugin(plugin);       \
    }                                               \
    ORVANE_PLUGIN_OPERATIONS(DEFINE_PLUGIN, T)
#define DEFINE_KEY_OPERATIONS(T) ORVANE_PLUGIN_KEY_OPERATIONS(DEFINE_PLUGIN, T)

extern "C" {

ORVANE_TYPES(DEFINE_ENCODING)
ORVANE_STRUCTURES(DEFINE_OPERATIONS)
ORVANE_KEYED_TYPES(DEFINE_KEY_OPERATIONS)

}  // extern "C"
