#include "platform/dds/domain/participant_factory.hpp"

namespace dds = pexa::dds;

DDS_DomainParticipantFactory* DDS_DomainParticipantFactory_get_instance() {
    return dds::guarded(dds::Operation(__func__), [] { return dds::Factory::instance(); });
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_finalize_instance() {
    const dds::Operation operation(__func__);
    return dds::guarded(operation, [&] { return dds::Factory::finalize(operation); });
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_qos(DDS_DomainParticipantFactory* self,
                                                      DDS_DomainParticipantFactoryQos* qos) {
    return dds::call(__func__, self, &dds::Factory::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_set_qos(DDS_DomainParticipantFactory* self,
                                                      const DDS_DomainParticipantFactoryQos* qos) {
    return dds::call(__func__, self, &dds::Factory::set_qos, qos);
}

DDS_DomainParticipant* DDS_DomainParticipantFactory_create_participant(
    DDS_DomainParticipantFactory* self, DDS_DomainId_t domainId,
    const DDS_DomainParticipantQos* qos, const DDS_DomainParticipantListener* listener,
    DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Factory::create_participant, domainId, qos, listener,
                     mask);
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_delete_participant(
    DDS_DomainParticipantFactory* self, DDS_DomainParticipant* participant) {
    return dds::call(__func__, self, &dds::Factory::delete_participant, dds::required(participant));
}

DDS_DomainParticipant* DDS_DomainParticipantFactory_lookup_participant(
    DDS_DomainParticipantFactory* self, DDS_DomainId_t domainId) {
    return dds::call(__func__, self, &dds::Factory::find_participant, domainId);
}

DDS_DomainParticipant* DDS_DomainParticipantFactory_wrap_participant(
    DDS_DomainParticipantFactory* self, DDS_Long engineParticipant) {
    return dds::call(__func__, self, &dds::Factory::wrap_participant, engineParticipant);
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_default_participant_qos(
    DDS_DomainParticipantFactory* self, DDS_DomainParticipantQos* qos) {
    return dds::call(__func__, self, &dds::Factory::get_default_participant_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_set_default_participant_qos(
    DDS_DomainParticipantFactory* self, const DDS_DomainParticipantQos* qos) {
    return dds::call(__func__, self, &dds::Factory::set_default_participant_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_load_qos_profiles(DDS_DomainParticipantFactory* self,
                                                                const char* fileName) {
    return dds::call(__func__, self, &dds::Factory::load_profiles,
                     dds::required("fileName", fileName));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_reload_qos_profiles(
    DDS_DomainParticipantFactory* self) {
    return dds::call(__func__, self, &dds::Factory::reload_profiles);
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_qos_profiles(DDS_DomainParticipantFactory* self,
                                                               DDS_StringSeq* names,
                                                               const char* library) {
    return dds::call(__func__, self, &dds::Factory::get_profiles, dds::required("names", names),
                     dds::required("library", library));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_qos_profile_libraries(
    DDS_DomainParticipantFactory* self, DDS_StringSeq* names) {
    return dds::call(__func__, self, &dds::Factory::get_libraries, dds::required("names", names));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_participant_qos_from_profile(
    DDS_DomainParticipantFactory* self, DDS_DomainParticipantQos* qos, const char* library,
    const char* profile) {
    return dds::call(__func__, self, &dds::Factory::get_profile_qos<DDS_DomainParticipantQos>,
                     dds::required("qos", qos), dds::required("library", library),
                     dds::required("profile", profile), static_cast<const char*>(nullptr));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_publisher_qos_from_profile(
    DDS_DomainParticipantFactory* self, DDS_PublisherQos* qos, const char* library,
    const char* profile) {
    return dds::call(__func__, self, &dds::Factory::get_profile_qos<DDS_PublisherQos>,
                     dds::required("qos", qos), dds::required("library", library),
                     dds::required("profile", profile), static_cast<const char*>(nullptr));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_subscriber_qos_from_profile(
    DDS_DomainParticipantFactory* self, DDS_SubscriberQos* qos, const char* library,
    const char* profile) {
    return dds::call(__func__, self, &dds::Factory::get_profile_qos<DDS_SubscriberQos>,
                     dds::required("qos", qos), dds::required("library", library),
                     dds::required("profile", profile), static_cast<const char*>(nullptr));
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_topic_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory* self, DDS_TopicQos* qos, const char* library, const char* profile,
    const char* topicName) {
    return dds::call(__func__, self, &dds::Factory::get_profile_qos<DDS_TopicQos>,
                     dds::required("qos", qos), dds::required("library", library),
                     dds::required("profile", profile), topicName);
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory* self, DDS_DataWriterQos* qos, const char* library,
    const char* profile, const char* topicName) {
    return dds::call(__func__, self, &dds::Factory::get_profile_qos<DDS_DataWriterQos>,
                     dds::required("qos", qos), dds::required("library", library),
                     dds::required("profile", profile), topicName);
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_get_datareader_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory* self, DDS_DataReaderQos* qos, const char* library,
    const char* profile, const char* topicName) {
    return dds::call(__func__, self, &dds::Factory::get_profile_qos<DDS_DataReaderQos>,
                     dds::required("qos", qos), dds::required("library", library),
                     dds::required("profile", profile), topicName);
}
