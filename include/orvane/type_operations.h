/**
 * @file type_operations.h
 * @brief The operations of every published type, as lists.
 *
 * An entry `OP(Prefix, T, Result, operation, parameters, arguments)` stands for the function
 * `Result Prefix_operation parameters` of type `T`; the arguments are the parameters' names.
 * types.h makes the declarations of the lists, the library the definitions.
 *
 * Unless an entry says otherwise: a DDS_Boolean result is 1 on success and 0 on failure, a NULL
 * argument is a failure that changes nothing, and an operation may run concurrently with any other
 * that works on other records, streams and endpoint data.
 */
#ifndef ORVANE_TYPE_OPERATIONS_H
#define ORVANE_TYPE_OPERATIONS_H

/**
 * Value operations, `T_…`.
 *
 * The initial value: numbers and identifiers 0, enumerations their enumerator 0, strings and
 * sequences empty. Only a record that is zero-filled, or has been initialised, may be initialised
 * without memory, copied into or finalised.
 */
#define ORVANE_VALUE_OPERATIONS(OP, T)                                                          \
    /** @return the type code, a static record that is complete at all times. */                \
    OP(T, T, const DDS_TypeCode*, get_typecode, (void), ())                                     \
    /** As initialize_ex with both flags set. */                                                \
    OP(T, T, DDS_Boolean, initialize, (T * self), (self))                                       \
    /** As initialize_w_params with default parameters but for the two flags. */                \
    OP(T, T, DDS_Boolean, initialize_ex,                                                        \
       (T * self, DDS_Boolean allocatePointers, DDS_Boolean allocateMemory),                    \
       (self, allocatePointers, allocateMemory))                                                \
    /** Gives every member its initial value. With allocate_memory, strings and sequence        \
     *  buffers are made at their full bound, whatever the record held before; without, those   \
     *  that exist are emptied in place and nothing is allocated.                               \
     *  @return 0 without memory; the record can be finalised. */                               \
    OP(T, T, DDS_Boolean, initialize_w_params,                                                  \
       (T * self, const DDS_TypeAllocationParams_t* params), (self, params))                    \
    /** As finalize_ex with the flag set. */                                                    \
    OP(T, T, void, finalize, (T * self), (self))                                                \
    /** As finalize_w_params with default parameters but for the flag. */                       \
    OP(T, T, void, finalize_ex, (T * self, DDS_Boolean deletePointers), (self, deletePointers)) \
    /** Frees strings and sequence buffers and forgets them, so that finalising again is        \
     *  harmless. NULL is ignored. */                                                           \
    OP(T, T, void, finalize_w_params, (T * self, const DDS_TypeDeallocationParams_t* params),   \
       (self, params))                                                                          \
    /** The types have no optional members: changes nothing. */                                 \
    OP(T, T, void, finalize_optional_members, (T * self, DDS_Boolean deletePointers),           \
       (self, deletePointers))                                                                  \
    /** Copies the value, strings into the destination's own buffers; of a union only the       \
     *  discriminator and the branch that it selects. A destination sequence may grow.          \
     *  @return 0 when a text or a sequence does not fit or a buffer is NULL; the members       \
     *  before it have been copied. */                                                          \
    OP(T, T, DDS_Boolean, copy, (T * self, const T* source), (self, source))

/**
 * Encoding, `TPlugin_…`.
 *
 * The endpoint data may be NULL: member headers are then of the short form. `endpointQos` is
 * reserved and ignored. An operation that fails leaves the stream's cursor where it failed.
 */
