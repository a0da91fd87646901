#include "platform/dds/domain/participant_factory.hpp"

#include <utility>

#include "pexa/config_logger.h"
#include "platform/dds/interface/string_list.hpp"

namespace pexa::dds {

namespace {

// Not destroyed with the process: threads of the application may outlive static objects.
constinit std::mutex instance_mutex;
constinit Factory* the_instance = nullptr;

}  // namespace

Factory* Factory::instance() {
    const std::lock_guard guard(instance_mutex);
    if (the_instance == nullptr) {
        // From the first participant on, the engine's diagnostics go to the middleware's logger.
        PEXA_Config_Logger_get_instance();
        the_instance = new Factory;
    }
    return the_instance;
}

Status Factory::finalize(const Operation& operation) {
    const std::lock_guard guard(instance_mutex);
    if (the_instance != nullptr && !the_instance->participants_.empty()) {
        return operation.precondition_not_met("no participant exists");
    }
    delete std::exchange(the_instance, nullptr);
    return Status::ok;
}

Result<Participant*> Factory::create_participant(const Operation& operation, DDS_DomainId_t domain,
                                                 const DDS_DomainParticipantQos* qos,
                                                 const DDS_DomainParticipantListener* listener,
                                                 DDS_StatusMask mask) {
    if (domain < 0) {
        return operation.bad_parameter("domainId");
    }
    auto participant = std::make_shared<Participant>(*this, domain);
    const Status prepared = participant->prepare(operation, qos, {listener, mask});
    if (prepared != Status::ok) {
        return prepared;
    }
    const bool enable = qos_.with_lock([](const DDS_DomainParticipantFactoryQos& own) {
        return own.entity_factory.autoenable_created_entities != DDS_BOOLEAN_FALSE;
    });
    return participants_.admit(operation, std::move(participant), enable);
}

Result<Participant*> Factory::wrap_participant(const Operation& operation,
                                               engine::EntityId participant) {
    std::uint32_t domain = 0;
    if (!engine::is_participant(participant) ||
        engine::get_domain_id(participant, domain) != Status::ok) {
        return operation.bad_parameter("engineParticipant");
    }
    auto wrapper = std::make_shared<Participant>(*this, static_cast<DDS_DomainId_t>(domain));
    const Status wrapped = wrapper->wrap(operation, participant);
    if (wrapped != Status::ok) {
        return wrapped;
    }
    return participants_.add(std::move(wrapper));
}

Status Factory::delete_participant(const Operation& operation, Participant& participant) {
    if (!participants_.contains(participant)) {
        return operation.precondition_not_met("the participant exists");
    }
    if (!participant.is_empty()) {
        return operation.precondition_not_met("the participant contains no entities");
    }
    return participants_.remove(operation, participant);
}

Participant* Factory::find_participant(DDS_DomainId_t domain) const {
    return participants_.find(
        [&](const Participant& participant) { return participant.domain() == domain; });
}

Status Factory::get_profiles(const Operation& operation, DDS_StringSeq& names,
                             const char* library) {
    return store_strings(profiles_.get(operation)->profiles(library), names);
}

Status Factory::get_libraries(const Operation& operation, DDS_StringSeq& names) {
    return store_strings(profiles_.get(operation)->libraries(), names);
}

template <typename Record>
Status Factory::get_profile_qos(const Operation& operation, Record& qos, const char* library,
                                const char* profile, const char* topic_name) {
    return profiles_.fill(operation, {library, profile}, topic_name, qos);
}

template Status Factory::get_profile_qos(const Operation&, DDS_DomainParticipantQos&, const char*,
                                         const char*, const char*);
template Status Factory::get_profile_qos(const Operation&, DDS_TopicQos&, const char*, const char*,
                                         const char*);
template Status Factory::get_profile_qos(const Operation&, DDS_PublisherQos&, const char*,
                                         const char*, const char*);
template Status Factory::get_profile_qos(const Operation&, DDS_SubscriberQos&, const char*,
                                         const char*, const char*);
template Status Factory::get_profile_qos(const Operation&, DDS_DataWriterQos&, const char*,
                                         const char*, const char*);
template Status Factory::get_profile_qos(const Operation&, DDS_DataReaderQos&, const char*,
                                         const char*, const char*);

}  // namespace pexa::dds

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

DDS_DomainParticipantFactory* DDS_DomainParticipant_get_participant_factoryI(
    DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::factory);
}
