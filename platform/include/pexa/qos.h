/**
 * @file qos.h
 * @brief Quality-of-service policies and the QoS records of the six entity kinds.
 *
 * Policies and their meaning are those of the DDS standard (DCPS 1.4, 2.2.3). A QoS record owns
 * its memory: `_initialize` gives it the standard's defaults, `_copy` makes a deep copy into an
 * initialised record, `_finalize` frees its memory and is harmless on a finalised record.
 */
#ifndef PEXA_QOS_H
#define PEXA_QOS_H

#include "pexa/base.h"
#include "pexa/sequence.h"

PEXA_BEGIN_C

typedef enum DDS_DurabilityQosPolicyKind {
    DDS_VOLATILE_DURABILITY_QOS = 0,
    DDS_TRANSIENT_LOCAL_DURABILITY_QOS = 1,
    DDS_TRANSIENT_DURABILITY_QOS = 2,
    DDS_PERSISTENT_DURABILITY_QOS = 3
} DDS_DurabilityQosPolicyKind;

typedef enum DDS_HistoryQosPolicyKind {
    DDS_KEEP_LAST_HISTORY_QOS = 0,
    DDS_KEEP_ALL_HISTORY_QOS = 1
} DDS_HistoryQosPolicyKind;

typedef enum DDS_ReliabilityQosPolicyKind {
    DDS_BEST_EFFORT_RELIABILITY_QOS = 0,
    DDS_RELIABLE_RELIABILITY_QOS = 1
} DDS_ReliabilityQosPolicyKind;

typedef enum DDS_OwnershipQosPolicyKind {
    DDS_SHARED_OWNERSHIP_QOS = 0,
    DDS_EXCLUSIVE_OWNERSHIP_QOS = 1
} DDS_OwnershipQosPolicyKind;

typedef enum DDS_LivelinessQosPolicyKind {
    DDS_AUTOMATIC_LIVELINESS_QOS = 0,
    DDS_MANUAL_BY_PARTICIPANT_LIVELINESS_QOS = 1,
    DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS = 2
} DDS_LivelinessQosPolicyKind;

typedef enum DDS_PresentationQosPolicyAccessScopeKind {
    DDS_INSTANCE_PRESENTATION_QOS = 0,
    DDS_TOPIC_PRESENTATION_QOS = 1,
    DDS_GROUP_PRESENTATION_QOS = 2
} DDS_PresentationQosPolicyAccessScopeKind;

typedef enum DDS_DestinationOrderQosPolicyKind {
    DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS = 0,
    DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS = 1
} DDS_DestinationOrderQosPolicyKind;

typedef struct DDS_UserDataQosPolicy {
    DDS_OctetSeq value;
} DDS_UserDataQosPolicy;
typedef struct DDS_TopicDataQosPolicy {
    DDS_OctetSeq value;
} DDS_TopicDataQosPolicy;
typedef struct DDS_GroupDataQosPolicy {
    DDS_OctetSeq value;
} DDS_GroupDataQosPolicy;
typedef struct DDS_DurabilityQosPolicy {
    DDS_DurabilityQosPolicyKind kind;
} DDS_DurabilityQosPolicy;
/** A late reader of a TRANSIENT_LOCAL writer gets what the writer's own history keeps; this is
 * ignored. Only where that history is KEEP_ALL and this is KEEP_LAST with a depth above 1, the
 * default, the writer keeps so many acknowledged samples of an instance for late readers. */
