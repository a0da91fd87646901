#include "platform/dds/endpoints/reader.hpp"

#include "platform/dds/interface/handle_list.hpp"
#include "platform/dds/qos/duration.hpp"

namespace pexa::dds {

DataReader::DataReader(Subscriber& subscriber, TopicDescription& topic)
    : QosEntity(&subscriber, subscriber.default_reader_qos()),
      subscriber_(subscriber),
      topic_(topic),
      endpoint_(topic.type()) {}

DDS_ReturnCode_t DataReader::attach_type(const Operation& operation) {
    return endpoint_.attach(operation, TULV_ENDPOINT_READER);
}

engine::Created DataReader::create_in_engine(const Operation& operation) {
    const engine::EntityId topic = topic_.engine_topic(operation);
    if (topic == engine::no_entity) {
        return {Status::precondition_not_met};
    }
    engine::Qos qos;
    if (to_engine_qos(qos) != DDS_RETCODE_OK) {
        return {Status::out_of_resources};
    }
    return engine::create_reader(subscriber_.engine_id(), topic, qos);
}

void DataReader::closed() {
    for (const auto& condition : conditions_.all()) {
        condition->reader_closed();
    }
    topic_use_.end();
}

engine::StatusMask DataReader::statuses() const {
    return engine::requested_deadline_missed_status | engine::requested_incompatible_qos_status |
           engine::sample_lost_status | engine::sample_rejected_status |
           engine::data_available_status | engine::liveliness_changed_status |
           engine::subscription_matched_status;
}

DDS_Boolean DataReader::is_of_type(const char* type_name) const {
    return endpoint_.type().is_of(type_name) ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_ReturnCode_t DataReader::get_key_value(const Operation& operation, void* sample,
                                           const DDS_InstanceHandle_t& handle) {
    return endpoint_.get_key_value(operation, engine_id(), sample, handle);
}

DDS_InstanceHandle_t DataReader::lookup_instance(const void* sample) {
    return endpoint_.lookup_instance(engine_id(), sample);
}

ReadCondition* DataReader::create_condition(const Operation& operation,
                                            DDS_SampleStateMask sample_states,
                                            DDS_ViewStateMask view_states,
                                            DDS_InstanceStateMask instance_states) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        static_cast<void>(operation.precondition_not_met("the reader is enabled"));
        return nullptr;
    }
    auto condition = std::make_shared<ReadCondition>(
        *this, engine::StateMask{sample_states, view_states, instance_states});
    const DDS_ReturnCode_t opened = condition->open(id);
    if (opened != DDS_RETCODE_OK) {
        static_cast<void>(operation.not_created("read condition", opened));
        return nullptr;
    }
    return conditions_.add(std::move(condition));
}

DDS_ReturnCode_t DataReader::delete_condition(const Operation& operation,
                                              ReadCondition& condition) {
    return conditions_.remove(operation, condition);
}

DDS_ReturnCode_t DataReader::wait_for_historical_data(const Operation& operation,
                                                      const DDS_Duration_t& max_wait) const {
    if (!is_valid(max_wait)) {
        return operation.bad_parameter("maxWait");
    }
    const engine::EntityId id = engine_id();
    return id == engine::no_entity
               ? DDS_RETCODE_NOT_ENABLED
               : to_return_code(engine::wait_for_historical_data(id, to_nanoseconds(max_wait)));
}

DDS_ReturnCode_t DataReader::get_matched_publications(DDS_InstanceHandleSeq& handles) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    std::vector<engine::LocalHandle> peers;
    const Status status = engine::get_matched_publications(id, peers);
    return status == Status::ok
               ? store_handles(peers, handles,
                               [&](engine::LocalHandle peer) { return peer_handle(peer); })
               : to_return_code(status);
}

DDS_InstanceHandle_t DataReader::peer_handle(engine::LocalHandle peer) {
    return peers_.handle_of(engine_id(), peer);
}

}  // namespace pexa::dds
