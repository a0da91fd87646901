/**
 * @file subscription.h
 * @brief Subscribers, data readers (untyped) and conditions.
 */
#ifndef PEXA_SUBSCRIPTION_H
#define PEXA_SUBSCRIPTION_H

#include "pexa/domain.h"

PEXA_BEGIN_C

typedef DDS_UnsignedLong DDS_SampleStateMask;
typedef DDS_UnsignedLong DDS_ViewStateMask;
typedef DDS_UnsignedLong DDS_InstanceStateMask;
#define DDS_READ_SAMPLE_STATE ((DDS_SampleStateMask)1)
#define DDS_NOT_READ_SAMPLE_STATE ((DDS_SampleStateMask)2)
#define DDS_ANY_SAMPLE_STATE ((DDS_SampleStateMask)0xffff)
#define DDS_NEW_VIEW_STATE ((DDS_ViewStateMask)1)
#define DDS_NOT_NEW_VIEW_STATE ((DDS_ViewStateMask)2)
#define DDS_ANY_VIEW_STATE ((DDS_ViewStateMask)0xffff)
#define DDS_ALIVE_INSTANCE_STATE ((DDS_InstanceStateMask)1)
#define DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE ((DDS_InstanceStateMask)2)
#define DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE ((DDS_InstanceStateMask)4)
#define DDS_NOT_ALIVE_INSTANCE_STATE ((DDS_InstanceStateMask)6)
#define DDS_ANY_INSTANCE_STATE ((DDS_InstanceStateMask)0xffff)

/**
 * A number of 64 bits that a writer gives to each sample, dispose and unregistration. RTPS counts
 * them from 1 on.
 */
typedef struct DDS_SequenceNumber_t {
    DDS_Long high;
    DDS_UnsignedLong low;
} DDS_SequenceNumber_t;
/** Stands for no number. Its members are -1 and 0xffffffff. */
PEXA_API extern const DDS_SequenceNumber_t DDS_SEQUENCE_NUMBER_UNKNOWN;

/** The properties of a sample besides its value. */
typedef struct DDS_SampleInfo {
    DDS_SampleStateMask sample_state;
    DDS_ViewStateMask view_state;
    DDS_InstanceStateMask instance_state;
    DDS_Time_t source_timestamp;
    /** NIL for keyless types. */
    DDS_InstanceHandle_t instance_handle;
    /** The GUID of the writer. Of a sample without valid data, or of a writer of this process: NIL
     * if none of the writer's samples was read while the writer was there. */
    DDS_InstanceHandle_t publication_handle;
    /** Numbers that are missing between those of a writer belong to what was lost or filtered out,
     * or is no sample here, such as a dispose. @ref DDS_SEQUENCE_NUMBER_UNKNOWN for a sample
     * without valid data, and for one from a writer of this process, which does not pass through
     * RTPS. */
    DDS_SequenceNumber_t publication_sequence_number;
    DDS_Long disposed_generation_count;
    DDS_Long no_writers_generation_count;
    DDS_Long sample_rank;
    DDS_Long generation_rank;
    DDS_Long absolute_generation_rank;
    /** 0: the sample only tells of its instance; of its members only the key is meaningful. */
    DDS_Boolean valid_data;
} DDS_SampleInfo;

PEXA_SEQUENCE_RECORD(DDS_SampleInfoSeq, DDS_SampleInfo);
PEXA_SEQUENCE_OPERATIONS(PEXA_API, DDS_SampleInfoSeq, DDS_SampleInfo);

/**
 * @name Subscribers
 * @{
 */