typedef struct DDS_DurabilityServiceQosPolicy {
    DDS_Duration_t service_cleanup_delay;
    DDS_HistoryQosPolicyKind history_kind;
    DDS_Long history_depth;
    DDS_Long max_samples;
    DDS_Long max_instances;
    DDS_Long max_samples_per_instance;
} DDS_DurabilityServiceQosPolicy;
typedef struct DDS_PresentationQosPolicy {
    DDS_PresentationQosPolicyAccessScopeKind access_scope;
    DDS_Boolean coherent_access;
    DDS_Boolean ordered_access;
} DDS_PresentationQosPolicy;
typedef struct DDS_DeadlineQosPolicy {
    DDS_Duration_t period;
} DDS_DeadlineQosPolicy;
typedef struct DDS_LatencyBudgetQosPolicy {
    DDS_Duration_t duration;
} DDS_LatencyBudgetQosPolicy;
typedef struct DDS_OwnershipQosPolicy {
    DDS_OwnershipQosPolicyKind kind;
} DDS_OwnershipQosPolicy;
typedef struct DDS_OwnershipStrengthQosPolicy {
    DDS_Long value;
} DDS_OwnershipStrengthQosPolicy;
typedef struct DDS_LivelinessQosPolicy {
    DDS_LivelinessQosPolicyKind kind;
    DDS_Duration_t lease_duration;
} DDS_LivelinessQosPolicy;
typedef struct DDS_TimeBasedFilterQosPolicy {
    DDS_Duration_t minimum_separation;
} DDS_TimeBasedFilterQosPolicy;
typedef struct DDS_PartitionQosPolicy {
    DDS_StringSeq name;
} DDS_PartitionQosPolicy;
typedef struct DDS_ReliabilityQosPolicy {
    DDS_ReliabilityQosPolicyKind kind;
    DDS_Duration_t max_blocking_time;
} DDS_ReliabilityQosPolicy;
typedef struct DDS_TransportPriorityQosPolicy {
    DDS_Long value;
} DDS_TransportPriorityQosPolicy;
typedef struct DDS_LifespanQosPolicy {
    DDS_Duration_t duration;
} DDS_LifespanQosPolicy;
typedef struct DDS_DestinationOrderQosPolicy {
    DDS_DestinationOrderQosPolicyKind kind;
} DDS_DestinationOrderQosPolicy;
typedef struct DDS_HistoryQosPolicy {
    DDS_HistoryQosPolicyKind kind;
    /** 1 or more, for KEEP_LAST. */
    DDS_Long depth;
} DDS_HistoryQosPolicy;
/** Limits are positive numbers or @ref DDS_LENGTH_UNLIMITED. */
typedef struct DDS_ResourceLimitsQosPolicy {
    DDS_Long max_samples;
    DDS_Long max_instances;
    DDS_Long max_samples_per_instance;
} DDS_ResourceLimitsQosPolicy;
typedef struct DDS_EntityFactoryQosPolicy {
    DDS_Boolean autoenable_created_entities;
} DDS_EntityFactoryQosPolicy;
typedef struct DDS_WriterDataLifecycleQosPolicy {
    DDS_Boolean autodispose_unregistered_instances;
} DDS_WriterDataLifecycleQosPolicy;
typedef struct DDS_ReaderDataLifecycleQosPolicy {
    DDS_Duration_t autopurge_nowriter_samples_delay;
    DDS_Duration_t autopurge_disposed_samples_delay;
} DDS_ReaderDataLifecycleQosPolicy;
/** Whether samples and disposals of a writer are collected, so that they share packets. A packet
 *  leaves when it is full, before the history would drop one of its samples, at the first write
 *  after some milliseconds, and at DDS_DataWriter_flush(). The last write must be followed by
 *  DDS_DataWriter_flush(). Not part of the DDS standard, and not seen on the wire. Default: off. */
typedef struct DDS_BatchQosPolicy {
    DDS_Boolean enable;
} DDS_BatchQosPolicy;

/** An entity's name as tools show it; NULL or an owned heap string. */
typedef struct DDS_EntityNameQosPolicy {
    char* name;
} DDS_EntityNameQosPolicy;

/** A configuration property of the engine, for instance of DDS Security. Owned heap strings. */
typedef struct DDS_Property_t {
    char* name;
    char* value;
} DDS_Property_t;
PEXA_SEQUENCE_RECORD(DDS_PropertySeq, DDS_Property_t);
PEXA_SEQUENCE_OPERATIONS(PEXA_API, DDS_PropertySeq, DDS_Property_t);
typedef struct DDS_PropertyQosPolicy {
    DDS_PropertySeq value;
} DDS_PropertyQosPolicy;

/** The participant's address on the wire. The port fills it in; it cannot be changed. */
typedef struct DDS_WireProtocolQosPolicy {
    /** Bytes 0-3 of the GUID prefix, most significant first. */
    DDS_UnsignedLong rtps_host_id;
    /** Bytes 4-7. */
    DDS_UnsignedLong rtps_app_id;
    /** Bytes 8-11. */
    DDS_UnsignedLong rtps_instance_id;
} DDS_WireProtocolQosPolicy;

typedef struct DDS_DomainParticipantFactoryQos {
    DDS_EntityFactoryQosPolicy entity_factory;
} DDS_DomainParticipantFactoryQos;

typedef struct DDS_DomainParticipantQos {
    DDS_UserDataQosPolicy user_data;
    DDS_EntityFactoryQosPolicy entity_factory;
    DDS_WireProtocolQosPolicy wire_protocol;
    DDS_EntityNameQosPolicy participant_name;
    DDS_PropertyQosPolicy property;
} DDS_DomainParticipantQos;

