/**
 * @file type_plugin.h
 * @brief The type plugin: everything the middleware knows of a data type.
 *
 * A plugin is a table of operations over samples (records of the type) and CDR streams. The
 * middleware copies it at registration and calls it while it writes and reads. A plugin keeps
 * endpoint data for each writer or reader. The middleware serialises the operations that use the
 * data of the same endpoint; those of different endpoints run concurrently.
 */
#ifndef PEXA_TYPE_PLUGIN_H
#define PEXA_TYPE_PLUGIN_H

#include "pexa/base.h"
#include "pexa/cdr_stream.h"
#include "pexa/sequence.h"
#include "pexa/typecode.h"

PEXA_BEGIN_C

typedef void* TULVParticipantData;
typedef void* TULVEndpointData;

/** Key kind of a type. */
typedef enum TULVKeyKind { TULV_NO_KEY = 0, TULV_USER_KEY = 2 } TULVKeyKind;
/** Side of an endpoint. */
typedef enum TULVEndpointKind {
    TULV_ENDPOINT_READER = 1,
    TULV_ENDPOINT_WRITER = 2
} TULVEndpointKind;

/** An endpoint that attaches, as the middleware describes it to a plugin. */
typedef struct TULVEndpointInfo {
    TULVEndpointKind kind;
    /** Samples made at attachment, and most that may be lent at a time (or unlimited). */
    DDS_Long initialSamples;
    DDS_Long maximalSamples;
} TULVEndpointInfo;

/** Value of @ref TULVTypePlugin::pluginKind. */
#define TULV_TYPE_PLUGIN_KIND 5640756u

typedef struct TULVTypePluginVersion {
    DDS_Octet major;
    DDS_Octet minor;
    DDS_Octet release;
    DDS_Octet revision;
} TULVTypePluginVersion;

/** The largest sample size that the middleware accepts, returned when a size overflows. */
#define TULV_MAX_SERIALIZED_SIZE 2147482623u

/**
 * The operations. All return 0 or NULL on failure. `endpointQos` is reserved and NULL. Key
 * operations are NULL for keyless types. A `handle` parameter is reserved and NULL.
 */
