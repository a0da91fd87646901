#include "platform/dds/domain/publisher.hpp"

#include <string_view>

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/domain/participant_factory.hpp"
#include "platform/dds/endpoints/writer.hpp"

namespace pexa::dds {

Publisher::Publisher(Participant& participant)
    : QosEntity(&participant, participant.default_publisher_qos()),
      participant_(participant),
      default_writer_qos_(participant.factory()->profiles()) {}

Publisher::~Publisher() = default;

engine::Created Publisher::create_in_engine(const Operation& /*operation*/) {
    engine::Qos qos;
    if (to_engine_qos(qos) != DDS_RETCODE_OK) {
        return {Status::out_of_resources};
    }
    return engine::create_publisher(participant_.engine_id(), qos);
}

DDS_ReturnCode_t Publisher::enable_contained(const Operation& operation) {
    return enables_contained() ? writers_.enable_all(operation) : DDS_RETCODE_OK;
}

void Publisher::refresh_contained_listeners() {
    writers_.refresh_listeners();
}

DataWriter* Publisher::create_writer(const Operation& operation, Topic& topic,
                                     const DDS_DataWriterQos* qos,
                                     const DDS_DataWriterListener* listener, DDS_StatusMask mask) {
    if (topic.participant() != &participant_) {
        static_cast<void>(operation.precondition_not_met("the topic is of the same participant"));
        return nullptr;
    }
    auto writer = std::make_shared<DataWriter>(*this, topic);
    if (writer->prepare(operation, qos, {listener, mask}) != DDS_RETCODE_OK ||
        writer->attach_type(operation) != DDS_RETCODE_OK) {
        return nullptr;
    }
    return writers_.admit(operation, std::move(writer), enables_contained());
}

DDS_ReturnCode_t Publisher::delete_writer(const Operation& operation, DataWriter& writer) {
    return writers_.remove(operation, writer);
}

DataWriter* Publisher::find_writer(const char* topic_name) const {
    return writers_.find([&](const DataWriter& writer) {
        return std::string_view(writer.topic()->name()) == topic_name;
    });
}

DDS_ReturnCode_t Publisher::delete_contained(const Operation& operation) {
    return writers_.remove_all(operation);
}

}  // namespace pexa::dds