PEXA_API DDS_ReturnCode_t DDS_Subscriber_get_qos(DDS_Subscriber* self, DDS_SubscriberQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Subscriber_set_qos(DDS_Subscriber* self,
                                                 const DDS_SubscriberQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Subscriber_set_listener(DDS_Subscriber* self,
                                                      const DDS_SubscriberListener* listener,
                                                      DDS_StatusMask mask);
/** @param topic a topic or filtered topic. @param qos NULL means the default. NULL on failure. */
PEXA_API DDS_DataReader* DDS_Subscriber_create_datareader(DDS_Subscriber* self,
                                                          DDS_TopicDescription* topic,
                                                          const DDS_DataReaderQos* qos,
                                                          const DDS_DataReaderListener* listener,
                                                          DDS_StatusMask mask);
/** PRECONDITION_NOT_MET while a loan or a read condition is outstanding. */
PEXA_API DDS_ReturnCode_t DDS_Subscriber_delete_datareader(DDS_Subscriber* self,
                                                           DDS_DataReader* reader);
PEXA_API DDS_DataReader* DDS_Subscriber_lookup_datareader(DDS_Subscriber* self,
                                                          const char* topicName);
/** Deletes all readers with their conditions; PRECONDITION_NOT_MET while a loan is outstanding. */
PEXA_API DDS_ReturnCode_t DDS_Subscriber_delete_contained_entities(DDS_Subscriber* self);
PEXA_API DDS_ReturnCode_t DDS_Subscriber_get_default_datareader_qos(DDS_Subscriber* self,
                                                                    DDS_DataReaderQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Subscriber_set_default_datareader_qos(DDS_Subscriber* self,
                                                                    const DDS_DataReaderQos* qos);
PEXA_API DDS_DomainParticipant* DDS_Subscriber_get_participant(DDS_Subscriber* self);
/** @} */

/** Which samples a read or take selects. */
typedef struct DDS_ReadSelectorI {
    DDS_SampleStateMask sample_states;
    DDS_ViewStateMask view_states;
    DDS_InstanceStateMask instance_states;
    /** NULL, or a condition of the reader whose masks replace the three above. */
    DDS_ReadCondition* condition;
    /** NULL: any instance. */
    const DDS_InstanceHandle_t* instance;
    /** Nonzero: the first instance after @ref instance (NIL: the very first) with such samples. */
    DDS_Boolean next_instance;
    /** Most samples, or @ref DDS_LENGTH_UNLIMITED. */
    DDS_Long max_samples;
    /** Nonzero removes the samples from the reader. */
    DDS_Boolean take;
} DDS_ReadSelectorI;

/** A typed data sequence as the untyped operations see it, and their results. */
typedef struct DDS_UntypedSampleSeqI {
    /** In: the sequence's length, maximum, ownership flag, buffer, and the size of a record. */
    DDS_Long length;
    DDS_Long maximum;
    DDS_Boolean owned;
    void* contiguousBuffer;
    size_t elementSize;
    /** Out: nonzero when samples are on loan. */
    QELBool isLoan;
    /** Out: the lent samples, a buffer of the reader's. */
    void** loanedSamples;
    /** Out: the number of samples, lent or copied. */
    DDS_Long count;
} DDS_UntypedSampleSeqI;

/**
 * @name Data readers
 * @{
 */
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_qos(DDS_DataReader* self, DDS_DataReaderQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DataReader_set_qos(DDS_DataReader* self,
                                                 const DDS_DataReaderQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DataReader_set_listener(DDS_DataReader* self,
                                                      const DDS_DataReaderListener* listener,
                                                      DDS_StatusMask mask);
PEXA_API DDS_TopicDescription* DDS_DataReader_get_topicdescription(DDS_DataReader* self);
PEXA_API DDS_Subscriber* DDS_DataReader_get_subscriber(DDS_DataReader* self);
/** @return nonzero when the plugin behind the reader is of the type @p typeName; no report. */
PEXA_API DDS_Boolean DDS_DataReader_compare_typeI(DDS_DataReader* self, const char* typeName);

/**
 * Reads or takes samples.
 *
 * The sequences decide who owns the result, as the DDS standard has it: a data sequence of maximum
 * 0 that owns its (absent) buffer gets a loan, which @ref DDS_DataReader_return_loan_untypedI ends;
 * a sequence with an owned buffer gets copies, at most its maximum. @p infos must agree with it in
 * length, maximum and ownership, and is loaned or filled alike.
 * @return OK with at least one sample; NO_DATA (lengths become 0); BAD_PARAMETER; ERROR;
 *   PRECONDITION_NOT_MET: the sequences disagree, are still on loan, max_samples exceeds an owned
 *   maximum, or the condition is another reader's; NOT_ENABLED; OUT_OF_RESOURCES.
 */
PEXA_API DDS_ReturnCode_t DDS_DataReader_read_or_take_untypedI(DDS_DataReader* self,
                                                               const DDS_ReadSelectorI* selector,
                                                               DDS_UntypedSampleSeqI* data,
                                                               DDS_SampleInfoSeq* infos);
/** Copies the next sample that has not been read into @p sample. NO_DATA when there is none. */
PEXA_API DDS_ReturnCode_t DDS_DataReader_read_or_take_next_sample_untypedI(DDS_DataReader* self,
                                                                           void* sample,
                                                                           DDS_SampleInfo* info,
                                                                           DDS_Boolean take);
/**
 * Gives lent samples back and unloans @p infos.
 * @return OK; PRECONDITION_NOT_MET when they were not lent by this reader.
 */
PEXA_API DDS_ReturnCode_t DDS_DataReader_return_loan_untypedI(DDS_DataReader* self,
                                                              void** loanedSamples, DDS_Long count,
                                                              DDS_SampleInfoSeq* infos);
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_key_value_untypedI(DDS_DataReader* self, void* sample,
                                                                const DDS_InstanceHandle_t* handle);
PEXA_API DDS_InstanceHandle_t DDS_DataReader_lookup_instance_untypedI(DDS_DataReader* self,
                                                                      const void* sample);
/** The engine keeps no queue per remote writer: always UNSUPPORTED. */
PEXA_API DDS_ReturnCode_t
DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(DDS_DataReader* self, const void* sample);

/** A cancellation of the thread ends the wait within a second. */
PEXA_API DDS_ReturnCode_t DDS_DataReader_wait_for_historical_data(DDS_DataReader* self,
                                                                  const DDS_Duration_t* maxWait);
/** Each status getter resets the change counts. */
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_subscription_matched_status(
    DDS_DataReader* self, DDS_SubscriptionMatchedStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_sample_lost_status(DDS_DataReader* self,
                                                                DDS_SampleLostStatus* status);
PEXA_API DDS_ReturnCode_t
DDS_DataReader_get_sample_rejected_status(DDS_DataReader* self, DDS_SampleRejectedStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_liveliness_changed_status(
    DDS_DataReader* self, DDS_LivelinessChangedStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_requested_deadline_missed_status(
    DDS_DataReader* self, DDS_RequestedDeadlineMissedStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_requested_incompatible_qos_status(
    DDS_DataReader* self, DDS_RequestedIncompatibleQosStatus* status);
PEXA_API DDS_ReturnCode_t DDS_DataReader_get_matched_publications(DDS_DataReader* self,
                                                                  DDS_InstanceHandleSeq* handles);
/** @} */

/**
 * @name Conditions and wait sets
 * @{
 */
PEXA_SEQUENCE_RECORD(DDS_ConditionSeq, DDS_Condition*);
PEXA_SEQUENCE_OPERATIONS(PEXA_API, DDS_ConditionSeq, DDS_Condition*);

/** Triggered while the reader holds samples in these states. The reader owns it. */
PEXA_API DDS_ReadCondition* DDS_DataReader_create_readcondition(DDS_DataReader* self,
                                                                DDS_SampleStateMask sampleStates,
                                                                DDS_ViewStateMask viewStates,
                                                                DDS_InstanceStateMask states);
PEXA_API DDS_ReturnCode_t DDS_DataReader_delete_readcondition(DDS_DataReader* self,
                                                              DDS_ReadCondition* condition);
PEXA_API DDS_DataReader* DDS_ReadCondition_get_datareader(DDS_ReadCondition* self);
PEXA_API DDS_Condition* DDS_ReadCondition_as_condition(DDS_ReadCondition* self);

/** A condition that the application triggers. @return NULL without memory. */
PEXA_API DDS_GuardCondition* DDS_GuardCondition_new(void);
/** Free it only when it is attached to no wait set. */
PEXA_API DDS_ReturnCode_t DDS_GuardCondition_delete(DDS_GuardCondition* self);
/** Not async-signal-safe. */
PEXA_API DDS_ReturnCode_t DDS_GuardCondition_set_trigger_value(DDS_GuardCondition* self,
                                                               DDS_Boolean value);
PEXA_API DDS_Condition* DDS_GuardCondition_as_condition(DDS_GuardCondition* self);

/** Triggered while one of the enabled statuses of its entity has changed. */
PEXA_API DDS_ReturnCode_t DDS_StatusCondition_set_enabled_statuses(DDS_StatusCondition* self,
                                                                   DDS_StatusMask mask);
PEXA_API DDS_StatusMask DDS_StatusCondition_get_enabled_statuses(DDS_StatusCondition* self);
PEXA_API DDS_Entity* DDS_StatusCondition_get_entity(DDS_StatusCondition* self);
PEXA_API DDS_Condition* DDS_StatusCondition_as_condition(DDS_StatusCondition* self);

PEXA_API DDS_Boolean DDS_Condition_get_trigger_value(DDS_Condition* self);

PEXA_API DDS_WaitSet* DDS_WaitSet_new(void);
PEXA_API DDS_ReturnCode_t DDS_WaitSet_delete(DDS_WaitSet* self);
PEXA_API DDS_ReturnCode_t DDS_WaitSet_attach_condition(DDS_WaitSet* self, DDS_Condition* condition);
PEXA_API DDS_ReturnCode_t DDS_WaitSet_detach_condition(DDS_WaitSet* self, DDS_Condition* condition);
/** Blocks until a condition triggers. A cancellation of the thread ends the wait within a second.
 *  @param active is filled with those that did.
 *  @return OK, TIMEOUT, or PRECONDITION_NOT_MET when another thread already waits. */
PEXA_API DDS_ReturnCode_t DDS_WaitSet_wait(DDS_WaitSet* self, DDS_ConditionSeq* active,
                                           const DDS_Duration_t* timeout);
/** @} */

PEXA_END_C

#endif
