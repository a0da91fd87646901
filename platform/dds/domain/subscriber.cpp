#include "platform/dds/domain/subscriber.hpp"

#include <string_view>

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/domain/participant_factory.hpp"
#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/interface/scoped_call.hpp"

namespace pexa::dds {

Subscriber::Subscriber(Participant& participant)
    : QosEntity(&participant, participant.default_subscriber_qos()),
      participant_(participant),
      default_reader_qos_(participant.factory()->profiles()) {}

Subscriber::~Subscriber() = default;

engine::Created Subscriber::create_in_engine(const Operation& /*operation*/) {
    engine::Qos qos;
    if (to_engine_qos(qos) != Status::ok) {
        return {Status::out_of_resources};
    }
    return engine::create_subscriber(parent_id(), qos);
}

Status Subscriber::enable_contained(const Operation& operation) {
    return enables_contained() ? readers_.enable_all(operation) : Status::ok;
}

void Subscriber::refresh_contained_listeners() {
    readers_.refresh_listeners();
}

Result<DataReader*> Subscriber::create_reader(const Operation& operation, TopicDescription& topic,
                                              const DDS_DataReaderQos* qos,
                                              const DDS_DataReaderListener* listener,
                                              DDS_StatusMask mask) {
    if (topic.participant() != &participant_) {
        return operation.precondition_not_met("the topic is of the same participant");
    }
    auto reader = std::make_shared<DataReader>(*this, *this, default_reader_qos_, topic);
    Status status = reader->prepare(operation, qos, {listener, mask});
    if (status == Status::ok) {
        status = reader->attach_type(operation);
    }
    if (status != Status::ok) {
        return status;
    }
    return readers_.admit(operation, std::move(reader), enables_contained());
}

Status Subscriber::delete_reader(const Operation& operation, DataReader& reader) {
    if (!readers_.contains(reader)) {
        return operation.precondition_not_met("the reader is of this subscriber");
    }
    if (reader.has_loans()) {
        return operation.precondition_not_met("no loan is outstanding");
    }
    if (reader.has_conditions()) {
        return operation.precondition_not_met("no read condition is outstanding");
    }
    return readers_.remove(operation, reader);
}

DataReader* Subscriber::find_reader(const char* topic_name) const {
    return readers_.find([&](const DataReader& reader) {
        return std::string_view(reader.topic()->name()) == topic_name;
    });
}

bool Subscriber::has_loans() const {
    return readers_.find([](const DataReader& reader) { return reader.has_loans(); }) != nullptr;
}

Status Subscriber::delete_contained(const Operation& operation) {
    if (has_loans()) {
        return operation.precondition_not_met("no loan is outstanding");
    }
    return readers_.remove_all(operation);
}

void SubscriberDispatch::on_data_on_readers(engine::EntityId /*id*/) {
    const EngineCall mark;
    DDS_DomainParticipantListener listener;
    if (subscriber_.listeners().find(engine::data_on_readers_status, listener)) {
        const DDS_SubscriberListener& chosen = listener.as_subscriberlistener;
        chosen.on_data_on_readers(chosen.as_datareaderlistener.listener_data,
                                  handle_of(&subscriber_));
    }
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_Entity* DDS_Subscriber_as_entity(DDS_Subscriber* self) {
    return dds::call(__func__, self, &dds::Subscriber::as_entity);
}

DDS_ReturnCode_t DDS_Subscriber_get_qos(DDS_Subscriber* self, DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Subscriber_set_qos(DDS_Subscriber* self, const DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::set_qos, qos);
}

DDS_ReturnCode_t DDS_Subscriber_set_listener(DDS_Subscriber* self,
                                             const DDS_SubscriberListener* listener,
                                             DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Subscriber::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_DataReader* DDS_Subscriber_create_datareader(DDS_Subscriber* self, DDS_TopicDescription* topic,
                                                 const DDS_DataReaderQos* qos,
                                                 const DDS_DataReaderListener* listener,
                                                 DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Subscriber::create_reader, dds::required("topic", topic),
                     qos, listener, mask);
}

DDS_ReturnCode_t DDS_Subscriber_delete_datareader(DDS_Subscriber* self, DDS_DataReader* reader) {
    return dds::call(__func__, self, &dds::Subscriber::delete_reader, dds::required(reader));
}

DDS_DataReader* DDS_Subscriber_lookup_datareader(DDS_Subscriber* self, const char* topicName) {
    return dds::call(__func__, self, &dds::Subscriber::find_reader,
                     dds::required("topicName", topicName));
}

DDS_ReturnCode_t DDS_Subscriber_delete_contained_entities(DDS_Subscriber* self) {
    return dds::call(__func__, self, &dds::Subscriber::delete_contained);
}

DDS_ReturnCode_t DDS_Subscriber_get_default_datareader_qos(DDS_Subscriber* self,
                                                           DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::get_default_reader_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Subscriber_set_default_datareader_qos(DDS_Subscriber* self,
                                                           const DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::set_default_reader_qos, qos);
}

DDS_DomainParticipant* DDS_Subscriber_get_participant(DDS_Subscriber* self) {
    return dds::call(__func__, self, &dds::Subscriber::participant);
}

DDS_Subscriber* DDS_DataReader_get_subscriber(DDS_DataReader* self) {
    return dds::call(__func__, self, &dds::DataReader::subscriber);
}
