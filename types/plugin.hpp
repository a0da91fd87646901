/**
 * @file plugin.hpp
 * @brief The operations of one type's plugin, by their exported names.
 */
#pragma once

#include "types/key_hash.hpp"
#include "types/plugin_support.hpp"
#include "types/sample_coding.hpp"
#include "types/sizes.hpp"

namespace orvane::types {

/** What an endpoint's data needs to know of the type. */
struct EndpointType {
    const TypeTable& table;
    TULVCreateData create;
    TULVDestroyData destroy;
    TULVSerializedSize max_size;
};

/** @return NULL without memory. */
TULVEndpointData attach_endpoint(const EndpointType& type, TULVParticipantData participant,
                                 const TULVEndpointInfo* info);

/** @return a heap copy of the record, or NULL without memory. */
TULVTypePlugin* new_plugin(const TULVTypePlugin& record);
void delete_plugin(TULVTypePlugin* plugin);

/** @return what the records of all types have in common. */
TULVTypePlugin common_plugin_record();

constexpr PayloadParts payload_parts(DDS_Boolean encapsulation, DDS_Boolean body,
                                     Selection selection) {
    return {.encapsulation = encapsulation != DDS_BOOLEAN_FALSE,
            .body = body != DDS_BOOLEAN_FALSE,
            .selection = selection};
}

constexpr SizeOrigin size_origin(DDS_Boolean with_encapsulation, DDS_UnsignedShort id,
                                 DDS_UnsignedLong current_alignment) {
    return {.with_encapsulation = with_encapsulation != DDS_BOOLEAN_FALSE,
            .encapsulation_id = id,
            .current_alignment = current_alignment};
}

/** `TPlugin_…` */
template <typename T>
struct Plugin {
    using Support = PluginSupport<T>;
    static constexpr const TypeTable& table = Description<T>::table;

    static TULVTypePlugin* make() { return new_plugin(record()); }

    static TULVTypePlugin record() {
        TULVTypePlugin record = common_plugin_record();
        record.on_participant_attached = on_participant_attached;
        record.on_participant_detached = on_participant_detached;
        record.on_endpoint_attached = on_endpoint_attached;
        record.on_endpoint_detached = on_endpoint_detached;
        record.copy_sample = copy_sample;
        record.serialize = serialize;
        record.deserialize = deserialize;
        record.return_sample = return_sample;
        record.get_serialized_sample_max_size = get_serialized_sample_max_size;
        record.get_serialized_sample_min_size = get_serialized_sample_min_size;
        record.get_serialized_sample_size = get_serialized_sample_size;
        record.get_key_kind = get_key_kind;
        record.typeCode = &Description<T>::code;
        record.typeName = table.name;
        if (table.is_keyed) {
            add_key_operations(record);
        }
        return record;
    }
    static void add_key_operations(TULVTypePlugin& record) {
        record.instance_to_keyhash = instance_to_keyhash;
        record.serialized_sample_to_keyhash = serialized_sample_to_keyhash;
        record.get_key = TULVTypePluginDefaultEndpointData_getKey;
        record.return_key = TULVTypePluginDefaultEndpointData_returnKey;
        record.get_serialized_key_max_size = get_serialized_key_max_size;
        record.instance_to_key = instance_to_key;
        record.key_to_instance = key_to_instance;
        record.serialize_key = serialize_key;
        record.deserialize_key = deserialize_key;
        record.deserialize_key_sample = deserialize_key_sample;
    }

    static void* create() { return Support::create_data(); }
    static void destroy(void* sample) { Support::destroy_data(static_cast<T*>(sample)); }

