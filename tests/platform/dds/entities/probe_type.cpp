#include "tests/platform/dds/entities/probe_type.hpp"

#include <cstring>
#include <memory>

#include "pexa/string.h"

namespace {

TULVEndpointData attach(TULVParticipantData participant, const TULVEndpointInfo* info) {
    if (refusing_endpoints) {
        return nullptr;
    }
    ++attached_endpoints;
    return QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_attached(participant, info);
}

void detach(TULVEndpointData data) {
    --attached_endpoints;
    QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_detached(data);
}

DDS_Boolean deserialize(TULVEndpointData endpoint, void** sample, DDS_Boolean* drop,
                        QELCdrStream* stream, DDS_Boolean header, DDS_Boolean body, void* qos) {
    return QEL_KX_ADMIN_CommandResponsePlugin_deserialize(endpoint, sample, drop, stream, header,
                                                          body, qos) != 0 &&
           static_cast<const Probe*>(*sample)->value() != undecodable_value;
}

}  // namespace

Probe::Probe(DDS_Long id, DDS_Long value, const std::string& text)
    : QEL_KX_ADMIN_CommandResponse{} {
    QEL_KX_ADMIN_CommandResponse_initialize(this);
    hostAndAppId.rtps_host_id = id;
    invocation = value;
    // A string of the type has room for its bound, and a copy relies on that. Texts beyond the
    // bound are for tests of their refusal.
    if (DDS_String_copyBounded(message, text.c_str(), ORVANE_RESPONSE_MESSAGE_BOUND + 1) == 0) {
        DDS_String_replace(&message, text.c_str());
    }
}

Probe::Probe(const Probe& other) : Probe() {
    *this = other;
}

Probe& Probe::operator=(const Probe& other) {
    QEL_KX_ADMIN_CommandResponse_copy(this, &other);
    return *this;
}

TULVTypePlugin probe_plugin() {
    const std::unique_ptr<TULVTypePlugin, void (*)(TULVTypePlugin*)> made(
        QEL_KX_ADMIN_CommandResponsePlugin_new(), QEL_KX_ADMIN_CommandResponsePlugin_delete);
    TULVTypePlugin plugin = *made;
    plugin.on_endpoint_attached = attach;
    plugin.on_endpoint_detached = detach;
    plugin.deserialize = deserialize;
    return plugin;
}

TULVTypePlugin keyless_probe_plugin() {
    TULVTypePlugin plugin = probe_plugin();
    plugin.get_key_kind = [] { return TULV_NO_KEY; };
    plugin.typeName = "test::Keyless";
    return plugin;
}

orvane::test::Bytes encoded_probe(const Probe& probe) {
    orvane::test::Bytes bytes(500);
    auto length = static_cast<DDS_UnsignedLong>(bytes.size());
    QEL_KX_ADMIN_CommandResponsePlugin_serialize_to_cdr_buffer(bytes.data(), &length, &probe);
    bytes.resize(length);
    return bytes;
}

orvane::test::Bytes encoded_key(DDS_Long id) {
    const Probe probe(id);
    orvane::test::Bytes bytes(100);
    QELCdrStream stream;
    QELCdrStream_init(&stream, bytes.data(), bytes.size());
    QEL_KX_ADMIN_CommandResponsePlugin_serialize_key(
        nullptr, &probe, &stream, 1, QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE, 1, nullptr);
    bytes.resize(stream.position);
    return bytes;
}

pexa::engine::KeyHash hash_of_probe(DDS_Long id) {
    const TULVEndpointInfo info = {TULV_ENDPOINT_READER, 1, 1};
    const TULVEndpointData endpoint =
        QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_attached(nullptr, &info);
    const Probe probe(id);
    QELKeyHash computed{};
    pexa::engine::KeyHash hash{};
    QEL_KX_ADMIN_CommandResponsePlugin_instance_to_keyhash(endpoint, &computed, &probe);
    QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_detached(endpoint);
    std::memcpy(hash.data(), computed.value, hash.size());
    return hash;
}
