#include "platform/dds/domain/participant.hpp"
#include "platform/dds/domain/participant_factory.hpp"

namespace dds = pexa::dds;

DDS_DomainParticipantFactory* DDS_DomainParticipant_get_participant_factoryI(
    DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::factory);
}

DDS_DomainId_t DDS_DomainParticipant_get_domain_id(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::domain);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_qos(DDS_DomainParticipant* self,
                                               DDS_DomainParticipantQos* qos) {
    return dds::call(__func__, self, &dds::Participant::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipant_set_qos(DDS_DomainParticipant* self,
                                               const DDS_DomainParticipantQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_set_listener(DDS_DomainParticipant* self,
                                                    const DDS_DomainParticipantListener* listener,
                                                    DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_Publisher* DDS_DomainParticipant_create_publisher(DDS_DomainParticipant* self,
                                                      const DDS_PublisherQos* qos,
                                                      const DDS_PublisherListener* listener,
                                                      DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::create_publisher, qos, listener, mask);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_publisher(DDS_DomainParticipant* self,
                                                        DDS_Publisher* publisher) {
    return dds::call(__func__, self, &dds::Participant::delete_publisher, dds::required(publisher));
}

DDS_Subscriber* DDS_DomainParticipant_create_subscriber(DDS_DomainParticipant* self,
                                                        const DDS_SubscriberQos* qos,
                                                        const DDS_SubscriberListener* listener,
                                                        DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::create_subscriber, qos, listener, mask);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_subscriber(DDS_DomainParticipant* self,
                                                         DDS_Subscriber* subscriber) {
    return dds::call(__func__, self, &dds::Participant::delete_subscriber,
                     dds::required(subscriber));
}

DDS_Topic* DDS_DomainParticipant_create_topic(DDS_DomainParticipant* self, const char* topicName,
                                              const char* typeName, const DDS_TopicQos* qos,
                                              const DDS_TopicListener* listener,
                                              DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::create_topic,
                     dds::required("topicName", topicName), dds::required("typeName", typeName),
                     qos, listener, mask);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_topic(DDS_DomainParticipant* self, DDS_Topic* topic) {
    return dds::call(__func__, self, &dds::Participant::delete_topic, dds::required(topic));
}

DDS_TopicDescription* DDS_DomainParticipant_lookup_topicdescription(DDS_DomainParticipant* self,
                                                                    const char* name) {
    return dds::call(__func__, self, &dds::Participant::find_description,
                     dds::required("name", name));
}

DDS_ContentFilteredTopic* DDS_DomainParticipant_create_contentfilteredtopic(
    DDS_DomainParticipant* self, const char* name, DDS_Topic* relatedTopic, const char* expression,
    const DDS_StringSeq* parameters) {
    return dds::call(__func__, self, &dds::Participant::create_filtered_topic,
                     dds::required("name", name), dds::required("relatedTopic", relatedTopic),
                     dds::required("expression", expression), parameters);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_contentfilteredtopic(
    DDS_DomainParticipant* self, DDS_ContentFilteredTopic* topic) {
    return dds::call(__func__, self, &dds::Participant::delete_filtered_topic,
                     dds::required(topic));
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_contained_entities(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::delete_contained);
}

DDS_ReturnCode_t DDS_DomainParticipant_assert_liveliness(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::assert_liveliness);
}

DDS_ReturnCode_t DDS_DomainParticipant_register_type(DDS_DomainParticipant* self,
                                                     const char* typeName,
                                                     const TULVTypePlugin* plugin,
                                                     const void* properties) {
    return dds::call(__func__, self, &dds::Participant::register_type,
                     dds::required("typeName", typeName), dds::required("plugin", plugin),
                     properties);
}

DDS_ReturnCode_t DDS_DomainParticipant_unregister_type(DDS_DomainParticipant* self,
                                                       const char* typeName) {
    return dds::call(__func__, self, &dds::Participant::unregister_type,
                     dds::required("typeName", typeName));
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_publisher_qos(DDS_DomainParticipant* self,
                                                                 DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Participant::get_default_publisher_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipant_set_default_publisher_qos(DDS_DomainParticipant* self,
                                                                 const DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_default_publisher_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_subscriber_qos(DDS_DomainParticipant* self,
                                                                  DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Participant::get_default_subscriber_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipant_set_default_subscriber_qos(DDS_DomainParticipant* self,
                                                                  const DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_default_subscriber_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_set_default_topic_qos(DDS_DomainParticipant* self,
                                                             const DDS_TopicQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_default_topic_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_topic_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_TopicQos* qos, const char* topicName) {
    return dds::call(__func__, self, &dds::Participant::get_default_topic_qos,
                     dds::required("qos", qos), topicName);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_DataWriterQos* qos, const char* topicName) {
    return dds::call(__func__, self, &dds::Participant::get_default_writer_qos,
                     dds::required("qos", qos), topicName);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_datareader_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_DataReaderQos* qos, const char* topicName) {
    return dds::call(__func__, self, &dds::Participant::get_default_reader_qos,
                     dds::required("qos", qos), topicName);
}
