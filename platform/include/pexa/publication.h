/**
 * @file publication.h
 * @brief Publishers and data writers, untyped: typed writers forward to these operations.
 */
#ifndef PEXA_PUBLICATION_H
#define PEXA_PUBLICATION_H

#include "pexa/domain.h"

PEXA_BEGIN_C

/**
 * @name Publishers
 * @{
 */
PEXA_API DDS_ReturnCode_t DDS_Publisher_get_qos(DDS_Publisher* self, DDS_PublisherQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Publisher_set_qos(DDS_Publisher* self, const DDS_PublisherQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Publisher_set_listener(DDS_Publisher* self,
                                                     const DDS_PublisherListener* listener,
                                                     DDS_StatusMask mask);
/** @param qos NULL means the publisher's default. @return NULL on failure. */
PEXA_API DDS_DataWriter* DDS_Publisher_create_datawriter(DDS_Publisher* self, DDS_Topic* topic,
                                                         const DDS_DataWriterQos* qos,
                                                         const DDS_DataWriterListener* listener,
                                                         DDS_StatusMask mask);
PEXA_API DDS_ReturnCode_t DDS_Publisher_delete_datawriter(DDS_Publisher* self,
                                                          DDS_DataWriter* writer);
/** @return some writer of that topic, or NULL. */
PEXA_API DDS_DataWriter* DDS_Publisher_lookup_datawriter(DDS_Publisher* self,
                                                         const char* topicName);
PEXA_API DDS_ReturnCode_t DDS_Publisher_delete_contained_entities(DDS_Publisher* self);
PEXA_API DDS_ReturnCode_t DDS_Publisher_get_default_datawriter_qos(DDS_Publisher* self,
                                                                   DDS_DataWriterQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Publisher_set_default_datawriter_qos(DDS_Publisher* self,
                                                                   const DDS_DataWriterQos* qos);
PEXA_API DDS_DomainParticipant* DDS_Publisher_get_participant(DDS_Publisher* self);
/** @} */

/** The parameters of a write besides the sample. */
typedef struct DDS_WriteParams_t {
    /** The instance, NIL to derive it from the sample's key. */
    DDS_InstanceHandle_t handle;
    /** @ref DDS_TIME_INVALID means the present. */
    DDS_Time_t source_timestamp;
} DDS_WriteParams_t;
/** NIL handle, invalid time. */
PEXA_API extern const DDS_WriteParams_t DDS_WRITEPARAMS_DEFAULT;

/**
 * @name Data writers
 * Results of the write family: OK; BAD_PARAMETER (NULL sample, a handle that is not the sample's
 * instance, a time out of range); NOT_ENABLED; TIMEOUT (a reliable writer stayed blocked for its
 * max_blocking_time, nothing was written); ERROR (the sample cannot be encoded);
 * OUT_OF_RESOURCES.
 * @{
 */
PEXA_API DDS_ReturnCode_t DDS_DataWriter_get_qos(DDS_DataWriter* self, DDS_DataWriterQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DataWriter_set_qos(DDS_DataWriter* self,
                                                 const DDS_DataWriterQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DataWriter_set_listener(DDS_DataWriter* self,
                                                      const DDS_DataWriterListener* listener,
                                                      DDS_StatusMask mask);
PEXA_API DDS_Topic* DDS_DataWriter_get_topic(DDS_DataWriter* self);
PEXA_API DDS_Publisher* DDS_DataWriter_get_publisher(DDS_DataWriter* self);
/** @return nonzero when the plugin behind the writer is of the type @p typeName; no report. */
PEXA_API DDS_Boolean DDS_DataWriter_compare_typeI(DDS_DataWriter* self, const char* typeName);

PEXA_API DDS_ReturnCode_t DDS_DataWriter_write_untypedI(DDS_DataWriter* self, const void* sample,
                                                        const DDS_WriteParams_t* params);
/** Disposes the instance of @p sample (its key members) or of the handle. */
PEXA_API DDS_ReturnCode_t DDS_DataWriter_dispose_untypedI(DDS_DataWriter* self, const void* sample,
                                                          const DDS_WriteParams_t* params);
/** @return the instance's handle, NIL on failure and for keyless types. */
PEXA_API DDS_InstanceHandle_t DDS_DataWriter_register_instance_untypedI(
    DDS_DataWriter* self, const void* sample, const DDS_WriteParams_t* params);
PEXA_API DDS_ReturnCode_t DDS_DataWriter_unregister_instance_untypedI(
    DDS_DataWriter* self, const void* sample, const DDS_WriteParams_t* params);
/** Fills the key members of @p sample; BAD_PARAMETER for an unknown handle. */
PEXA_API DDS_ReturnCode_t DDS_DataWriter_get_key_value_untypedI(DDS_DataWriter* self, void* sample,
                                                                const DDS_InstanceHandle_t* handle);
/** @return the handle of a known instance with the sample's key, else NIL. */
PEXA_API DDS_InstanceHandle_t DDS_DataWriter_lookup_instance_untypedI(DDS_DataWriter* self,
                                                                      const void* sample);

/** Sends the samples that a batching writer has collected. Then waits until all matched reliable
 *  readers have acknowledged, or TIMEOUT. When that takes longer than 0.1 s, what other threads
 *  write meanwhile may be waited for, too. A cancellation of the thread ends the wait within a
 *  second. */
PEXA_API DDS_ReturnCode_t DDS_DataWriter_wait_for_acknowledgments(DDS_DataWriter* self,
                                                                  const DDS_Duration_t* maxWait);
/** Sends the samples that a batching writer has collected, see @ref DDS_BatchQosPolicy. */
PEXA_API DDS_ReturnCode_t DDS_DataWriter_flush(DDS_DataWriter* self);
PEXA_API DDS_ReturnCode_t DDS_DataWriter_assert_liveliness(DDS_DataWriter* self);
/** Each status getter resets the change counts. */
PEXA_API DDS_ReturnCode_t DDS_DataWriter_get_publication_matched_status(
    DDS_DataWriter* self, DDS_PublicationMatchedStatus* status);
PEXA_API DDS_ReturnCode_t
DDS_DataWriter_get_liveliness_lost_status(DDS_DataWriter* self, DDS_LivelinessLostStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataWriter_get_offered_deadline_missed_status(
    DDS_DataWriter* self, DDS_OfferedDeadlineMissedStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataWriter_get_offered_incompatible_qos_status(
    DDS_DataWriter* self, DDS_OfferedIncompatibleQosStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataWriter_get_matched_subscriptions(DDS_DataWriter* self,
                                                                   DDS_InstanceHandleSeq* handles);
/** @} */

PEXA_END_C

#endif