#define ORVANE_ENCODING_OPERATIONS(OP, T)                                                          \
    /** Writes the encapsulation header, if asked for, and the sample, if asked for. A mutable     \
     *  type writes identifier 2 for 0 and 3 for 1.                                                \
     *  @return 0: no room, an identifier above 3, a string longer than its bound or NULL, a       \
     *  sequence longer than its bound. */                                                         \
    OP(T##Plugin, T, DDS_Boolean, serialize,                                                       \
       (TULVEndpointData endpointData, const void* sample, QELCdrStream* stream,                   \
        DDS_Boolean serializeEncapsulation, DDS_UnsignedShort encapsulationId,                     \
        DDS_Boolean serializeSample, void* endpointQos),                                           \
       (endpointData, sample, stream, serializeEncapsulation, encapsulationId, serializeSample,    \
        endpointQos))                                                                              \
    /** Reads what serialize writes into an initialised sample. Members that are missing get       \
     *  their initial value, unknown ones are passed over. Nothing is allocated.                   \
     *  @return 0: malformed or incomplete input, an identifier above 3, an unknown member that    \
     *  must be understood, a value out of bounds; for an enumeration's number that is no          \
     *  enumerator the stream's rejection mark is set too. The sample is then partly decoded,      \
     *  yet valid. */                                                                              \
    OP(T##Plugin, T, DDS_Boolean, deserialize_sample,                                              \
       (TULVEndpointData endpointData, T * sample, QELCdrStream * stream,                          \
        DDS_Boolean deserializeEncapsulation, DDS_Boolean deserializeSample, void* endpointQos),   \
       (endpointData, sample, stream, deserializeEncapsulation, deserializeSample, endpointQos))   \
    /** Passes over one encoded sample without looking at the values. */                           \
    OP(T##Plugin, T, DDS_Boolean, skip,                                                            \
       (TULVEndpointData endpointData, QELCdrStream * stream, DDS_Boolean skipEncapsulation,       \
        DDS_Boolean skipSample, void* endpointQos),                                                \
       (endpointData, stream, skipEncapsulation, skipSample, endpointQos))                         \
    /** @return bytes that any sample takes at most, counted from a position of                    \
     *  currentAlignment bytes behind the alignment origin; 1 for an identifier above 3 when       \
     *  the encapsulation is included; @ref TULV_MAX_SERIALIZED_SIZE when the end would lie        \
     *  beyond that. */                                                                            \
    OP(T##Plugin, T, DDS_UnsignedLong, get_serialized_sample_max_size,                             \
       (TULVEndpointData endpointData, DDS_Boolean includeEncapsulation,                           \
        DDS_UnsignedShort encapsulationId, DDS_UnsignedLong currentAlignment),                     \
       (endpointData, includeEncapsulation, encapsulationId, currentAlignment))                    \
    /** @return bytes of the smallest sample with headers of the extended form where the form      \
     *  is open: with short headers a sample may be smaller. Else as above. */                     \
    OP(T##Plugin, T, DDS_UnsignedLong, get_serialized_sample_min_size,                             \
       (TULVEndpointData endpointData, DDS_Boolean includeEncapsulation,                           \
        DDS_UnsignedShort encapsulationId, DDS_UnsignedLong currentAlignment),                     \
       (endpointData, includeEncapsulation, encapsulationId, currentAlignment))                    \
    /** @return bytes that serialize writes for this sample; 0 for a NULL sample; else as          \
     *  above. */                                                                                  \
    OP(T##Plugin, T, DDS_UnsignedLong, get_serialized_sample_size,                                 \
       (TULVEndpointData endpointData, DDS_Boolean includeEncapsulation,                           \
        DDS_UnsignedShort encapsulationId, DDS_UnsignedLong currentAlignment, const void* sample), \
       (endpointData, includeEncapsulation, encapsulationId, currentAlignment, sample))

/**
 * The other operations of a type plugin, `TPlugin_…`. `TPlugin_new` makes the plugin's record, or
 * returns NULL without memory; `TPlugin_delete` frees it and ignores NULL. Operations that are also
 * entries of the record have the types that @ref TULVTypePlugin gives them.
 */
