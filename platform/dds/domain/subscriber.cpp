#include "platform/dds/domain/subscriber.hpp"

#include <string_view>

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/domain/participant_factory.hpp"
#include "platform/dds/endpoints/reader.hpp"

namespace pexa::dds {

Subscriber::Subscriber(Participant& participant)
    : QosEntity(&participant, participant.default_subscriber_qos()),
      participant_(participant),
      default_reader_qos_(participant.factory()->profiles()) {}

Subscriber::~Subscriber() = default;

engine::Created Subscriber::create_in_engine(const Operation& /*operation*/) {
    engine::Qos qos;
    if (to_engine_qos(qos) != DDS_RETCODE_OK) {
        return {Status::out_of_resources};
    }
    return engine::create_subscriber(participant_.engine_id(), qos);
}

DDS_ReturnCode_t Subscriber::enable_contained(const Operation& operation) {
    return enables_contained() ? readers_.enable_all(operation) : DDS_RETCODE_OK;
}

void Subscriber::refresh_contained_listeners() {
    readers_.refresh_listeners();
}

DataReader* Subscriber::create_reader(const Operation& operation, TopicDescription& topic,
                                      const DDS_DataReaderQos* qos,
                                      const DDS_DataReaderListener* listener, DDS_StatusMask mask) {
    if (topic.participant() != &participant_) {
        static_cast<void>(operation.precondition_not_met("the topic is of the same participant"));
        return nullptr;
    }
    auto reader = std::make_shared<DataReader>(*this, topic);
    if (reader->prepare(operation, qos, {listener, mask}) != DDS_RETCODE_OK ||
        reader->attach_type(operation) != DDS_RETCODE_OK) {
        return nullptr;
    }
    return readers_.admit(operation, std::move(reader), enables_contained());
}

DDS_ReturnCode_t Subscriber::delete_reader(const Operation& operation, DataReader& reader) {
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

DDS_ReturnCode_t Subscriber::delete_contained(const Operation& operation) {
    if (has_loans()) {
        return operation.precondition_not_met("no loan is outstanding");
    }
    return readers_.remove_all(operation);
}

}  // namespace pexa::dds
