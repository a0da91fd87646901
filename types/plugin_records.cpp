#include "types/plugin.hpp"

namespace orvane::types {

namespace {

/** What all types have in common. */
constexpr TULVTypePlugin basic_record() {
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

/** Adds the type's own operations; keyless types have no more. */
template <typename T>
constexpr TULVTypePlugin keyless_record();
/** Adds the operations on keys. */
template <typename T>
constexpr TULVTypePlugin keyed_record();

#define ORVANE_KEYLESS_RECORD(T)                                                          \
    template <>                                                                           \
    constexpr TULVTypePlugin keyless_record<T>() {                                        \
        TULVTypePlugin record = basic_record();                                           \
        record.on_participant_attached = T##Plugin_on_participant_attached;               \
        record.on_participant_detached = T##Plugin_on_participant_detached;               \
        record.on_endpoint_attached = T##Plugin_on_endpoint_attached;                     \
        record.on_endpoint_detached = T##Plugin_on_endpoint_detached;                     \
        record.copy_sample = T##Plugin_copy_sample;                                       \
        record.serialize = T##Plugin_serialize;                                           \
        record.deserialize = T##Plugin_deserialize;                                       \
        record.return_sample = T##Plugin_return_sample;                                   \
        record.get_serialized_sample_max_size = T##Plugin_get_serialized_sample_max_size; \
        record.get_serialized_sample_min_size = T##Plugin_get_serialized_sample_min_size; \
        record.get_serialized_sample_size = T##Plugin_get_serialized_sample_size;         \
        record.get_key_kind = T##Plugin_get_key_kind;                                     \
        record.typeCode = &Description<T>::code;                                          \
        record.typeName = T##TYPENAME;                                                    \
        return record;                                                                    \
    }
ORVANE_STRUCTURES(ORVANE_KEYLESS_RECORD)

#define ORVANE_KEYED_RECORD(T)                                                        \
    template <>                                                                       \
    constexpr TULVTypePlugin keyed_record<T>() {                                      \
        TULVTypePlugin record = keyless_record<T>();                                  \
        record.instance_to_keyhash = T##Plugin_instance_to_keyhash;                   \
        record.serialized_sample_to_keyhash = T##Plugin_serialized_sample_to_keyhash; \
        record.get_key = TULVTypePluginDefaultEndpointData_getKey;                    \
        record.return_key = TULVTypePluginDefaultEndpointData_returnKey;              \
        record.get_serialized_key_max_size = T##Plugin_get_serialized_key_max_size;   \
        record.instance_to_key = T##Plugin_instance_to_key;                           \
        record.key_to_instance = T##Plugin_key_to_instance;                           \
        record.serialize_key = T##Plugin_serialize_key;                               \
        record.deserialize_key = T##Plugin_deserialize_key;                           \
        record.deserialize_key_sample = T##Plugin_deserialize_key_sample;             \
        return record;                                                                \
    }
ORVANE_KEYED_TYPES(ORVANE_KEYED_RECORD)

}  // namespace

#define ORVANE_DEFINE_RECORD(T, make)                       \
    template <>                                             \
    const TULVTypePlugin& plugin_record<T>() {              \
        static constexpr TULVTypePlugin record = make<T>(); \
        return record;                                      \
    }
#define ORVANE_DEFINE_KEYED_RECORD(T) ORVANE_DEFINE_RECORD(T, keyed_record)
ORVANE_KEYED_TYPES(ORVANE_DEFINE_KEYED_RECORD)
ORVANE_DEFINE_RECORD(QEL_KX_ADMIN_CommandRequest, keyless_record)
ORVANE_DEFINE_RECORD(QEL_KX_ADMIN_Command, keyless_record)
ORVANE_DEFINE_RECORD(QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity, keyless_record)

}  // namespace orvane::types
