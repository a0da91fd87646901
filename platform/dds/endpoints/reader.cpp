#include "platform/dds/endpoints/reader.hpp"

#include "platform/dds/conditions/waiting.hpp"
#include "platform/dds/qos/duration.hpp"

namespace pexa::dds {

DataReader::DataReader(Subscriber& subscriber, const Entity& parent,
                       const DefaultQos<DDS_DataReaderQos>& defaults, TopicDescription& topic)
    : Endpoint(parent, defaults, topic, TULV_ENDPOINT_READER), subscriber_(subscriber) {}

engine::Created DataReader::create(engine::EntityId topic, const engine::Qos& qos) {
    return engine::create_reader(parent_id(), topic, qos);
}

void DataReader::closed() {
    static_cast<void>(conditions_.all_ok([](ReadCondition& condition) {
        condition.reader_closed();
        return Status::ok;
    }));
    release_topic();
}

engine::StatusMask DataReader::statuses() const {
    return engine::requested_deadline_missed_status | engine::requested_incompatible_qos_status |
           engine::sample_lost_status | engine::sample_rejected_status |
           engine::data_available_status | engine::liveliness_changed_status |
           engine::subscription_matched_status;
}

Result<ReadCondition*> DataReader::create_condition(const Operation& operation,
                                                    DDS_SampleStateMask sample_states,
                                                    DDS_ViewStateMask view_states,
                                                    DDS_InstanceStateMask instance_states) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return operation.precondition_not_met("the reader is enabled");
    }
    auto condition = std::make_shared<ReadCondition>(
        *this, engine::StateMask{sample_states, view_states, instance_states});
    const Status opened = condition->open(id);
    if (opened != Status::ok) {
        return operation.not_created("read condition", opened);
    }
    return conditions_.add(std::move(condition));
}

Status DataReader::delete_condition(const Operation& operation, ReadCondition& condition) {
    return conditions_.remove(operation, condition);
}

Status DataReader::wait_for_historical_data(const Operation& operation,
                                            const DDS_Duration_t& max_wait) const {
    if (!is_valid(max_wait)) {
        return operation.bad_parameter("maxWait");
    }
    const engine::EntityId id = engine_id();
    return id == engine::no_entity ? Status::not_enabled
                                   : engine::wait_for_historical_data(id, to_nanoseconds(max_wait));
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_ReadCondition* DDS_DataReader_create_readcondition(DDS_DataReader* self,
                                                       DDS_SampleStateMask sampleStates,
                                                       DDS_ViewStateMask viewStates,
                                                       DDS_InstanceStateMask states) {
    return dds::call(__func__, self, &dds::DataReader::create_condition, sampleStates, viewStates,
                     states);
}

DDS_ReturnCode_t DDS_DataReader_delete_readcondition(DDS_DataReader* self,
                                                     DDS_ReadCondition* condition) {
    return dds::call(__func__, self, &dds::DataReader::delete_condition, dds::required(condition));
}

DDS_DataReader* DDS_ReadCondition_get_datareader(DDS_ReadCondition* self) {
    return dds::call(__func__, self, &dds::ReadCondition::reader);
}

DDS_Entity* DDS_DataReader_as_entity(DDS_DataReader* self) {
    return dds::call(__func__, self, &dds::DataReader::as_entity);
}

DDS_ReturnCode_t DDS_DataReader_get_qos(DDS_DataReader* self, DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::DataReader::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DataReader_set_qos(DDS_DataReader* self, const DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::DataReader::set_qos, qos);
}

DDS_ReturnCode_t DDS_DataReader_set_listener(DDS_DataReader* self,
                                             const DDS_DataReaderListener* listener,
                                             DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::DataReader::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_TopicDescription* DDS_DataReader_get_topicdescription(DDS_DataReader* self) {
    return dds::call(__func__, self, &dds::DataReader::topic);
}

DDS_Boolean DDS_DataReader_compare_typeI(DDS_DataReader* self, const char* typeName) {
    return dds::call(__func__, self, &dds::DataReader::is_of_type,
                     dds::required("typeName", typeName));
}

DDS_ReturnCode_t DDS_DataReader_get_key_value_untypedI(DDS_DataReader* self, void* sample,
                                                       const DDS_InstanceHandle_t* handle) {
    return dds::call(__func__, self, &dds::DataReader::get_key_value,
                     dds::required("sample", sample), dds::required("handle", handle));
}

DDS_InstanceHandle_t DDS_DataReader_lookup_instance_untypedI(DDS_DataReader* self,
                                                             const void* sample) {
    return dds::call(__func__, self, &dds::DataReader::lookup_instance,
                     dds::required("sample", sample));
}

DDS_ReturnCode_t DDS_DataReader_wait_for_historical_data(DDS_DataReader* self,
                                                         const DDS_Duration_t* maxWait) {
    const char* const name = __func__;
    return dds::wait_in_steps(maxWait, [&](const DDS_Duration_t* step) {
        return dds::call(name, self, &dds::DataReader::wait_for_historical_data,
                         dds::required("maxWait", step));
    });
}

DDS_ReturnCode_t DDS_DataReader_get_subscription_matched_status(
    DDS_DataReader* self, DDS_SubscriptionMatchedStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_SubscriptionMatchedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_sample_lost_status(DDS_DataReader* self,
                                                       DDS_SampleLostStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_SampleLostStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_sample_rejected_status(DDS_DataReader* self,
                                                           DDS_SampleRejectedStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_SampleRejectedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_liveliness_changed_status(DDS_DataReader* self,
                                                              DDS_LivelinessChangedStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_LivelinessChangedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_requested_deadline_missed_status(
    DDS_DataReader* self, DDS_RequestedDeadlineMissedStatus* status) {
    return dds::call(__func__, self,
                     &dds::DataReader::get_status<DDS_RequestedDeadlineMissedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_requested_incompatible_qos_status(
    DDS_DataReader* self, DDS_RequestedIncompatibleQosStatus* status) {
    return dds::call(__func__, self,
                     &dds::DataReader::get_status<DDS_RequestedIncompatibleQosStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_matched_publications(DDS_DataReader* self,
                                                         DDS_InstanceHandleSeq* handles) {
    return dds::call(__func__, self, &dds::DataReader::get_matched_peers,
                     dds::required("handles", handles));
}
