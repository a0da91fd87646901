#include "platform/dds/domain/participant_factory.hpp"

#include <cstdio>
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

DDS_ReturnCode_t Factory::finalize(const Operation& operation) {
    const std::lock_guard guard(instance_mutex);
    if (the_instance != nullptr && !the_instance->participants_.empty()) {
        return operation.precondition_not_met("no participant exists");
    }
    delete std::exchange(the_instance, nullptr);
    return DDS_RETCODE_OK;
}

Participant* Factory::create_participant(const Operation& operation, DDS_DomainId_t domain,
                                         const DDS_DomainParticipantQos* qos,
                                         const DDS_DomainParticipantListener* listener,
                                         DDS_StatusMask mask) {
    if (domain < 0) {
        static_cast<void>(operation.bad_parameter("domainId"));
        return nullptr;
    }
    auto participant = std::make_shared<Participant>(*this, domain);
    if (participant->prepare(operation, qos, {listener, mask}) != DDS_RETCODE_OK) {
        return nullptr;
    }
    const bool enable = qos_.with_lock([](const DDS_DomainParticipantFactoryQos& own) {
        return own.entity_factory.autoenable_created_entities != DDS_BOOLEAN_FALSE;
    });
    return participants_.admit(operation, std::move(participant), enable);
}

Participant* Factory::wrap_participant(const Operation& operation, engine::EntityId participant) {
    std::uint32_t domain = 0;
    if (!engine::is_participant(participant) ||
        engine::get_domain_id(participant, domain) != Status::ok) {
        static_cast<void>(operation.bad_parameter("engineParticipant"));
        return nullptr;
    }
    auto wrapper = std::make_shared<Participant>(*this, static_cast<DDS_DomainId_t>(domain));
    if (wrapper->wrap(operation, participant) != DDS_RETCODE_OK) {
        return nullptr;
    }
    return participants_.add(std::move(wrapper));
}

DDS_ReturnCode_t Factory::delete_participant(const Operation& operation, Participant& participant) {
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

DDS_ReturnCode_t Factory::get_profiles(const Operation& operation, DDS_StringSeq& names,
                                       const char* library) {
    return store_strings(profiles_.get(operation)->profiles(library), names);
}

DDS_ReturnCode_t Factory::get_libraries(const Operation& operation, DDS_StringSeq& names) {
    return store_strings(profiles_.get(operation)->libraries(), names);
}

template <typename Record>
DDS_ReturnCode_t Factory::get_profile_qos(const Operation& operation, Record& qos,
                                          const char* library, const char* profile,
                                          const char* topic_name) {
    const std::shared_ptr<const ProfileStore> store = profiles_.get(operation);
    const QosProfile* found = store->find({library, profile});
    if (found == nullptr) {
        char text[256];
        std::snprintf(text, sizeof text, "looking for profile \"%s\" of library \"%s\"", profile,
                      library);
        return operation.failed(text, DDS_RETCODE_NO_DATA);
    }
    return store->fill(*found, topic_name, qos);
}

template DDS_ReturnCode_t Factory::get_profile_qos(const Operation&, DDS_DomainParticipantQos&,
                                                   const char*, const char*, const char*);
template DDS_ReturnCode_t Factory::get_profile_qos(const Operation&, DDS_TopicQos&, const char*,
                                                   const char*, const char*);
template DDS_ReturnCode_t Factory::get_profile_qos(const Operation&, DDS_PublisherQos&, const char*,
                                                   const char*, const char*);
template DDS_ReturnCode_t Factory::get_profile_qos(const Operation&, DDS_SubscriberQos&,
                                                   const char*, const char*, const char*);
template DDS_ReturnCode_t Factory::get_profile_qos(const Operation&, DDS_DataWriterQos&,
                                                   const char*, const char*, const char*);
template DDS_ReturnCode_t Factory::get_profile_qos(const Operation&, DDS_DataReaderQos&,
                                                   const char*, const char*, const char*);

}  // namespace pexa::dds
