#include "types/plugin.hpp"

#include "pexa/osapi.h"

namespace orvane::types {

namespace {

/** What keyed types and writers have on top of the default endpoint data. */
bool equip(const EndpointType& type, TULVEndpointData endpoint, TULVEndpointKind kind) {
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
