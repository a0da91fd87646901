/**
 * @file entity.h
 * @brief The entity types, statuses, listeners and the operations that all entities share.
 *
 * Every operation on a NULL entity returns BAD_PARAMETER (or NULL, 0) after one report in the
 * middleware's log. Operations on different entities may run concurrently, and so may any
 * operation with reads, takes and writes of the same entity; deleting an entity while another
 * thread uses it is the caller's error.
 */
#ifndef PEXA_ENTITY_H
#define PEXA_ENTITY_H

#include "pexa/base.h"
#include "pexa/qos.h"
#include "pexa/sequence.h"

PEXA_BEGIN_C

typedef struct DDS_Entity DDS_Entity;
typedef struct DDS_DomainParticipantFactory DDS_DomainParticipantFactory;
typedef struct DDS_DomainParticipant DDS_DomainParticipant;
typedef struct DDS_TopicDescription DDS_TopicDescription;
typedef struct DDS_Topic DDS_Topic;
typedef struct DDS_ContentFilteredTopic DDS_ContentFilteredTopic;
typedef struct DDS_Publisher DDS_Publisher;
typedef struct DDS_Subscriber DDS_Subscriber;
typedef struct DDS_DataWriter DDS_DataWriter;
typedef struct DDS_DataReader DDS_DataReader;
typedef struct DDS_Condition DDS_Condition;
typedef struct DDS_ReadCondition DDS_ReadCondition;
typedef struct DDS_GuardCondition DDS_GuardCondition;
typedef struct DDS_StatusCondition DDS_StatusCondition;
typedef struct DDS_WaitSet DDS_WaitSet;

/** Bits of the DDS statuses. */
typedef DDS_UnsignedLong DDS_StatusMask;
#define DDS_STATUS_MASK_NONE ((DDS_StatusMask)0)
#define DDS_STATUS_MASK_ALL ((DDS_StatusMask)0x7fff)
#define DDS_INCONSISTENT_TOPIC_STATUS ((DDS_StatusMask)0x0001)
#define DDS_OFFERED_DEADLINE_MISSED_STATUS ((DDS_StatusMask)0x0002)
#define DDS_REQUESTED_DEADLINE_MISSED_STATUS ((DDS_StatusMask)0x0004)
#define DDS_OFFERED_INCOMPATIBLE_QOS_STATUS ((DDS_StatusMask)0x0020)
#define DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS ((DDS_StatusMask)0x0040)
#define DDS_SAMPLE_LOST_STATUS ((DDS_StatusMask)0x0080)
#define DDS_SAMPLE_REJECTED_STATUS ((DDS_StatusMask)0x0100)
#define DDS_DATA_ON_READERS_STATUS ((DDS_StatusMask)0x0200)
#define DDS_DATA_AVAILABLE_STATUS ((DDS_StatusMask)0x0400)
#define DDS_LIVELINESS_LOST_STATUS ((DDS_StatusMask)0x0800)
#define DDS_LIVELINESS_CHANGED_STATUS ((DDS_StatusMask)0x1000)
#define DDS_PUBLICATION_MATCHED_STATUS ((DDS_StatusMask)0x2000)
#define DDS_SUBSCRIPTION_MATCHED_STATUS ((DDS_StatusMask)0x4000)

typedef struct DDS_InconsistentTopicStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
} DDS_InconsistentTopicStatus;
typedef struct DDS_SampleLostStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
} DDS_SampleLostStatus;
typedef enum DDS_SampleRejectedStatusKind {
    DDS_NOT_REJECTED = 0,
    DDS_REJECTED_BY_INSTANCES_LIMIT = 1,
    DDS_REJECTED_BY_SAMPLES_LIMIT = 2,
    DDS_REJECTED_BY_SAMPLES_PER_INSTANCE_LIMIT = 3
} DDS_SampleRejectedStatusKind;
typedef struct DDS_SampleRejectedStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_SampleRejectedStatusKind last_reason;
} DDS_SampleRejectedStatus;
typedef struct DDS_LivelinessLostStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
} DDS_LivelinessLostStatus;
typedef struct DDS_LivelinessChangedStatus {
    DDS_Long alive_count;
    DDS_Long not_alive_count;
    DDS_Long alive_count_change;
    DDS_Long not_alive_count_change;
    DDS_InstanceHandle_t last_publication_handle;
} DDS_LivelinessChangedStatus;
typedef struct DDS_OfferedDeadlineMissedStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
} DDS_OfferedDeadlineMissedStatus;
typedef struct DDS_RequestedDeadlineMissedStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
} DDS_RequestedDeadlineMissedStatus;
typedef struct DDS_OfferedIncompatibleQosStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    /** Number of the policy as the DDS standard counts them. */
    DDS_Long last_policy_id;
} DDS_OfferedIncompatibleQosStatus;
typedef struct DDS_RequestedIncompatibleQosStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_Long last_policy_id;
} DDS_RequestedIncompatibleQosStatus;
typedef struct DDS_PublicationMatchedStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_Long current_count;
    DDS_Long current_count_change;
    DDS_InstanceHandle_t last_subscription_handle;
} DDS_PublicationMatchedStatus;
typedef struct DDS_SubscriptionMatchedStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_Long current_count;
    DDS_Long current_count_change;
    DDS_InstanceHandle_t last_publication_handle;
} DDS_SubscriptionMatchedStatus;

