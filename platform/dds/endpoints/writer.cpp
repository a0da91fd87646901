#include "platform/dds/endpoints/writer.hpp"

#include "platform/dds/interface/handle_list.hpp"
#include "platform/dds/qos/duration.hpp"

namespace pexa::dds {

DataWriter::DataWriter(Publisher& publisher, Topic& topic)
    : QosEntity(&publisher, publisher.default_writer_qos()),
      publisher_(publisher),
      topic_(topic),
      endpoint_(topic.type()) {}

DDS_ReturnCode_t DataWriter::attach_type(const Operation& operation) {
    return endpoint_.attach(operation, TULV_ENDPOINT_WRITER);
}

engine::Created DataWriter::create_in_engine(const Operation& operation) {
    const engine::EntityId topic = topic_.engine_topic(operation);
    if (topic == engine::no_entity) {
        return {Status::precondition_not_met};
    }
    engine::Qos qos;
    if (to_engine_qos(qos) != DDS_RETCODE_OK) {
        return {Status::out_of_resources};
    }
    return engine::create_writer(publisher_.engine_id(), topic, qos);
}

engine::StatusMask DataWriter::statuses() const {
    return engine::offered_deadline_missed_status | engine::offered_incompatible_qos_status |
           engine::liveliness_lost_status | engine::publication_matched_status;
}

DDS_Boolean DataWriter::is_of_type(const char* type_name) const {
    return endpoint_.type().is_of(type_name) ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_ReturnCode_t DataWriter::get_key_value(const Operation& operation, void* sample,
                                           const DDS_InstanceHandle_t& handle) {
    return endpoint_.get_key_value(operation, engine_id(), sample, handle);
}

DDS_InstanceHandle_t DataWriter::lookup_instance(const void* sample) {
    return endpoint_.lookup_instance(engine_id(), sample);
}

DDS_ReturnCode_t DataWriter::wait_for_acknowledgments(const Operation& operation,
                                                      const DDS_Duration_t& max_wait) const {
    if (!is_valid(max_wait)) {
        return operation.bad_parameter("maxWait");
    }
    const engine::EntityId id = engine_id();
    return id == engine::no_entity
               ? DDS_RETCODE_NOT_ENABLED
               : to_return_code(engine::wait_for_acknowledgments(id, to_nanoseconds(max_wait)));
}

DDS_ReturnCode_t DataWriter::flush() const {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    engine::flush(id);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DataWriter::assert_liveliness() const {
    const engine::EntityId id = engine_id();
    return id == engine::no_entity ? DDS_RETCODE_NOT_ENABLED
                                   : to_return_code(engine::assert_liveliness(id));
}

DDS_ReturnCode_t DataWriter::get_matched_subscriptions(DDS_InstanceHandleSeq& handles) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    std::vector<engine::LocalHandle> peers;
    const Status status = engine::get_matched_subscriptions(id, peers);
    return status == Status::ok
               ? store_handles(peers, handles,
                               [&](engine::LocalHandle peer) { return peer_handle(peer); })
               : to_return_code(status);
}

DDS_InstanceHandle_t DataWriter::peer_handle(engine::LocalHandle peer) {
    return peers_.handle_of(engine_id(), peer);
}

}  // namespace pexa::dds