typedef struct TULVTypePlugin {
    TULVParticipantData (*on_participant_attached)(void* registrationData,
                                                   const struct DDS_TypeCode* typeCode);
    void (*on_participant_detached)(TULVParticipantData participantData);
    TULVEndpointData (*on_endpoint_attached)(TULVParticipantData participantData,
                                             const TULVEndpointInfo* info);
    void (*on_endpoint_detached)(TULVEndpointData endpointData);
    DDS_Boolean (*copy_sample)(TULVEndpointData endpointData, void* destination,
                               const void* source);
    void* (*create_sample)(TULVEndpointData endpointData);
    void (*destroy_sample)(TULVEndpointData endpointData, void* sample);
    /** Fills `hash` and sets its length to 16. */
    DDS_Boolean (*instance_to_keyhash)(TULVEndpointData endpointData, QELKeyHash* hash,
                                       const void* instance);
    DDS_Boolean (*serialized_sample_to_keyhash)(TULVEndpointData endpointData, QELCdrStream* stream,
                                                QELKeyHash* hash,
                                                DDS_Boolean deserializeEncapsulation,
                                                void* endpointQos);
    DDS_Boolean (*serialize)(TULVEndpointData endpointData, const void* sample,
                             QELCdrStream* stream, DDS_Boolean serializeEncapsulation,
                             DDS_UnsignedShort encapsulationId, DDS_Boolean serializeSample,
                             void* endpointQos);
    /** `*sample` is decoded in place; `dropSample` (may be NULL) is left as it is. */
    DDS_Boolean (*deserialize)(TULVEndpointData endpointData, void** sample,
                               DDS_Boolean* dropSample, QELCdrStream* stream,
                               DDS_Boolean deserializeEncapsulation, DDS_Boolean deserializeSample,
                               void* endpointQos);
    /** Lends a sample of the endpoint's pool. */
    void* (*get_sample)(TULVEndpointData endpointData, void** handle);
    void (*return_sample)(TULVEndpointData endpointData, void* sample, void* handle);
    DDS_UnsignedLong (*get_serialized_sample_max_size)(TULVEndpointData endpointData,
                                                       DDS_Boolean includeEncapsulation,
                                                       DDS_UnsignedShort encapsulationId,
                                                       DDS_UnsignedLong currentAlignment);
    DDS_UnsignedLong (*get_serialized_sample_min_size)(TULVEndpointData endpointData,
                                                       DDS_Boolean includeEncapsulation,
                                                       DDS_UnsignedShort encapsulationId,
                                                       DDS_UnsignedLong currentAlignment);
    DDS_UnsignedLong (*get_serialized_sample_size)(TULVEndpointData endpointData,
                                                   DDS_Boolean includeEncapsulation,
                                                   DDS_UnsignedShort encapsulationId,
                                                   DDS_UnsignedLong currentAlignment,
                                                   const void* sample);
    TULVKeyKind (*get_key_kind)(void);
    /** Lends a key holder of the endpoint's pool. */
    void* (*get_key)(TULVEndpointData endpointData, void** handle);
    void (*return_key)(TULVEndpointData endpointData, void* key, void* handle);
    DDS_UnsignedLong (*get_serialized_key_max_size)(TULVEndpointData endpointData,
                                                    DDS_Boolean includeEncapsulation,
                                                    DDS_UnsignedShort encapsulationId,
                                                    DDS_UnsignedLong currentAlignment);
    DDS_Boolean (*instance_to_key)(TULVEndpointData endpointData, void* key, const void* instance);
    DDS_Boolean (*key_to_instance)(TULVEndpointData endpointData, void* instance, const void* key);
    DDS_Boolean (*serialize_key)(TULVEndpointData endpointData, const void* key,
                                 QELCdrStream* stream, DDS_Boolean serializeEncapsulation,
                                 DDS_UnsignedShort encapsulationId, DDS_Boolean serializeKey,
                                 void* endpointQos);
    DDS_Boolean (*deserialize_key)(TULVEndpointData endpointData, void** key,
                                   DDS_Boolean* dropSample, QELCdrStream* stream,
                                   DDS_Boolean deserializeEncapsulation, DDS_Boolean deserializeKey,
                                   void* endpointQos);
    DDS_Boolean (*deserialize_key_sample)(TULVEndpointData endpointData, void* key,
                                          QELCdrStream* stream,
                                          DDS_Boolean deserializeEncapsulation,
                                          DDS_Boolean deserializeKey, void* endpointQos);
    /** Always NULL. */
    void* reserved;
    const struct DDS_TypeCode* typeCode;
    DDS_UnsignedLong pluginKind;
    TULVTypePluginVersion version;
    /** Lends an encoding buffer of a writer's pool, large enough for any sample. */
    char* (*get_buffer)(TULVEndpointData endpointData, size_t* size);
    void (*return_buffer)(TULVEndpointData endpointData, char* buffer);
    /** The type's own name; the name it is registered under may differ. */
    const char* typeName;
} TULVTypePlugin;

/**
 * @name Default participant and endpoint data
 * Endpoint data for most plugins: pools of samples and key holders, an MD5 stream, encoding
 * buffers.
 * @{
 */
typedef void* (*TULVCreateData)(void);
typedef void (*TULVDestroyData)(void* data);
typedef DDS_UnsignedLong (*TULVSerializedSize)(TULVEndpointData endpointData,
                                               DDS_Boolean includeEncapsulation,
                                               DDS_UnsignedShort encapsulationId,
                                               DDS_UnsignedLong currentAlignment);

/** @return participant data without content of its own, or NULL without memory. */
PEXA_API TULVParticipantData TULVTypePluginDefaultParticipantData_new(void);
PEXA_API void TULVTypePluginDefaultParticipantData_delete(TULVParticipantData participantData);

