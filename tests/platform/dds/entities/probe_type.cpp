#include "tests/platform/dds/entities/probe_type.hpp"

#include <atomic>
#include <cstring>
#include <new>

#include "pexa/osapi.h"

namespace {

std::atomic<int> endpoints{0};
std::atomic<bool> refusing{false};
std::atomic<DDS_Long> refused_value{undecodable_value};

constexpr DDS_TypeCode text_code = {
    DDS_TK_STRING, DDS_FINAL_EXTENSIBILITY, nullptr, Probe::longest_text, nullptr, 0, nullptr};
DDS_TypeCodeMember members[] = {
    {"id", 0, &DDS_g_tc_long, DDS_TYPECODE_KEY_MEMBER, DDS_PUBLIC_MEMBER, 0},
    {"value", 1, &DDS_g_tc_long, DDS_TYPECODE_NONKEY_REQUIRED_MEMBER, DDS_PUBLIC_MEMBER, 0},
    {"text", 2, &text_code, DDS_TYPECODE_NONKEY_REQUIRED_MEMBER, DDS_PUBLIC_MEMBER, 0},
};
constexpr DDS_TypeCode probe_code = {
    DDS_TK_STRUCT, DDS_FINAL_EXTENSIBILITY, probe_type_name, 0, nullptr, 3, members};

void* create_probe() {
    void* memory = QELOsapiHeap_allocateStructureOfSize(sizeof(Probe));
    return memory != nullptr ? new (memory) Probe() : nullptr;
}

void destroy_probe(void* probe) {
    QELOsapiHeap_freeStructureBytes(probe);
}

TULVParticipantData attach_participant(void* /*data*/, const DDS_TypeCode* /*code*/) {
    return TULVTypePluginDefaultParticipantData_new();
}

TULVEndpointData count(TULVEndpointData data) {
    endpoints += data != nullptr ? 1 : 0;
    return data;
}

TULVEndpointData attach_keyed(TULVParticipantData participant, const TULVEndpointInfo* info) {
    return refusing
               ? nullptr
               : count(TULVTypePluginDefaultEndpointData_new(
                     participant, info, create_probe, destroy_probe, create_probe, destroy_probe));
}

TULVEndpointData attach_keyless(TULVParticipantData participant, const TULVEndpointInfo* info) {
    return count(TULVTypePluginDefaultEndpointData_new(participant, info, create_probe,
                                                       destroy_probe, nullptr, nullptr));
}

void detach(TULVEndpointData data) {
    --endpoints;
    TULVTypePluginDefaultEndpointData_delete(data);
}

DDS_Boolean serialize(TULVEndpointData /*endpoint*/, const void* sample, QELCdrStream* stream,
                      DDS_Boolean /*header*/, DDS_UnsignedShort id, DDS_Boolean /*body*/,
                      void* /*qos*/) {
    const auto& probe = *static_cast<const Probe*>(sample);
    return probe.text[0] != '!' && QELCdrStream_serializeEncapsulation(stream, id) != 0 &&
           QELCdrStream_serializeLong(stream, probe.id) != 0 &&
           QELCdrStream_serializeLong(stream, probe.value) != 0 &&
           QELCdrStream_serializeString(stream, probe.text, Probe::longest_text) != 0;
}

DDS_Boolean deserialize(TULVEndpointData /*endpoint*/, void** sample, DDS_Boolean* /*drop*/,
                        QELCdrStream* stream, DDS_Boolean /*header*/, DDS_Boolean /*body*/,
                        void* /*qos*/) {
    auto& probe = *static_cast<Probe*>(*sample);
    return QELCdrStream_deserializeEncapsulation(stream) != 0 &&
           QELCdrStream_deserializeLong(stream, &probe.id) != 0 &&
           QELCdrStream_deserializeLong(stream, &probe.value) != 0 &&
           QELCdrStream_deserializeString(stream, probe.text, Probe::longest_text) != 0 &&
           probe.value != undecodable_value && probe.value != refused_value;
}

DDS_UnsignedLong size_of(TULVEndpointData /*endpoint*/, DDS_Boolean /*header*/,
                         DDS_UnsignedShort /*id*/, DDS_UnsignedLong /*alignment*/,
                         const void* sample) {
    return static_cast<DDS_UnsignedLong>(4 + 4 + 4 + 4 + 1 +
                                         std::strlen(static_cast<const Probe*>(sample)->text));
}

DDS_UnsignedLong key_size(TULVEndpointData /*endpoint*/, DDS_Boolean /*header*/,
                          DDS_UnsignedShort /*id*/, DDS_UnsignedLong /*alignment*/) {
    return 8;
}

DDS_Boolean key_hash(TULVEndpointData /*endpoint*/, QELKeyHash* hash, const void* sample) {
    const auto computed = hash_of_probe(static_cast<const Probe*>(sample)->id);
    std::memcpy(hash->value, computed.data(), computed.size());
    hash->length = 16;
    return 1;
}

DDS_Boolean copy_key(TULVEndpointData /*endpoint*/, void* destination, const void* source) {
    static_cast<Probe*>(destination)->id = static_cast<const Probe*>(source)->id;
    return 1;
}

DDS_Boolean serialize_key(TULVEndpointData /*endpoint*/, const void* key, QELCdrStream* stream,
                          DDS_Boolean /*header*/, DDS_UnsignedShort id, DDS_Boolean /*body*/,
                          void* /*qos*/) {
    return QELCdrStream_serializeEncapsulation(stream, id) != 0 &&
           QELCdrStream_serializeLong(stream, static_cast<const Probe*>(key)->id) != 0;
}

DDS_Boolean deserialize_key(TULVEndpointData /*endpoint*/, void* key, QELCdrStream* stream,
                            DDS_Boolean /*header*/, DDS_Boolean /*body*/, void* /*qos*/) {
    return QELCdrStream_deserializeEncapsulation(stream) != 0 &&
           QELCdrStream_deserializeLong(stream, &static_cast<Probe*>(key)->id) != 0;
}

TULVKeyKind user_key() {
    return TULV_USER_KEY;
}

TULVKeyKind no_key() {
    return TULV_NO_KEY;
}

}  // namespace

