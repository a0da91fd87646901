/**
 * @file domain.h
 * @brief The participant factory, participants and topics.
 */
#ifndef PEXA_DOMAIN_H
#define PEXA_DOMAIN_H

#include "pexa/entity.h"
#include "pexa/type_plugin.h"

PEXA_BEGIN_C

/**
 * @name Factory
 * A process has one factory.
 * @{
 */
/** @return the factory, made on the first call. */
PEXA_API DDS_DomainParticipantFactory* DDS_DomainParticipantFactory_get_instance(void);
/** Frees the factory. PRECONDITION_NOT_MET while a participant exists. */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_finalize_instance(void);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_qos(
    DDS_DomainParticipantFactory* self, DDS_DomainParticipantFactoryQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_set_qos(
    DDS_DomainParticipantFactory* self, const DDS_DomainParticipantFactoryQos* qos);
/** Stands for the factory's or parent's default QoS wherever a QoS pointer is taken. */
#define DDS_QOS_DEFAULT NULL

/** @param qos NULL means the default. @param listener may be NULL. @return NULL on failure. */
PEXA_API DDS_DomainParticipant* DDS_DomainParticipantFactory_create_participant(
    DDS_DomainParticipantFactory* self, DDS_DomainId_t domainId,
    const DDS_DomainParticipantQos* qos, const DDS_DomainParticipantListener* listener,
    DDS_StatusMask mask);
/** PRECONDITION_NOT_MET while the participant still contains entities. */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_delete_participant(
    DDS_DomainParticipantFactory* self, DDS_DomainParticipant* participant);
/** @return some participant of that domain, or NULL. */
PEXA_API DDS_DomainParticipant* DDS_DomainParticipantFactory_lookup_participant(
    DDS_DomainParticipantFactory* self, DDS_DomainId_t domainId);
/**
 * Makes a participant of an engine's participant that the application created itself.
 * @param engineParticipant the engine's own handle; for Cyclone DDS a `dds_entity_t`.
 * @return a participant whose deletion leaves the engine's alone, or NULL.
 */
PEXA_API DDS_DomainParticipant* DDS_DomainParticipantFactory_wrap_participant(
    DDS_DomainParticipantFactory* self, DDS_Long engineParticipant);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_default_participant_qos(
    DDS_DomainParticipantFactory* self, DDS_DomainParticipantQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_set_default_participant_qos(
    DDS_DomainParticipantFactory* self, const DDS_DomainParticipantQos* qos);
/** @} */

/**
 * @name QoS profiles
 * Profiles are named library and profile. An unknown profile gives NO_DATA and leaves the QoS,
 * which must be initialised, as it is. "_w_topic_name" applies the profile's filters by topic name;
 * a NULL topic name matches only entries without a filter.
 *
 * Profiles come from files in OMG DDS-XML (see docs/qos-profiles.md). A file replaces profiles of
 * the same name from files before it. The order is: first USER_QOS_PROFILES.xml in the working
 * directory, if there is one, then the files that the environment variable PEXA_QOS_PROFILES lists,
 * separated by ';', then those that the application loads. The first two are read once, when the
 * factory first needs a profile or a default. A profile with an error is refused, and the other
 * profiles of its file are loaded; a file that cannot be read, is not well-formed or exceeds a
 * limit adds nothing. Each error is reported in the middleware's log with file and line. A refused
 * profile, or one that inherits from it, gives ERROR, and the report says why it was refused.
 *
 * A profile with `is_default_qos` (the last one that was loaded) gives the default QoS of all
 * entities where no other default is set. If it is refused, no entity gets a default QoS.
 * @{
 */
/** Most profiles altogether. */
#define DDS_QOS_PROFILE_MAX_COUNT 1024
/** The largest number of bases of a profile, its bases' bases included. */
#define DDS_QOS_PROFILE_MAX_BASES 64
/** Most elements of a list in a profile. */
#define DDS_QOS_PROFILE_MAX_LIST_LENGTH 1024

/**
 * Loads the profiles of a file, which remains one of the factory's files.
 * @return OK, also if profiles were refused; ERROR when the file cannot be read, is not well-formed
 * or exceeds a limit, or OUT_OF_RESOURCES, and nothing is changed; PRECONDITION_NOT_MET in a logger
 * device that is called while this thread reads the files of the environment.
 */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_load_qos_profiles(
    DDS_DomainParticipantFactory* self, const char* fileName);
/**
 * Reads all files anew; existing entities keep their QoS.
 * @return OK, also if profiles were refused; ERROR when one of the files cannot be read, or
 *   OUT_OF_RESOURCES, and nothing is changed.
 */
PEXA_API DDS_ReturnCode_t
DDS_DomainParticipantFactory_reload_qos_profiles(DDS_DomainParticipantFactory* self);
/**
 * Fills @p names with the profile names of a library, also of refused profiles. A library that is
 * not loaded has none.
 */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_qos_profiles(
    DDS_DomainParticipantFactory* self, DDS_StringSeq* names, const char* library);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_qos_profile_libraries(
    DDS_DomainParticipantFactory* self, DDS_StringSeq* names);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_participant_qos_from_profile(
    DDS_DomainParticipantFactory* self, DDS_DomainParticipantQos* qos, const char* library,
    const char* profile);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_publisher_qos_from_profile(
    DDS_DomainParticipantFactory* self, DDS_PublisherQos* qos, const char* library,
    const char* profile);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_subscriber_qos_from_profile(
    DDS_DomainParticipantFactory* self, DDS_SubscriberQos* qos, const char* library,
    const char* profile);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_topic_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory* self, DDS_TopicQos* qos, const char* library, const char* profile,
    const char* topicName);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory* self, DDS_DataWriterQos* qos, const char* library,
    const char* profile, const char* topicName);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipantFactory_get_datareader_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory* self, DDS_DataReaderQos* qos, const char* library,
    const char* profile, const char* topicName);