/**
 * @param createKey, destroyKey NULL for keyless types.
 * @return endpoint data with its initial samples made, or NULL (nothing leaks).
 */
PEXA_API TULVEndpointData TULVTypePluginDefaultEndpointData_new(
    TULVParticipantData participantData, const TULVEndpointInfo* info, TULVCreateData createSample,
    TULVDestroyData destroySample, TULVCreateData createKey, TULVDestroyData destroyKey);
/** Frees the data with all samples, keys and buffers; NULL is ignored. */
PEXA_API void TULVTypePluginDefaultEndpointData_delete(TULVEndpointData endpointData);
/** Makes the MD5 stream with a buffer of @p maximumKeySize bytes. @return 0 without memory. */
PEXA_API DDS_Boolean TULVTypePluginDefaultEndpointData_createMD5Stream(
    TULVEndpointData endpointData, DDS_UnsignedLong maximumKeySize);
/** @return the MD5 stream, or NULL when none was made. */
PEXA_API QELCdrStream* TULVTypePluginDefaultEndpointData_getMD5Stream(
    TULVEndpointData endpointData);
/** Stores a writer's largest encoded sample, which decides the form of member headers. */
PEXA_API void TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(
    TULVEndpointData endpointData, DDS_UnsignedLong size);
PEXA_API DDS_UnsignedLong
TULVTypePluginDefaultEndpointData_getMaxSizeSerializedSample(TULVEndpointData endpointData);
/** Makes a writer's pool of encoding buffers of `maxSize(endpointData, 1, native, 0)` bytes. */
PEXA_API DDS_Boolean TULVTypePluginDefaultEndpointData_createWriterPool(
    TULVEndpointData endpointData, TULVSerializedSize maxSize);

PEXA_API void* TULVTypePluginDefaultEndpointData_createSample(TULVEndpointData endpointData);
PEXA_API void TULVTypePluginDefaultEndpointData_deleteSample(TULVEndpointData endpointData,
                                                             void* sample);
/** Lends a sample; NULL when the maximum is lent or memory is short. */
PEXA_API void* TULVTypePluginDefaultEndpointData_getSample(TULVEndpointData endpointData,
                                                           void** handle);
PEXA_API void TULVTypePluginDefaultEndpointData_returnSample(TULVEndpointData endpointData,
                                                             void* sample, void* handle);
/** @return a sample of the endpoint's own, for passing use by one operation at a time. */
PEXA_API void* TULVTypePluginDefaultEndpointData_getTempSample(TULVEndpointData endpointData);
PEXA_API void* TULVTypePluginDefaultEndpointData_getKey(TULVEndpointData endpointData,
                                                        void** handle);
PEXA_API void TULVTypePluginDefaultEndpointData_returnKey(TULVEndpointData endpointData, void* key,
                                                          void* handle);
PEXA_API char* TULVTypePluginDefaultEndpointData_getBuffer(TULVEndpointData endpointData,
                                                           size_t* size);
PEXA_API void TULVTypePluginDefaultEndpointData_returnBuffer(TULVEndpointData endpointData,
                                                             char* buffer);
/** @} */

/**
 * @name Printing
 * The one-line printers of plain values on standard output: indentation (three blanks a level),
 * label, ": ", value, newline.
 * @{
 */
PEXA_API void QELPrint_indent(DDS_UnsignedLong level);
PEXA_API void QELPrint_long(DDS_Long value, const char* label, DDS_UnsignedLong level);
/** Prints the text in quotes, or NULL. */
PEXA_API void QELPrint_string(const char* value, const char* label, DDS_UnsignedLong level);
/** Prints the enumerator's name and number. */
PEXA_API void QELPrint_enum(DDS_Long value, const char* name, const char* label,
                            DDS_UnsignedLong level);
/** @} */

PEXA_END_C

#endif