    static TULVParticipantData on_participant_attached(void* /*registration*/,
                                                       const DDS_TypeCode* /*code*/) {
        return TULVTypePluginDefaultParticipantData_new();
    }
    static void on_participant_detached(TULVParticipantData participant) {
        TULVTypePluginDefaultParticipantData_delete(participant);
    }
    static TULVEndpointData on_endpoint_attached(TULVParticipantData participant,
                                                 const TULVEndpointInfo* info) {
        return attach_endpoint({.table = table,
                                .create = create,
                                .destroy = destroy,
                                .max_size = get_serialized_sample_max_size},
                               participant, info);
    }
    static void on_endpoint_detached(TULVEndpointData endpoint) {
        TULVTypePluginDefaultEndpointData_delete(endpoint);
    }

    static DDS_Boolean copy_sample(TULVEndpointData /*endpoint*/, void* destination,
                                   const void* source) {
        return Support::copy_data(static_cast<T*>(destination), static_cast<const T*>(source));
    }
    static void return_sample(TULVEndpointData endpoint, void* sample, void* handle) {
        TULVTypePluginDefaultEndpointData_returnSample(endpoint, sample, handle);
    }

    static DDS_Boolean serialize(TULVEndpointData endpoint, const void* sample,
                                 QELCdrStream* stream, DDS_Boolean encapsulation,
                                 DDS_UnsignedShort id, DDS_Boolean body, void* /*qos*/) {
        return types::serialize(table, endpoint, sample, stream, id,
                                payload_parts(encapsulation, body, Selection::All));
    }
    static DDS_Boolean deserialize_sample(TULVEndpointData /*endpoint*/, T* sample,
                                          QELCdrStream* stream, DDS_Boolean encapsulation,
                                          DDS_Boolean body, void* /*qos*/) {
        return types::deserialize(table, sample, stream,
                                  payload_parts(encapsulation, body, Selection::All));
    }
    static DDS_Boolean deserialize(TULVEndpointData /*endpoint*/, void** sample,
                                   DDS_Boolean* /*drop*/, QELCdrStream* stream,
                                   DDS_Boolean encapsulation, DDS_Boolean body, void* /*qos*/) {
        return sample != nullptr &&
               deserialize_unless_rejected(table, *sample, stream,
                                           payload_parts(encapsulation, body, Selection::All));
    }
    static DDS_Boolean serialize_to_cdr_buffer(char* buffer, DDS_UnsignedLong* length,
                                               const T* sample) {
        return serialize_to_buffer(table, sample, buffer, length);
    }
    static DDS_Boolean deserialize_from_cdr_buffer(T* sample, const char* buffer,
                                                   DDS_UnsignedLong length) {
        return deserialize_from_buffer(table, sample, buffer, length);
    }
    static DDS_Boolean skip(TULVEndpointData /*endpoint*/, QELCdrStream* stream,
                            DDS_Boolean encapsulation, DDS_Boolean body, void* /*qos*/) {
        return skip_sample(table, stream, payload_parts(encapsulation, body, Selection::All));
    }

    static DDS_UnsignedLong get_serialized_sample_max_size(TULVEndpointData endpoint,
                                                           DDS_Boolean encapsulation,
                                                           DDS_UnsignedShort id,
                                                           DDS_UnsignedLong alignment) {
        return get_serialized_sample_max_size_ex(endpoint, nullptr, encapsulation, id, alignment);
    }
    static DDS_UnsignedLong get_serialized_sample_max_size_ex(TULVEndpointData /*endpoint*/,
                                                              DDS_Boolean* overflow,
                                                              DDS_Boolean encapsulation,
                                                              DDS_UnsignedShort id,
                                                              DDS_UnsignedLong alignment) {
        return extreme_size(table, Extreme::Maximum, Selection::All,
                            size_origin(encapsulation, id, alignment), overflow);
    }
    static DDS_UnsignedLong get_serialized_sample_min_size(TULVEndpointData /*endpoint*/,
                                                           DDS_Boolean encapsulation,
                                                           DDS_UnsignedShort id,
                                                           DDS_UnsignedLong alignment) {
        return extreme_size(table, Extreme::Minimum, Selection::All,
                            size_origin(encapsulation, id, alignment));
    }
    static DDS_UnsignedLong get_serialized_sample_size(TULVEndpointData endpoint,
                                                       DDS_Boolean encapsulation,
                                                       DDS_UnsignedShort id,
                                                       DDS_UnsignedLong alignment,
                                                       const void* sample) {
        return sample == nullptr ? 0
                                 : exact_size(table, sample, has_extended_headers(endpoint),
                                              size_origin(encapsulation, id, alignment));
    }