/** @} */

/**
 * @name Participants
 * @{
 */
PEXA_API DDS_DomainParticipantFactory* DDS_DomainParticipant_get_participant_factoryI(
    DDS_DomainParticipant* self);
/** @return the domain, -1 for NULL. */
PEXA_API DDS_DomainId_t DDS_DomainParticipant_get_domain_id(DDS_DomainParticipant* self);
/** @p qos must be initialised; host and application id stand in its wire-protocol policy. */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_get_qos(DDS_DomainParticipant* self,
                                                        DDS_DomainParticipantQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_set_qos(DDS_DomainParticipant* self,
                                                        const DDS_DomainParticipantQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_set_listener(
    DDS_DomainParticipant* self, const DDS_DomainParticipantListener* listener,
    DDS_StatusMask mask);
PEXA_API DDS_Publisher* DDS_DomainParticipant_create_publisher(
    DDS_DomainParticipant* self, const DDS_PublisherQos* qos, const DDS_PublisherListener* listener,
    DDS_StatusMask mask);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_delete_publisher(DDS_DomainParticipant* self,
                                                                 DDS_Publisher* publisher);
PEXA_API DDS_Subscriber* DDS_DomainParticipant_create_subscriber(
    DDS_DomainParticipant* self, const DDS_SubscriberQos* qos,
    const DDS_SubscriberListener* listener, DDS_StatusMask mask);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_delete_subscriber(DDS_DomainParticipant* self,
                                                                  DDS_Subscriber* subscriber);
/** @param typeName a name registered with this participant. */
PEXA_API DDS_Topic* DDS_DomainParticipant_create_topic(DDS_DomainParticipant* self,
                                                       const char* topicName, const char* typeName,
                                                       const DDS_TopicQos* qos,
                                                       const DDS_TopicListener* listener,
                                                       DDS_StatusMask mask);
/** PRECONDITION_NOT_MET while a writer, a reader or a filtered topic uses it. */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_delete_topic(DDS_DomainParticipant* self,
                                                             DDS_Topic* topic);
/** @return a topic or filtered topic of that name made by this participant, or NULL. */
PEXA_API DDS_TopicDescription* DDS_DomainParticipant_lookup_topicdescription(
    DDS_DomainParticipant* self, const char* name);
/**
 * A view of a topic that lets through the samples for which @p expression holds: the DDS SQL
 * subset of comparisons, BETWEEN, LIKE, AND, OR, NOT, brackets, nested fields (a.b), parameters
 * (%0 … %99), integers, 'text' and enumerators.
 * @return NULL for a bad expression or a missing parameter; the log says at which character.
 */
PEXA_API DDS_ContentFilteredTopic* DDS_DomainParticipant_create_contentfilteredtopic(
    DDS_DomainParticipant* self, const char* name, DDS_Topic* relatedTopic, const char* expression,
    const DDS_StringSeq* parameters);
/** PRECONDITION_NOT_MET while a reader uses it. */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_delete_contentfilteredtopic(
    DDS_DomainParticipant* self, DDS_ContentFilteredTopic* topic);
/** Deletes everything the participant contains, in the right order. */
PEXA_API DDS_ReturnCode_t
DDS_DomainParticipant_delete_contained_entities(DDS_DomainParticipant* self);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_assert_liveliness(DDS_DomainParticipant* self);
/**
 * Makes a type known under @p typeName; the plugin is copied. @param properties must be NULL.
 * OK also when the name is registered with a plugin of the same type; PRECONDITION_NOT_MET when it
 * is registered with another type.
 */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_register_type(DDS_DomainParticipant* self,
                                                              const char* typeName,
                                                              const TULVTypePlugin* plugin,
                                                              const void* properties);
/** PRECONDITION_NOT_MET while a topic uses the name; BAD_PARAMETER when it is not registered. */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_unregister_type(DDS_DomainParticipant* self,
                                                                const char* typeName);

/** The GUID of a participant, in the order of RTPS. */
typedef struct DDS_BuiltinTopicKey_t {
    DDS_Octet value[16];
} DDS_BuiltinTopicKey_t;

/**
 * A participant as discovery announced it. It owns its memory like a QoS record: `_initialize`
 * makes it empty, `_finalize` frees its memory and is harmless on a finalised record. Both return
 * OK, or BAD_PARAMETER for NULL.
 */
typedef struct DDS_ParticipantBuiltinTopicData {
    /** Its first 12 bytes are those of the GUIDs of all entities in the participant. */
    DDS_BuiltinTopicKey_t key;
    DDS_UserDataQosPolicy user_data;
    DDS_EntityNameQosPolicy participant_name;
    /** What the product announces, and "__NetworkAddresses", which the engine adds. Cyclone DDS,
     *  and so this library, announces "__Hostname", "__Pid" and "__ProcessName". */
    DDS_PropertyQosPolicy property;
} DDS_ParticipantBuiltinTopicData;
PEXA_API DDS_ReturnCode_t
DDS_ParticipantBuiltinTopicData_initialize(DDS_ParticipantBuiltinTopicData* self);
PEXA_API DDS_ReturnCode_t
DDS_ParticipantBuiltinTopicData_finalize(DDS_ParticipantBuiltinTopicData* self);

/**
 * Replaces the content of @p handles by the other participants of the domain that are known now,
 * those of this process among them. A participant that left without a word is known until its
 * lease ends. Takes about a millisecond.
 * @return OK; NOT_ENABLED; ILLEGAL_OPERATION in a listener; OUT_OF_RESOURCES: no memory, or a lent
 *   buffer that is too small.
 */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_get_discovered_participants(
    DDS_DomainParticipant* self, DDS_InstanceHandleSeq* handles);
/**
 * Replaces the content of @p data, which must be initialised, by what a participant announced.
 * Takes as long.
 * @param handle of @ref DDS_DomainParticipant_get_discovered_participants
 * @return OK; NOT_ENABLED; ILLEGAL_OPERATION in a listener; BAD_PARAMETER when no such participant
 *   is known, or not any more; OUT_OF_RESOURCES. @p data is unchanged after a failure.
 */
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_get_discovered_participant_data(
    DDS_DomainParticipant* self, DDS_ParticipantBuiltinTopicData* data,
    const DDS_InstanceHandle_t* handle);
/** @name Default QoS of entities in the participant; @p qos must be initialised. @{ */
PEXA_API DDS_ReturnCode_t
DDS_DomainParticipant_get_default_publisher_qos(DDS_DomainParticipant* self, DDS_PublisherQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_set_default_publisher_qos(
    DDS_DomainParticipant* self, const DDS_PublisherQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_get_default_subscriber_qos(
    DDS_DomainParticipant* self, DDS_SubscriberQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_set_default_subscriber_qos(
    DDS_DomainParticipant* self, const DDS_SubscriberQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_set_default_topic_qos(DDS_DomainParticipant* self,
                                                                      const DDS_TopicQos* qos);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_get_default_topic_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_TopicQos* qos, const char* topicName);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_DataWriterQos* qos, const char* topicName);
PEXA_API DDS_ReturnCode_t DDS_DomainParticipant_get_default_datareader_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_DataReaderQos* qos, const char* topicName);
/** @} */
/** @} */

/**
 * @name Topics
 * @{
 */
/** @return the topic behind a description, or NULL when it is a filtered topic or NULL. */
PEXA_API DDS_Topic* DDS_Topic_narrow(DDS_TopicDescription* description);
PEXA_API DDS_TopicDescription* DDS_Topic_as_topicdescription(DDS_Topic* self);
PEXA_API DDS_TopicDescription* DDS_ContentFilteredTopic_as_topicdescription(
    DDS_ContentFilteredTopic* self);
PEXA_API const char* DDS_TopicDescription_get_name(DDS_TopicDescription* self);
/** @return the registered name of its type. */
PEXA_API const char* DDS_TopicDescription_get_type_name(DDS_TopicDescription* self);
PEXA_API DDS_DomainParticipant* DDS_TopicDescription_get_participant(DDS_TopicDescription* self);
PEXA_API DDS_ReturnCode_t DDS_Topic_get_qos(DDS_Topic* self, DDS_TopicQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Topic_set_qos(DDS_Topic* self, const DDS_TopicQos* qos);
PEXA_API DDS_ReturnCode_t DDS_Topic_set_listener(DDS_Topic* self, const DDS_TopicListener* listener,
                                                 DDS_StatusMask mask);
PEXA_API DDS_ReturnCode_t
DDS_Topic_get_inconsistent_topic_status(DDS_Topic* self, DDS_InconsistentTopicStatus* status);
PEXA_API const char* DDS_ContentFilteredTopic_get_filter_expression(DDS_ContentFilteredTopic* self);
PEXA_API DDS_ReturnCode_t DDS_ContentFilteredTopic_get_expression_parameters(
    DDS_ContentFilteredTopic* self, DDS_StringSeq* parameters);
/** Takes effect for samples that arrive from now on. After a refusal the old parameters stay. */
PEXA_API DDS_ReturnCode_t DDS_ContentFilteredTopic_set_expression_parameters(
    DDS_ContentFilteredTopic* self, const DDS_StringSeq* parameters);
PEXA_API DDS_Topic* DDS_ContentFilteredTopic_get_related_topic(DDS_ContentFilteredTopic* self);
/** @} */

PEXA_END_C

#endif