/**
 * @name Listeners
 * A listener is copied when it is installed. A slot may be NULL. Callbacks run on threads of the
 * engine, one at a time per entity; installing another listener or deleting the entity waits for a
 * running callback, so a callback must not do either to its own entity.
 * @{
 */
typedef struct DDS_TopicListener {
    void* listener_data;
    void (*on_inconsistent_topic)(void* listener_data, DDS_Topic* topic,
                                  const DDS_InconsistentTopicStatus* status);
} DDS_TopicListener;

typedef struct DDS_DataWriterListener {
    void* listener_data;
    void (*on_offered_deadline_missed)(void* listener_data, DDS_DataWriter* writer,
                                       const DDS_OfferedDeadlineMissedStatus* status);
    void (*on_offered_incompatible_qos)(void* listener_data, DDS_DataWriter* writer,
                                        const DDS_OfferedIncompatibleQosStatus* status);
    void (*on_liveliness_lost)(void* listener_data, DDS_DataWriter* writer,
                               const DDS_LivelinessLostStatus* status);
    void (*on_publication_matched)(void* listener_data, DDS_DataWriter* writer,
                                   const DDS_PublicationMatchedStatus* status);
} DDS_DataWriterListener;

typedef struct DDS_DataReaderListener {
    void* listener_data;
    void (*on_requested_deadline_missed)(void* listener_data, DDS_DataReader* reader,
                                         const DDS_RequestedDeadlineMissedStatus* status);
    void (*on_requested_incompatible_qos)(void* listener_data, DDS_DataReader* reader,
                                          const DDS_RequestedIncompatibleQosStatus* status);
    void (*on_sample_rejected)(void* listener_data, DDS_DataReader* reader,
                               const DDS_SampleRejectedStatus* status);
    void (*on_liveliness_changed)(void* listener_data, DDS_DataReader* reader,
                                  const DDS_LivelinessChangedStatus* status);
    /** Also called when it is installed while unread data waits. */
    void (*on_data_available)(void* listener_data, DDS_DataReader* reader);
    void (*on_subscription_matched)(void* listener_data, DDS_DataReader* reader,
                                    const DDS_SubscriptionMatchedStatus* status);
    void (*on_sample_lost)(void* listener_data, DDS_DataReader* reader,
                           const DDS_SampleLostStatus* status);
} DDS_DataReaderListener;

/** A publisher's listener gets the statuses of its writers that they do not take themselves. */
typedef struct DDS_PublisherListener {
    DDS_DataWriterListener as_datawriterlistener;
} DDS_PublisherListener;

typedef struct DDS_SubscriberListener {
    DDS_DataReaderListener as_datareaderlistener;
    void (*on_data_on_readers)(void* listener_data, DDS_Subscriber* subscriber);
} DDS_SubscriberListener;

/** A participant's listener gets the statuses that no listener below it takes. */
typedef struct DDS_DomainParticipantListener {
    DDS_TopicListener as_topiclistener;
    DDS_PublisherListener as_publisherlistener;
    DDS_SubscriberListener as_subscriberlistener;
} DDS_DomainParticipantListener;
/** @} */

/**
 * @name Operations of all entities
 * @{
 */
/** Brings a disabled entity into operation; an enabled entity stays as it is. PRECONDITION_NOT_MET
 *  while its factory is disabled. */
PEXA_API DDS_ReturnCode_t DDS_Entity_enable(DDS_Entity* self);
PEXA_API DDS_Boolean DDS_Entity_is_enabled(DDS_Entity* self);
/** @return bits of the statuses that changed since they were last read. */
PEXA_API DDS_StatusMask DDS_Entity_get_status_changes(DDS_Entity* self);
/** @return the handle made of the entity's GUID, NIL while it is disabled. */
PEXA_API DDS_InstanceHandle_t DDS_Entity_get_instance_handle(DDS_Entity* self);
/** @return the entity's own condition, which dies with it; all statuses are enabled at first. */
PEXA_API DDS_StatusCondition* DDS_Entity_get_statuscondition(DDS_Entity* self);

PEXA_API DDS_Entity* DDS_DomainParticipant_as_entity(DDS_DomainParticipant* self);
PEXA_API DDS_Entity* DDS_Topic_as_entity(DDS_Topic* self);
PEXA_API DDS_Entity* DDS_Publisher_as_entity(DDS_Publisher* self);
PEXA_API DDS_Entity* DDS_Subscriber_as_entity(DDS_Subscriber* self);
PEXA_API DDS_Entity* DDS_DataWriter_as_entity(DDS_DataWriter* self);
PEXA_API DDS_Entity* DDS_DataReader_as_entity(DDS_DataReader* self);
/** @} */

PEXA_END_C

#endif