    static TULVKeyKind get_key_kind() { return table.is_keyed ? TULV_USER_KEY : TULV_NO_KEY; }

    static DDS_Boolean serialize_key(TULVEndpointData endpoint, const void* key,
                                     QELCdrStream* stream, DDS_Boolean encapsulation,
                                     DDS_UnsignedShort id, DDS_Boolean body, void* /*qos*/) {
        return types::serialize(table, endpoint, key, stream, id,
                                payload_parts(encapsulation, body, Selection::Key));
    }
    static DDS_Boolean deserialize_key(TULVEndpointData /*endpoint*/, void** key,
                                       DDS_Boolean* /*drop*/, QELCdrStream* stream,
                                       DDS_Boolean encapsulation, DDS_Boolean body, void* /*qos*/) {
        return key != nullptr &&
               deserialize_unless_rejected(table, *key, stream,
                                           payload_parts(encapsulation, body, Selection::Key));
    }
    static DDS_Boolean deserialize_key_sample(TULVEndpointData /*endpoint*/, void* key,
                                              QELCdrStream* stream, DDS_Boolean encapsulation,
                                              DDS_Boolean body, void* /*qos*/) {
        return types::deserialize(table, key, stream,
                                  payload_parts(encapsulation, body, Selection::Key));
    }
    static DDS_Boolean serialized_sample_to_key(TULVEndpointData /*endpoint*/, T* sample,
                                                QELCdrStream* stream, DDS_Boolean encapsulation,
                                                DDS_Boolean body, void* /*qos*/) {
        return types::deserialize(table, sample, stream,
                                  payload_parts(encapsulation, body, Selection::Key));
    }
    static DDS_Boolean instance_to_key(TULVEndpointData /*endpoint*/, void* key,
                                       const void* instance) {
        return key != nullptr && instance != nullptr && copy_key(table, key, instance);
    }
    static DDS_Boolean key_to_instance(TULVEndpointData /*endpoint*/, void* instance,
                                       const void* key) {
        return key != nullptr && instance != nullptr && copy_key(table, instance, key);
    }
    static DDS_Boolean instance_to_keyhash(TULVEndpointData endpoint, QELKeyHash* hash,
                                           const void* instance) {
        return hash_of_instance(table, endpoint, instance, hash);
    }
    static DDS_Boolean serialized_sample_to_keyhash(TULVEndpointData endpoint, QELCdrStream* stream,
                                                    QELKeyHash* hash, DDS_Boolean encapsulation,
                                                    void* /*qos*/) {
        return hash_of_serialized_sample(table, endpoint, stream,
                                         encapsulation != DDS_BOOLEAN_FALSE, hash);
    }
    static DDS_UnsignedLong get_serialized_key_max_size(TULVEndpointData endpoint,
                                                        DDS_Boolean encapsulation,
                                                        DDS_UnsignedShort id,
                                                        DDS_UnsignedLong alignment) {
        return get_serialized_key_max_size_ex(endpoint, nullptr, encapsulation, id, alignment);
    }
    static DDS_UnsignedLong get_serialized_key_max_size_ex(TULVEndpointData /*endpoint*/,
                                                           DDS_Boolean* overflow,
                                                           DDS_Boolean encapsulation,
                                                           DDS_UnsignedShort id,
                                                           DDS_UnsignedLong alignment) {
        return extreme_size(table, Extreme::Maximum, Selection::Key,
                            size_origin(encapsulation, id, alignment), overflow);
    }
};

}  // namespace orvane::types