#define ORVANE_PLUGIN_OPERATIONS(OP, T)                                                            \
    OP(T##Plugin, T, TULVParticipantData, on_participant_attached,                                 \
       (void* registrationData, const struct DDS_TypeCode* typeCode),                              \
       (registrationData, typeCode))                                                               \
    OP(T##Plugin, T, void, on_participant_detached, (TULVParticipantData participantData),         \
       (participantData))                                                                          \
    /** Makes the data of an endpoint: samples, for keyed types also key holders and a stream      \
     *  for key hashes, for writers the largest size and a pool of encoding buffers.               \
     *  @return NULL without memory. */                                                            \
    OP(T##Plugin, T, TULVEndpointData, on_endpoint_attached,                                       \
       (TULVParticipantData participantData, const TULVEndpointInfo* info),                        \
       (participantData, info))                                                                    \
    OP(T##Plugin, T, void, on_endpoint_detached, (TULVEndpointData endpointData), (endpointData))  \
    /** The type's copy. */                                                                        \
    OP(T##Plugin, T, DDS_Boolean, copy_sample,                                                     \
       (TULVEndpointData endpointData, void* destination, const void* source),                     \
       (endpointData, destination, source))                                                        \
    /** deserialize_sample with the stream's rejection mark cleared first. */                      \
    OP(T##Plugin, T, DDS_Boolean, deserialize,                                                     \
       (TULVEndpointData endpointData, void** sample, DDS_Boolean* dropSample,                     \
        QELCdrStream* stream, DDS_Boolean deserializeEncapsulation, DDS_Boolean deserializeSample, \
        void* endpointQos),                                                                        \
       (endpointData, sample, dropSample, stream, deserializeEncapsulation, deserializeSample,     \
        endpointQos))                                                                              \
    /** Encodes with encapsulation, in this host's byte order.                                     \
     *  @param buffer NULL: only the length is told.                                               \
     *  @param length in: bytes of the buffer; out: bytes of the encoding, unchanged on            \
     *    failure. */                                                                              \
    OP(T##Plugin, T, DDS_Boolean, serialize_to_cdr_buffer,                                         \
       (char* buffer, DDS_UnsignedLong* length, const T* sample), (buffer, length, sample))        \
    /** Decodes a buffer that starts with the encapsulation header; results as deserialize. */     \
    OP(T##Plugin, T, DDS_Boolean, deserialize_from_cdr_buffer,                                     \
       (T * sample, const char* buffer, DDS_UnsignedLong length), (sample, buffer, length))        \
    /** get_serialized_sample_max_size that tells an overflow apart.                               \
     *  @param overflow may be NULL; set when the end would lie beyond                             \
     *    @ref TULV_MAX_SERIALIZED_SIZE, else left alone. */                                       \
    OP(T##Plugin, T, DDS_UnsignedLong, get_serialized_sample_max_size_ex,                          \
       (TULVEndpointData endpointData, DDS_Boolean * overflow, DDS_Boolean includeEncapsulation,   \
        DDS_UnsignedShort encapsulationId, DDS_UnsignedLong currentAlignment),                     \
       (endpointData, overflow, includeEncapsulation, encapsulationId, currentAlignment))          \
    OP(T##Plugin, T, TULVKeyKind, get_key_kind, (void), ())                                        \
    /** Hands a sample back to the endpoint's pool. */                                             \
    OP(T##Plugin, T, void, return_sample,                                                          \
       (TULVEndpointData endpointData, void* sample, void* handle),                                \
       (endpointData, sample, handle))

/** Plugin operations of keyed types. A key holder is a record of the type itself. */
#define ORVANE_PLUGIN_KEY_OPERATIONS(OP, T)                                                       \
    /** serialize for the key members only. */                                                    \
    OP(T##Plugin, T, DDS_Boolean, serialize_key,                                                  \
       (TULVEndpointData endpointData, const void* key, QELCdrStream* stream,                     \
        DDS_Boolean serializeEncapsulation, DDS_UnsignedShort encapsulationId,                    \
        DDS_Boolean serializeKey, void* endpointQos),                                             \
       (endpointData, key, stream, serializeEncapsulation, encapsulationId, serializeKey,         \
        endpointQos))                                                                             \
    /** deserialize for the key members only. */                                                  \
    OP(T##Plugin, T, DDS_Boolean, deserialize_key,                                                \
       (TULVEndpointData endpointData, void** key, DDS_Boolean* dropSample, QELCdrStream* stream, \
        DDS_Boolean deserializeEncapsulation, DDS_Boolean deserializeKey, void* endpointQos),     \
       (endpointData, key, dropSample, stream, deserializeEncapsulation, deserializeKey,          \
        endpointQos))                                                                             \
    /** deserialize_sample for the key members only; the others get their initial value. */       \
    OP(T##Plugin, T, DDS_Boolean, deserialize_key_sample,                                         \
       (TULVEndpointData endpointData, void* key, QELCdrStream* stream,                           \
        DDS_Boolean deserializeEncapsulation, DDS_Boolean deserializeKey, void* endpointQos),     \
       (endpointData, key, stream, deserializeEncapsulation, deserializeKey, endpointQos))        \
    /** Reads a whole encoded sample and keeps its key members. */                                \
    OP(T##Plugin, T, DDS_Boolean, serialized_sample_to_key,                                       \
       (TULVEndpointData endpointData, T * sample, QELCdrStream * stream,                         \
        DDS_Boolean deserializeEncapsulation, DDS_Boolean deserializeKey, void* endpointQos),     \
       (endpointData, sample, stream, deserializeEncapsulation, deserializeKey, endpointQos))     \
    /** Copies the key members of a sample into a key holder. */                                  \
    OP(T##Plugin, T, DDS_Boolean, instance_to_key,                                                \
       (TULVEndpointData endpointData, void* key, const void* instance),                          \
       (endpointData, key, instance))                                                             \
    /** Copies the key members of a key holder into a sample. */                                  \
    OP(T##Plugin, T, DDS_Boolean, key_to_instance,                                                \
       (TULVEndpointData endpointData, void* instance, const void* key),                          \
       (endpointData, instance, key))                                                             \
    /** The key hash: the big-endian encoding of the key, zero-padded, when any key fits into     \
     *  16 bytes, else the MD5 digest of that encoding. The endpoint data may be NULL, which      \
     *  costs an allocation. */                                                                   \
    OP(T##Plugin, T, DDS_Boolean, instance_to_keyhash,                                            \
       (TULVEndpointData endpointData, QELKeyHash * hash, const void* instance),                  \
       (endpointData, hash, instance))                                                            \
    /** The key hash of an encoded sample; needs endpoint data, whose own sample it uses. */      \
    OP(T##Plugin, T, DDS_Boolean, serialized_sample_to_keyhash,                                   \
       (TULVEndpointData endpointData, QELCdrStream * stream, QELKeyHash * hash,                  \
        DDS_Boolean deserializeEncapsulation, void* endpointQos),                                 \
       (endpointData, stream, hash, deserializeEncapsulation, endpointQos))                       \
    /** As get_serialized_sample_max_size, of serialize_key. */                                   \
    OP(T##Plugin, T, DDS_UnsignedLong, get_serialized_key_max_size,                               \
       (TULVEndpointData endpointData, DDS_Boolean includeEncapsulation,                          \
        DDS_UnsignedShort encapsulationId, DDS_UnsignedLong currentAlignment),                    \
       (endpointData, includeEncapsulation, encapsulationId, currentAlignment))                   \
    /** As get_serialized_sample_max_size_ex, of serialize_key. */                                \
    OP(T##Plugin, T, DDS_UnsignedLong, get_serialized_key_max_size_ex,                            \
       (TULVEndpointData endpointData, DDS_Boolean * overflow, DDS_Boolean includeEncapsulation,  \
        DDS_UnsignedShort encapsulationId, DDS_UnsignedLong currentAlignment),                    \
       (endpointData, overflow, includeEncapsulation, encapsulationId, currentAlignment))

/** Records on the heap, `TPluginSupport_…`. */
#define ORVANE_PLUGIN_DATA_OPERATIONS(OP, T)                                                      \
    /** @return a new, initialised record, or NULL without memory. */                             \
    OP(T##PluginSupport, T, T*, create_data, (void), ())                                          \
    OP(T##PluginSupport, T, T*, create_data_ex, (DDS_Boolean allocatePointers),                   \
       (allocatePointers))                                                                        \
    OP(T##PluginSupport, T, T*, create_data_w_params, (const DDS_TypeAllocationParams_t* params), \
       (params))                                                                                  \
    /** Finalises and frees a record; NULL is ignored. */                                         \
    OP(T##PluginSupport, T, void, destroy_data, (T * sample), (sample))                           \
    OP(T##PluginSupport, T, void, destroy_data_ex, (T * sample, DDS_Boolean deletePointers),      \
       (sample, deletePointers))                                                                  \
    OP(T##PluginSupport, T, void, destroy_data_w_params,                                          \
       (T * sample, const DDS_TypeDeallocationParams_t* params), (sample, params))                \
    /** The type's copy. */                                                                       \
    OP(T##PluginSupport, T, DDS_Boolean, copy_data, (T * destination, const T* source),           \
       (destination, source))

/** Key holders on the heap: as create_data and destroy_data. */
#define ORVANE_PLUGIN_KEY_DATA_OPERATIONS(OP, T)                                                   \
    OP(T##PluginSupport, T, T*, create_key, (void), ())                                            \
    OP(T##PluginSupport, T, T*, create_key_ex, (DDS_Boolean allocatePointers), (allocatePointers)) \
    OP(T##PluginSupport, T, void, destroy_key, (T * key), (key))                                   \
    OP(T##PluginSupport, T, void, destroy_key_ex, (T * key, DDS_Boolean deletePointers),           \
       (key, deletePointers))

/** Printing on standard output, `TPluginSupport_…`. */
#define ORVANE_PRINT_OPERATIONS(OP, T)                                                    \
    /** Prints the description at the indentation level and the members one level deeper. \
     *  A NULL sample prints "NULL", a NULL description nothing. */                       \
    OP(T##PluginSupport, T, void, print_data,                                             \
       (const T* sample, const char* description, DDS_UnsignedLong indent),               \
       (sample, description, indent))

/** `TTypeSupport_…`. Operations without a comment forward to that of TPluginSupport. */
#define ORVANE_TYPE_SUPPORT_OPERATIONS(OP, T)                                                     \
    /** Makes the type known to a participant under typeName.                                     \
     *  @return ERROR: NULL participant or no memory; else the participant's result. */           \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, register_type,                                        \
       (DDS_DomainParticipant * participant, const char* typeName), (participant, typeName))      \
    /** @return ERROR: NULL participant; else the participant's result. */                        \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, unregister_type,                                      \
       (DDS_DomainParticipant * participant, const char* typeName), (participant, typeName))      \
    /** @return the type's own name, such as "QEL::KX::LogMessage". */                            \
    OP(T##TypeSupport, T, const char*, get_type_name, (void), ())                                 \
    OP(T##TypeSupport, T, const DDS_TypeCode*, get_typecode, (void), ())                          \
    OP(T##TypeSupport, T, T*, create_data, (void), ())                                            \
    OP(T##TypeSupport, T, T*, create_data_ex, (DDS_Boolean allocatePointers), (allocatePointers)) \
    OP(T##TypeSupport, T, T*, create_data_w_params, (const DDS_TypeAllocationParams_t* params),   \
       (params))                                                                                  \
    /** The delete operations always return OK. */                                                \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, delete_data, (T * sample), (sample))                  \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, delete_data_ex,                                       \
       (T * sample, DDS_Boolean deletePointers), (sample, deletePointers))                        \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, delete_data_w_params,                                 \
       (T * sample, const DDS_TypeDeallocationParams_t* params), (sample, params))                \
    /** The initialize and finalize operations are the value operations, and always return OK:    \
     *  whoever needs to see that memory is short calls T_initialize. */                          \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, initialize_data, (T * sample), (sample))              \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, initialize_data_ex,                                   \
       (T * sample, DDS_Boolean allocatePointers), (sample, allocatePointers))                    \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, initialize_data_w_params,                             \
       (T * sample, const DDS_TypeAllocationParams_t* params), (sample, params))                  \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, finalize_data, (T * sample), (sample))                \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, finalize_data_ex,                                     \
       (T * sample, DDS_Boolean deletePointers), (sample, deletePointers))                        \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, finalize_data_w_params,                               \
       (T * sample, const DDS_TypeDeallocationParams_t* params), (sample, params))                \
    /** @return OK, or ERROR when the type's copy fails. */                                       \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, copy_data, (T * destination, const T* source),        \
       (destination, source))                                                                     \
    /** Prints without a description at indentation 0. */                                         \
    OP(T##TypeSupport, T, void, print_data, (const T* sample), (sample))                          \
    /** serialize_to_cdr_buffer of TPlugin. @return OK or ERROR. */                               \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, serialize_data_to_cdr_buffer,                         \
       (char* buffer, DDS_UnsignedLong* length, const T* sample), (buffer, length, sample))       \
    /** deserialize_from_cdr_buffer of TPlugin. @return OK or ERROR. */                           \
    OP(T##TypeSupport, T, DDS_ReturnCode_t, deserialize_data_from_cdr_buffer,                     \
       (T * sample, const char* buffer, DDS_UnsignedLong length), (sample, buffer, length))       \
    /** Nothing is kept per type: does nothing. */                                                \
    OP(T##TypeSupport, T, void, finalize, (void), ())

/**
 * Typed writers, `TDataWriter_…`: the operations of publication.h, with its results. A handle or
 * timestamp that is NULL is BAD_PARAMETER (or the NIL handle) after a report. `_w_timestamp` gives
 * the source timestamp, `_w_params` handle and timestamp at once.
 */
#define ORVANE_WRITER_OPERATIONS(OP, T)                                                      \
    /** @return the writer, or NULL after a report: NULL, or a writer of another type. */    \
    OP(T##DataWriter, T, T##DataWriter*, narrow, (DDS_DataWriter * writer), (writer))        \
    /** @return the writer, or NULL after a report. */                                       \
    OP(T##DataWriter, T, DDS_DataWriter*, as_datawriter, (T##DataWriter * writer), (writer)) \
    OP(T##DataWriter, T, DDS_ReturnCode_t, write,                                            \
       (T##DataWriter * self, const T* sample, const DDS_InstanceHandle_t* handle),          \
       (self, sample, handle))                                                               \
    OP(T##DataWriter, T, DDS_ReturnCode_t, write_w_timestamp,                                \
       (T##DataWriter * self, const T* sample, const DDS_InstanceHandle_t* handle,           \
        const DDS_Time_t* timestamp),                                                        \
       (self, sample, handle, timestamp))                                                    \
    OP(T##DataWriter, T, DDS_ReturnCode_t, write_w_params,                                   \
       (T##DataWriter * self, const T* sample, const DDS_WriteParams_t* params),             \
       (self, sample, params))                                                               \
    OP(T##DataWriter, T, DDS_ReturnCode_t, dispose,                                          \
       (T##DataWriter * self, const T* sample, const DDS_InstanceHandle_t* handle),          \
       (self, sample, handle))                                                               \
    OP(T##DataWriter, T, DDS_ReturnCode_t, dispose_w_timestamp,                              \
       (T##DataWriter * self, const T* sample, const DDS_InstanceHandle_t* handle,           \
        const DDS_Time_t* timestamp),                                                        \
       (self, sample, handle, timestamp))                                                    \
    OP(T##DataWriter, T, DDS_ReturnCode_t, dispose_w_params,                                 \
       (T##DataWriter * self, const T* sample, const DDS_WriteParams_t* params),             \
       (self, sample, params))                                                               \
    OP(T##DataWriter, T, DDS_InstanceHandle_t, register_instance,                            \
       (T##DataWriter * self, const T* sample), (self, sample))                              \
    OP(T##DataWriter, T, DDS_InstanceHandle_t, register_instance_w_timestamp,                \
       (T##DataWriter * self, const T* sample, const DDS_Time_t* timestamp),                 \
       (self, sample, timestamp))                                                            \
    OP(T##DataWriter, T, DDS_InstanceHandle_t, register_instance_w_params,                   \
       (T##DataWriter * self, const T* sample, const DDS_WriteParams_t* params),             \
       (self, sample, params))                                                               \
    OP(T##DataWriter, T, DDS_ReturnCode_t, unregister_instance,                              \
       (T##DataWriter * self, const T* sample, const DDS_InstanceHandle_t* handle),          \
       (self, sample, handle))                                                               \
    OP(T##DataWriter, T, DDS_ReturnCode_t, unregister_instance_w_timestamp,                  \
       (T##DataWriter * self, const T* sample, const DDS_InstanceHandle_t* handle,           \
        const DDS_Time_t* timestamp),                                                        \
       (self, sample, handle, timestamp))                                                    \
    OP(T##DataWriter, T, DDS_ReturnCode_t, unregister_instance_w_params,                     \
       (T##DataWriter * self, const T* sample, const DDS_WriteParams_t* params),             \
       (self, sample, params))                                                               \
    /** Fills the key members of the sample. */                                              \
    OP(T##DataWriter, T, DDS_ReturnCode_t, get_key_value,                                    \
       (T##DataWriter * self, T * sample, const DDS_InstanceHandle_t* handle),               \
       (self, sample, handle))                                                               \
    OP(T##DataWriter, T, DDS_InstanceHandle_t, lookup_instance,                              \
       (T##DataWriter * self, const T* sample), (self, sample))

/**
 * Reading and taking, `TDataReader_…`: the operations of subscription.h, with its results.
 *
 * A data sequence without a buffer gets the samples on loan, which return_loan ends; one with a
 * buffer of its own gets copies, at most its maximum. NO_DATA leaves it with length 0. A data
 * sequence that is NULL is BAD_PARAMETER after a report.
 *
 * An entry `FORM(T, form, (arguments), parameters…)` stands for the three functions `read` + form,
 * `take` + form, and `read_or_take` + form + `I`, which has a take flag as its last parameter.
 */
#define ORVANE_READER_FORMS(FORM, T)                                                             \
    FORM(T, , (self, data, infos, maxSamples, sampleStates, viewStates, instanceStates),         \
         T##DataReader* self, T##Seq* data, DDS_SampleInfoSeq* infos, DDS_Long maxSamples,       \
         DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,                         \
         DDS_InstanceStateMask instanceStates)                                                   \
    /** What a condition selects, whose masks count. */                                          \
    FORM(T, _w_condition, (self, data, infos, maxSamples, condition), T##DataReader* self,       \
         T##Seq* data, DDS_SampleInfoSeq* infos, DDS_Long maxSamples,                            \
         DDS_ReadCondition* condition)                                                           \
    /** Samples of one instance. */                                                              \
    FORM(T, _instance,                                                                           \
         (self, data, infos, maxSamples, handle, sampleStates, viewStates, instanceStates),      \
         T##DataReader* self, T##Seq* data, DDS_SampleInfoSeq* infos, DDS_Long maxSamples,       \
         const DDS_InstanceHandle_t* handle, DDS_SampleStateMask sampleStates,                   \
         DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates)                     \
    FORM(T, _instance_w_condition, (self, data, infos, maxSamples, handle, condition),           \
         T##DataReader* self, T##Seq* data, DDS_SampleInfoSeq* infos, DDS_Long maxSamples,       \
         const DDS_InstanceHandle_t* handle, DDS_ReadCondition* condition)                       \
    /** Samples of the first instance after the given one (NIL: of the very first) that has any. \
     */                                                                                          \
    FORM(T, _next_instance,                                                                      \
         (self, data, infos, maxSamples, handle, sampleStates, viewStates, instanceStates),      \
         T##DataReader* self, T##Seq* data, DDS_SampleInfoSeq* infos, DDS_Long maxSamples,       \
         const DDS_InstanceHandle_t* handle, DDS_SampleStateMask sampleStates,                   \
         DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates)                     \
    FORM(T, _next_instance_w_condition, (self, data, infos, maxSamples, handle, condition),      \
         T##DataReader* self, T##Seq* data, DDS_SampleInfoSeq* infos, DDS_Long maxSamples,       \
         const DDS_InstanceHandle_t* handle, DDS_ReadCondition* condition)

/** The other operations of typed readers, `TDataReader_…`. */
#define ORVANE_READER_OPERATIONS(OP, T)                                                         \
    /** @return the reader, or NULL after a report: NULL, or a reader of another type. */       \
    OP(T##DataReader, T, T##DataReader*, narrow, (DDS_DataReader * reader), (reader))           \
    /** @return the reader, or NULL after a report. */                                          \
    OP(T##DataReader, T, DDS_DataReader*, as_datareader, (T##DataReader * reader), (reader))    \
    /** Copies the next sample that has not been read. */                                       \
    OP(T##DataReader, T, DDS_ReturnCode_t, read_next_sample,                                    \
       (T##DataReader * self, T * sample, DDS_SampleInfo * info), (self, sample, info))         \
    OP(T##DataReader, T, DDS_ReturnCode_t, take_next_sample,                                    \
       (T##DataReader * self, T * sample, DDS_SampleInfo * info), (self, sample, info))         \
    /** Gives lent samples back and empties both sequences. Nothing to do, and OK, when both    \
     *  own their buffers. @return ERROR: the samples are back, yet the sequence keeps them. */ \
    OP(T##DataReader, T, DDS_ReturnCode_t, return_loan,                                         \
       (T##DataReader * self, T##Seq * data, DDS_SampleInfoSeq * infos), (self, data, infos))   \
    /** Fills the key members of the sample. */                                                 \
    OP(T##DataReader, T, DDS_ReturnCode_t, get_key_value,                                       \
       (T##DataReader * self, T * sample, const DDS_InstanceHandle_t* handle),                  \
       (self, sample, handle))                                                                  \
    OP(T##DataReader, T, DDS_InstanceHandle_t, lookup_instance,                                 \
       (T##DataReader * self, const T* sample), (self, sample))                                 \
    OP(T##DataReader, T, DDS_ReturnCode_t, add_sample_to_remote_writer_queue,                   \
       (T##DataReader * self, const T* sample), (self, sample))

#endif
