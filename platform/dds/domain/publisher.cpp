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
    if (to_engine_qos(qos) != Status::ok) {
        return {Status::out_of_resources};
    }
    return engine::create_publisher(parent_id(), qos);
}

Status Publisher::enable_contained(const Operation& operation) {
    return enables_contained() ? writers_.enable_all(operation) : Status::ok;
}

void Publisher::refresh_contained_listeners() {
    writers_.refresh_listeners();
}

Result<DataWriter*> Publisher::create_writer(const Operation& operation, Topic& topic,
                                             const DDS_DataWriterQos* qos,
                                             const DDS_DataWriterListener* listener,
                                             DDS_StatusMask mask) {
    if (topic.participant() != &participant_) {
        return operation.precondition_not_met("the topic is of the same participant");
    }
    auto writer = std::make_shared<DataWriter>(*this, *this, default_writer_qos_, topic);
    Status status = writer->prepare(operation, qos, {listener, mask});
    if (status == Status::ok) {
        status = writer->attach_type(operation);
    }
    if (status != Status::ok) {
        return status;
    }
    return writers_.admit(operation, std::move(writer), enables_contained());
}

Status Publisher::delete_writer(const Operation& operation, DataWriter& writer) {
    return writers_.remove(operation, writer);
}

DataWriter* Publisher::find_writer(const char* topic_name) const {
    return writers_.find([&](const DataWriter& writer) {
        return std::string_view(writer.topic()->name()) == topic_name;
    });
}

Status Publisher::delete_contained(const Operation& operation) {
    return writers_.remove_all(operation);
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_Entity* DDS_Publisher_as_entity(DDS_Publisher* self) {
    return dds::call(__func__, self, &dds::Publisher::as_entity);
}

DDS_ReturnCode_t DDS_Publisher_get_qos(DDS_Publisher* self, DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Publisher_set_qos(DDS_Publisher* self, const DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::set_qos, qos);
}

DDS_ReturnCode_t DDS_Publisher_set_listener(DDS_Publisher* self,
                                            const DDS_PublisherListener* listener,
                                            DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Publisher::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_DataWriter* DDS_Publisher_create_datawriter(DDS_Publisher* self, DDS_Topic* topic,
                                                const DDS_DataWriterQos* qos,
                                                const DDS_DataWriterListener* listener,
                                                DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Publisher::create_writer, dds::required(topic), qos,
                     listener, mask);
}

DDS_ReturnCode_t DDS_Publisher_delete_datawriter(DDS_Publisher* self, DDS_DataWriter* writer) {
    return dds::call(__func__, self, &dds::Publisher::delete_writer, dds::required(writer));
}

DDS_DataWriter* DDS_Publisher_lookup_datawriter(DDS_Publisher* self, const char* topicName) {
    return dds::call(__func__, self, &dds::Publisher::find_writer,
                     dds::required("topicName", topicName));
}

DDS_ReturnCode_t DDS_Publisher_delete_contained_entities(DDS_Publisher* self) {
    return dds::call(__func__, self, &dds::Publisher::delete_contained);
}

DDS_ReturnCode_t DDS_Publisher_get_default_datawriter_qos(DDS_Publisher* self,
                                                          DDS_DataWriterQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::get_default_writer_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Publisher_set_default_datawriter_qos(DDS_Publisher* self,
                                                          const DDS_DataWriterQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::set_default_writer_qos, qos);
}

DDS_DomainParticipant* DDS_Publisher_get_participant(DDS_Publisher* self) {
    return dds::call(__func__, self, &dds::Publisher::participant);
}

DDS_Publisher* DDS_DataWriter_get_publisher(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::publisher);
}