typedef struct DDS_TopicQos {
    DDS_TopicDataQosPolicy topic_data;
    DDS_DurabilityQosPolicy durability;
    DDS_DurabilityServiceQosPolicy durability_service;
    DDS_DeadlineQosPolicy deadline;
    DDS_LatencyBudgetQosPolicy latency_budget;
    DDS_LivelinessQosPolicy liveliness;
    DDS_ReliabilityQosPolicy reliability;
    DDS_DestinationOrderQosPolicy destination_order;
    DDS_HistoryQosPolicy history;
    DDS_ResourceLimitsQosPolicy resource_limits;
    DDS_TransportPriorityQosPolicy transport_priority;
    DDS_LifespanQosPolicy lifespan;
    DDS_OwnershipQosPolicy ownership;
} DDS_TopicQos;

typedef struct DDS_PublisherQos {
    DDS_PresentationQosPolicy presentation;
    DDS_PartitionQosPolicy partition;
    DDS_GroupDataQosPolicy group_data;
    DDS_EntityFactoryQosPolicy entity_factory;
} DDS_PublisherQos;

typedef struct DDS_SubscriberQos {
    DDS_PresentationQosPolicy presentation;
    DDS_PartitionQosPolicy partition;
    DDS_GroupDataQosPolicy group_data;
    DDS_EntityFactoryQosPolicy entity_factory;
} DDS_SubscriberQos;

/** Default reliability of a writer is RELIABLE with 100 ms, of everything else BEST_EFFORT. */
typedef struct DDS_DataWriterQos {
    DDS_DurabilityQosPolicy durability;
    DDS_DurabilityServiceQosPolicy durability_service;
    DDS_DeadlineQosPolicy deadline;
    DDS_LatencyBudgetQosPolicy latency_budget;
    DDS_LivelinessQosPolicy liveliness;
    DDS_ReliabilityQosPolicy reliability;
    DDS_DestinationOrderQosPolicy destination_order;
    DDS_HistoryQosPolicy history;
    DDS_ResourceLimitsQosPolicy resource_limits;
    DDS_TransportPriorityQosPolicy transport_priority;
    DDS_LifespanQosPolicy lifespan;
    DDS_UserDataQosPolicy user_data;
    DDS_OwnershipQosPolicy ownership;
    DDS_OwnershipStrengthQosPolicy ownership_strength;
    DDS_WriterDataLifecycleQosPolicy writer_data_lifecycle;
    DDS_BatchQosPolicy batch;
} DDS_DataWriterQos;

typedef struct DDS_DataReaderQos {
    DDS_DurabilityQosPolicy durability;
    DDS_DeadlineQosPolicy deadline;
    DDS_LatencyBudgetQosPolicy latency_budget;
    DDS_LivelinessQosPolicy liveliness;
    DDS_ReliabilityQosPolicy reliability;
    DDS_DestinationOrderQosPolicy destination_order;
    DDS_HistoryQosPolicy history;
    DDS_ResourceLimitsQosPolicy resource_limits;
    DDS_UserDataQosPolicy user_data;
    DDS_OwnershipQosPolicy ownership;
    DDS_TimeBasedFilterQosPolicy time_based_filter;
    DDS_ReaderDataLifecycleQosPolicy reader_data_lifecycle;
} DDS_DataReaderQos;

/**
 * @name Initialise, copy, finalise
 * Each returns OK, BAD_PARAMETER for NULL, or OUT_OF_RESOURCES (copy: the destination then holds
 * the policies copied so far). `_finalize` cannot fail but for NULL.
 * @{
 */
#define PEXA_QOS_OPERATIONS(Qos)                                      \
    PEXA_API DDS_ReturnCode_t Qos##_initialize(Qos* self);            \
    PEXA_API DDS_ReturnCode_t Qos##_copy(Qos* self, const Qos* from); \
    PEXA_API DDS_ReturnCode_t Qos##_finalize(Qos* self)
PEXA_QOS_OPERATIONS(DDS_DomainParticipantFactoryQos);
PEXA_QOS_OPERATIONS(DDS_DomainParticipantQos);
PEXA_QOS_OPERATIONS(DDS_TopicQos);
PEXA_QOS_OPERATIONS(DDS_PublisherQos);
PEXA_QOS_OPERATIONS(DDS_SubscriberQos);
PEXA_QOS_OPERATIONS(DDS_DataWriterQos);
PEXA_QOS_OPERATIONS(DDS_DataReaderQos);
/** @} */

PEXA_END_C

#endif