Probe::Probe(DDS_Long number, DDS_Long content, std::string_view words)
    : id(number), value(content) {
    words.copy(text, longest_text);
}

TULVTypePlugin keyless_probe_plugin() {
    TULVTypePlugin plugin{};
    plugin.on_participant_attached = attach_participant;
    plugin.on_participant_detached = TULVTypePluginDefaultParticipantData_delete;
    plugin.on_endpoint_attached = attach_keyless;
    plugin.on_endpoint_detached = detach;
    plugin.create_sample = TULVTypePluginDefaultEndpointData_createSample;
    plugin.destroy_sample = TULVTypePluginDefaultEndpointData_deleteSample;
    plugin.serialize = serialize;
    plugin.deserialize = deserialize;
    plugin.get_sample = TULVTypePluginDefaultEndpointData_getSample;
    plugin.return_sample = TULVTypePluginDefaultEndpointData_returnSample;
    plugin.get_serialized_sample_size = size_of;
    plugin.get_key_kind = no_key;
    plugin.typeCode = &probe_code;
    plugin.pluginKind = TULV_TYPE_PLUGIN_KIND;
    plugin.typeName = keyless_type_name;
    return plugin;
}

TULVTypePlugin probe_plugin() {
    TULVTypePlugin plugin = keyless_probe_plugin();
    plugin.on_endpoint_attached = attach_keyed;
    plugin.instance_to_keyhash = key_hash;
    plugin.get_key_kind = user_key;
    plugin.get_key = TULVTypePluginDefaultEndpointData_getKey;
    plugin.return_key = TULVTypePluginDefaultEndpointData_returnKey;
    plugin.get_serialized_key_max_size = key_size;
    plugin.instance_to_key = copy_key;
    plugin.key_to_instance = copy_key;
    plugin.serialize_key = serialize_key;
    plugin.deserialize_key_sample = deserialize_key;
    plugin.typeName = probe_type_name;
    return plugin;
}

int attached_endpoints() {
    return endpoints;
}

void refuse_endpoints(bool refuse) {
    refusing = refuse;
}

void refuse_value(DDS_Long value) {
    refused_value = value;
}

std::vector<std::byte> encoded_probe(const Probe& probe) {
    std::vector<std::byte> bytes(17 + std::strlen(probe.text));
    QELCdrStream stream;
    QELCdrStream_init(&stream, reinterpret_cast<char*>(bytes.data()), bytes.size());
    QELCdrStream_serializeEncapsulation(&stream, QEL_CDR_ENCAPSULATION_ID_CDR_LE);
    QELCdrStream_serializeLong(&stream, probe.id);
    QELCdrStream_serializeLong(&stream, probe.value);
    QELCdrStream_serializeString(&stream, probe.text, Probe::longest_text);
    return bytes;
}

pexa::engine::KeyHash hash_of_probe(DDS_Long id) {
    pexa::engine::KeyHash hash{};
    for (unsigned i = 0; i < 4; ++i) {
        hash[i] =
            static_cast<std::byte>((static_cast<DDS_UnsignedLong>(id) >> (24 - 8 * i)) & 0xff);
    }
    return hash;
}
